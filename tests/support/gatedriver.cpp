// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tests/support/gatedriver.h"

#include "tav3/rdpcipher.h"
#include "tests/support/testsupport.h"
#include "tests/support/xview.h"

#include <QTest>

QStringList Words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

bool Within(int limitMs, const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, limitMs);
}

void Run(const QString& program, const QStringList& arguments)
{
    if (QProcess::execute(program, arguments) != 0)
        qFatal("%s %s failed", qPrintable(program), qPrintable(arguments.value(0)));
}

Service::~Service()
{
    process.terminate();
    if (!process.waitForFinished(WaitMs))
        process.kill();
}

Desktop::Desktop()
{
    const QString screen = QStringLiteral("%1x%2x24").arg(ScreenWidth).arg(ScreenHeight);
    m_server.process.start(QStringLiteral("Xvfb"),
                           Words("-displayfd 1 -noreset -nolisten tcp -ardelay 700 -arinterval 30 -screen 0")
                               + QStringList{screen});
    if (!m_server.process.waitForReadyRead(WaitMs))
        qFatal("no X server");
    qputenv("DISPLAY", ':' + m_server.process.readLine().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb"); // for what is started, not for the test itself
}

void Desktop::Keys(const QStringList& keys) const
{
    if (!keys.isEmpty())
        Run(QStringLiteral("xdotool"), Words("key --delay 0") + keys);
}

void Desktop::Type(const QString& text, const char* keys) const
{
    if (!text.isEmpty())
        Run(QStringLiteral("xdotool"), Words("type --delay 2") + QStringList{text});
    Keys(Words(keys));
}

Configuration::Configuration(const QMap<QString, QString>& security)
{
    QString keys;
    for (auto key = security.begin(); key != security.end(); ++key)
        keys += QStringLiteral("<%1>%2</%1>").arg(key.key(), key.value().toHtmlEscaped());
    const QString xml = QStringLiteral("<config><user><system><security>%1</security></system></user></config>");
    WriteFile(m_folder.filePath(QStringLiteral("config.xml")), xml.arg(keys).toUtf8());
    qputenv("TAV3_CONFIG_DIR", QFile::encodeName(m_folder.path()));
}

void CleanTerminal()
{
    ShellIn({},
            QStringLiteral("rm -rf /tmp/.user /tmp/.user.1 /tmp/.newuser /tmp/.newuser.1 /tmp/.config/.loggedin"
                           " /tmp/config /tmp/icons /tmp/debug-login /tmp/QormLoginDebug.log /tmp/AdPwdTest.log"
                           " /tmp/.tav3-$(id -u).key"));
}

QString DebugLog()
{
    return QString::fromUtf8(FileText(QStringLiteral("/tmp/QormLoginDebug.log")));
}

QStringList SavedUser(const QString& path)
{
    QStringList fields;
    for (const QString& field : QString::fromLatin1(FileText(path).trimmed()).split(QStringLiteral(",00,")))
        fields += QString::fromLatin1(rdp_decrypt(field.toLatin1().constData()));
    return fields;
}

Gate::Gate(const QStringList& arguments, const QStringList& wrapper)
{
    // What it would say there is in the debug log, and would bury a test's own report.
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    const QStringList command = wrapper + QStringList{QStringLiteral(BUILD_DIR "/bin/qorm-login")} + arguments;
    m_process.start(command.first(), command.mid(1));
    m_process.waitForStarted(WaitMs);
}

Gate::~Gate()
{
    m_process.kill();
    m_process.waitForFinished(WaitMs);
}

bool Gate::EndsWithin(int limitMs) const
{
    return Within(limitMs, [this] { return m_process.state() == QProcess::NotRunning; });
}

int Gate::Status() const
{
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : 128 + m_process.exitCode();
}

void DomainController::Tell(const QString& verb, const QStringList& arguments) const
{
    Run(QStringLiteral(PROJECT_DIR "/lab/dc"), QStringList{verb, QStringLiteral("/tmp/dc")} + arguments);
}
