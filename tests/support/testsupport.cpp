// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tests/support/testsupport.h"

#include <QFile>
#include <cstdio>
#include <cstdlib>

namespace {

void StrictHandler(QtMsgType, const QMessageLogContext&, const QString& message)
{
    fprintf(stderr, "%s\n", qPrintable(message));
    if (message.startsWith(QLatin1String("QObject::connect:"))
        || message.startsWith(QLatin1String("QMetaObject::connectSlotsByName:")))
        abort();
}

} // namespace

void AbortOnConnectWarnings()
{
    qInstallMessageHandler(StrictHandler);
}

QByteArray FileText(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void WriteFile(const QString& path, const QByteArray& text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("can't write %s", qPrintable(path));
}

FakeTools::FakeTools() : m_path(qgetenv("PATH"))
{
    qputenv("PATH", QFile::encodeName(m_folder.path()) + ':' + m_path);
}

FakeTools::~FakeTools()
{
    qputenv("PATH", m_path);
}

void FakeTools::Install(const QString& name, const QByteArray& output, const QByteArray& error, int status)
{
    WriteFile(Path(name + QStringLiteral(".out")), output);
    WriteFile(Path(name + QStringLiteral(".err")), error);
    // Builtins only: the program may start it with an empty environment. The last line may lack its newline.
    const QByteArray show
        = "show() { while IFS= read -r line; do printf '%s\\n' \"$line\"; done; printf '%s' \"$line\"; }\n";
    InstallScript(name, show + "show < \"$0.out\"; show < \"$0.err\" >&2; exit " + QByteArray::number(status) + "\n");
}

void FakeTools::InstallScript(const QString& name, const QByteArray& script)
{
    QFile::remove(Path(name + QStringLiteral(".calls")));
    WriteFile(Path(name),
              "#!/bin/sh\nhere=${0%/*}\n{ IFS='|'; printf '%s\\n' \"$*\"; unset IFS; } >> \"$0.calls\"\n" + script);
    QFile::setPermissions(Path(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void FakeTools::Remove(const QString& name)
{
    QFile::remove(Path(name));
}

QStringList FakeTools::Calls(const QString& name) const
{
    return QString::fromUtf8(FileText(Path(name + QStringLiteral(".calls"))))
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
