// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tests/support/testsupport.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QStringList s_messages;

void StrictHandler(QtMsgType, const QMessageLogContext&, const QString& message)
{
    s_messages += message;
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

QStringList TakeMessages()
{
    return std::exchange(s_messages, {});
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

void WriteScript(const QString& path, const QByteArray& body)
{
    QFile::remove(path);
    WriteFile(path, "#!/bin/sh\n" + body + '\n');
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

unsigned ModeOf(const QString& path)
{
    struct stat info { };
    return stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_mode & 07777 : 0;
}

QString WithoutTimes(QString text)
{
    static const QRegularExpression time(QStringLiteral("\\w{3} \\w{3} \\d+ \\d\\d:\\d\\d:\\d\\d \\d{4}"));
    return text.replace(time, QStringLiteral("T"));
}

QString Joined(const QStringList& texts, char separator)
{
    return texts.join(QLatin1Char(separator));
}

QString Filled(QString text, const std::function<QByteArray(qint64)>& replacement)
{
    static const QRegularExpression place(QStringLiteral("\\{(-?\\d+)\\}"));
    for (auto match = place.match(text); match.hasMatch(); match = place.match(text))
        text.replace(match.captured(), QString::fromLatin1(replacement(match.captured(1).toLongLong())));
    return text;
}

bool ShellIn(const QString& folder, const QString& script)
{
    QProcess shell;
    shell.setWorkingDirectory(folder);
    shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), script});
    return shell.waitForFinished() && shell.exitCode() == 0;
}

int ForkedCode(const std::function<int()>& body)
{
    const pid_t child = fork();
    if (child == 0) {
        const struct rlimit noCore = {0, RLIM_INFINITY};
        setrlimit(RLIMIT_CORE, &noCore);
        _exit(body());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

QByteArray DirectoryTime(qint64 daysFromToday)
{
    const qint64 day = QDateTime::currentSecsSinceEpoch() / 86400 + daysFromToday;
    return QByteArray::number(day * 86400 + 86399 + 11644473600) + "9999999";
}

FakeTools::FakeTools()
{
    qputenv("PATH", QFile::encodeName(m_folder.path()) + ':' + qgetenv("PATH"));
}

FakeTools::~FakeTools()
{
    qputenv("PATH", qgetenv("PATH").replace(QFile::encodeName(m_folder.path()) + ':', ""));
}

void FakeTools::InstallScript(const QString& name, const QByteArray& script)
{
    QFile::remove(Path(name + QStringLiteral(".calls")));
    const QByteArray note = "here=${0%/*}\n{ IFS='|'; printf '%s\\n' \"$*\"; unset IFS; } >> \"$0.calls\"\n";
    WriteScript(Path(name), note + script);
}

void FakeTools::InstallDirectory(const QByteArray& root, const QByteArray& answer)
{
    WriteFile(Path(QStringLiteral("root")), root);
    WriteFile(Path(QStringLiteral("answer")), answer);
    InstallScript(QStringLiteral("ldapsearch"),
                  "case \"$*\" in\n"
                  "*//dead*|*ldaps://plain*) echo \"Can't contact LDAP server (-1)\" >&2; exit 255 ;;\n"
                  "*namingContexts) exec /bin/cat \"$here/root\" ;;\n"
                  "esac\n"
                  "read -r first < \"$here/answer\"\n"
                  "case $first in ldap_bind*) /bin/cat \"$here/answer\" >&2; exit 49 ;; esac\n"
                  "exec /bin/cat \"$here/answer\"\n");
}

void FakeTools::InstallExpiringDirectory()
{
    InstallDirectory("namingContexts: DC=example,DC=org\n",
                     "dn: CN=fine\npwdLastSet: " + DirectoryTime(-39)
                         + "\nmsDS-UserPasswordExpiryTimeComputed: " + DirectoryTime(3) + "\n\n");
}

QStringList FakeTools::Calls(const QString& name) const
{
    return QString::fromUtf8(FileText(Path(name + QStringLiteral(".calls"))))
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
