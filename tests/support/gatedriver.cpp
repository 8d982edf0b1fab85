// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tests/support/gatedriver.h"

#include "tests/support/testsupport.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <optional>

namespace {

const QString DebugLog = QStringLiteral("/tmp/QormLoginDebug.log");
const QString AuditFile = QStringLiteral("/tmp/AdPwdTest.log");
const QString ServerFolder = QStringLiteral("/tmp/dc");

// Runs a tool to its end and returns its standard output, nothing when it failed.
std::optional<QString> Output(const QString& program, const QStringList& arguments)
{
    QProcess tool;
    tool.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    tool.start(program, arguments);
    if (!tool.waitForFinished(WaitMs * 4))
        qFatal("%s does not end", qPrintable(program));
    if (tool.exitCode() != 0)
        return {};
    return QString::fromUtf8(tool.readAllStandardOutput());
}

QStringList VisibleWindows(const QString& pattern)
{
    const auto found = Output(QStringLiteral("xdotool"), Words("search --onlyvisible --name") + QStringList{pattern});
    return found.value_or(QString()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void Xdotool(const QStringList& arguments)
{
    if (QProcess::execute(QStringLiteral("xdotool"), arguments) != 0)
        qFatal("xdotool %s failed", qPrintable(arguments.first()));
}

void Lab(const QStringList& arguments)
{
    if (!Output(QStringLiteral(PROJECT_DIR "/lab/dc"), arguments))
        qFatal("lab/dc %s failed", qPrintable(arguments.first()));
}

} // namespace

QStringList Words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

bool Within(int limitMs, const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, limitMs);
}

Service::~Service()
{
    process.terminate();
    if (!process.waitForFinished(WaitMs))
        process.kill();
}

Desktop::Desktop()
{
    m_server.process.setProcessChannelMode(QProcess::SeparateChannels);
    m_server.process.start(QStringLiteral("Xvfb"),
                           Words("-displayfd 1 -noreset -nolisten tcp -screen 0 1280x800x24"
                                 " -ardelay 200 -arinterval 30"));
    if (!m_server.process.waitForReadyRead(WaitMs))
        qFatal("no X server");
    qputenv("DISPLAY", ':' + m_server.process.readLine().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb"); // for what is started, not for the test itself
}

void Desktop::StartWindowManager()
{
    m_windowManager = std::make_unique<Service>();
    m_windowManager->process.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
    if (!Within(WaitMs, [] { return Output(QStringLiteral("xdotool"), Words("get_num_desktops")).has_value(); }))
        qFatal("no window manager");
}

void Desktop::Keys(const QStringList& keys) const
{
    if (!keys.isEmpty())
        Xdotool(Words("key --delay 0") + keys);
}

void Desktop::Type(const QString& text, const char* keys) const
{
    if (!text.isEmpty())
        Xdotool(Words("type --delay 2") + QStringList{text});
    Keys(keys);
}

void Desktop::SignIn(const QString& user, const QString& password) const
{
    if (!Shows(QStringLiteral("User Authentication")))
        qFatal("no remote-login dialog");
    Type(user, "Tab");
    Type(password, "Return");
}

void Desktop::HoldDown(const char* key) const
{
    Xdotool(Words("keydown") + Words(key));
}

void Desktop::Release(const char* key) const
{
    Xdotool(Words("keyup") + Words(key));
}

unsigned long Desktop::Window(const QString& title) const
{
    const QString exact = QLatin1Char('^') + QRegularExpression::escape(title) + QLatin1Char('$');
    return VisibleWindows(exact).value(0).toULong();
}

int Desktop::WindowCount() const
{
    return VisibleWindows(QStringLiteral(".*")).size();
}

bool Desktop::Shows(const QString& title) const
{
    return Within(WaitMs, [&] { return Window(title) != 0; });
}

bool Desktop::Hides(const QString& title) const
{
    return Within(WaitMs, [&] { return Window(title) == 0; });
}

bool Desktop::Confirms(const QString& title) const
{
    if (!Shows(title))
        return false;
    Keys("Return");
    return Hides(title);
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
    for (const char* path : {"/tmp/.user", "/tmp/.user.1", "/tmp/.newuser", "/tmp/.newuser.1", "/tmp/.config/.loggedin",
                             "/tmp/QormLoginDebug.log", "/tmp/AdPwdTest.log"})
        QFile::remove(QString::fromLatin1(path));
    WriteFile(QStringLiteral("/tmp/debug-login"), {});
}

Gate::Gate(const QStringList& arguments, const QStringList& wrapper, const QString& program)
{
    // What it would say there is in the debug log, and would bury a test's own report.
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    const QStringList command = wrapper + QStringList{program} + arguments;
    m_process.start(command.first(), command.mid(1));
    m_process.waitForStarted(WaitMs);
}

Gate::~Gate()
{
    m_process.kill();
    m_process.waitForFinished(WaitMs);
}

int Gate::Status()
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(WaitMs))
        return -1;
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : 128 + m_process.exitCode();
}

bool Gate::Logs(const QString& text, int times, int limitMs)
{
    return Within(limitMs, [&] { return FileText(DebugLog).count(text.toUtf8()) >= times; });
}

QByteArray Gate::Logged()
{
    return FileText(DebugLog) + FileText(AuditFile);
}

QString Gate::LastOutcome()
{
    const QString log = QString::fromUtf8(FileText(DebugLog));
    const QString head = QStringLiteral("Debug: Error Message ");
    const int start = log.lastIndexOf(head);
    return start < 0 ? QString() : log.mid(start + head.size()).section(QStringLiteral(" (:0)"), 0, 0);
}

DomainController::DomainController()
{
    Lab({QStringLiteral("start"), ServerFolder, QStringLiteral(BUILD_DIR "/dc")});
}

DomainController::~DomainController()
{
    Lab({QStringLiteral("stop"), ServerFolder});
}

void DomainController::SetState(const QString& user, const QString& state) const
{
    Lab({QStringLiteral("set-state"), ServerFolder, user, state});
}

void DomainController::SetPassword(const QString& user, const QString& password) const
{
    Lab({QStringLiteral("set-password"), ServerFolder, user, password});
}

QMap<QString, QString> DomainController::Settings()
{
    return {{QStringLiteral("enableremoteauth"), QStringLiteral("true")},
            {QStringLiteral("remoteauthserver"), QStringLiteral("dc1.example.org")},
            {QStringLiteral("remoteauthtype"), QStringLiteral("LDAP")},
            {QStringLiteral("remoteauthdomain"), QStringLiteral("example.org")}};
}

QString DomainController::CertificateFile() const
{
    return ServerFolder + QStringLiteral("/private/tls/ca.pem");
}
