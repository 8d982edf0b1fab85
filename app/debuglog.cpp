// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "app/debuglog.h"

#include "base/guardedfile.h"

#include <QDebug>
#include <QMutex>
#include <QTextStream>
#include <cstdlib>

namespace {

QFile* debugLogFile = nullptr; // never closed or deleted, lives as long as the process
QMutex debugLogMutex;

QString Format(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("Debug: %1 (%2:%3)");
    case QtWarningMsg:
        return QStringLiteral("Warning: %1 (%2:%3)");
    case QtCriticalMsg:
        return QStringLiteral("Critical: %1 (%2:%3)");
    case QtFatalMsg:
        return QStringLiteral("Fatal: %1 (%2:%3)");
    case QtInfoMsg:
        return QStringLiteral("Info: %1 (%2:%3)");
    }
    return {};
}

QString Line(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const QString format = Format(type);
    if (format.isEmpty())
        return {};
    // The locale's bytes taken back as Latin-1; intended, readers of the log know it so.
    const QString text = QString::fromLatin1(message.toLocal8Bit());
    const QString file = QString::fromLatin1(context.file);
    return format.arg(text, file, QString::number(context.line));
}

} // namespace

void InstallDebugLog(const QString& appPath)
{
    if (!QFile::exists(QStringLiteral("/tmp/debug-login")))
        return;
    debugLogFile = new QFile(QStringLiteral("/tmp/QormLoginDebug.log"));
    if (OpenGuarded(*debugLogFile, GuardedMode::Append))
        qDebug() << "logfile opened";
    else
        qDebug() << "Failed to open log file for writing";
    qInstallMessageHandler(DebugMessageHandler);
    qDebug() << appPath;
}

void DebugMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    debugLogMutex.lock();
    const QString line = Line(type, context, message);
    if (type == QtFatalMsg)
        abort(); // neither written nor unlocked: the process ends here
    if (debugLogFile && debugLogFile->isOpen()) {
        QTextStream stream(debugLogFile);
        stream << line << Qt::endl;
        stream.flush();
    }
    debugLogMutex.unlock();
}
