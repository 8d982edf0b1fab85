// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ldap/ldaphandler.h"

#include "base/childprocess.h"
#include "base/guardedfile.h"

#include <QDateTime>
#include <QDebug>
#include <QProcessEnvironment>
#include <QTextStream>
#include <utility>

LdapHandler* LdapHandler::s_instance = nullptr;
QString LdapHandler::s_serverName;
QString LdapHandler::s_defaultServer;
QString LdapHandler::s_userName;
QString LdapHandler::s_password;
QString LdapHandler::s_savedServer;
QString LdapHandler::s_savedUser;
QString LdapHandler::s_savedPassword;
bool LdapHandler::s_debugEnabled = false;
QString LdapHandler::s_ldapSearchProgram = QStringLiteral("ldapsearch");
QStringList LdapHandler::s_ldapSearchArgs{QStringLiteral("-LLL"), QStringLiteral("-x"), QStringLiteral("-H")};
QStringList LdapHandler::s_namingContextArgs{QStringLiteral("-s"), QStringLiteral("base"),
                                             QStringLiteral("namingContexts")};
QString LdapHandler::s_smbPasswdProgram = QStringLiteral("/usr/bin/smbpasswd");
QString LdapHandler::s_logFile = QStringLiteral("/tmp/AdPwdTest.log");

namespace {

constexpr int FinishTimeoutMs = 10000;
// A third of the limit in bytes, as a character takes at most 3 in the file for each of its 16-bit units here.
constexpr int MaxAuditChars = MaxChildOutputBytes / 3;

// Damaged text grows: each byte that is none of UTF-8 becomes a character of three.
QString ForAudit(const QString& text)
{
    return text.toLocal8Bit().size() <= MaxChildOutputBytes ? text : text.left(MaxAuditChars);
}

// The client's environment, with a search base that counts as not set: a line BASE in its ldap.conf would make it look
// for the root entry there.
QProcessEnvironment ClientEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LDAPBASE"), QString());
    return environment;
}

// The command line for the log, with the bind password masked.
QString Loggable(const QString& program, const QStringList& arguments)
{
    QStringList words = arguments;
    const int flag = words.indexOf(QStringLiteral("-w"));
    if (flag >= 0 && flag + 1 < words.size())
        words[flag + 1] = QStringLiteral("********");
    return program + QLatin1Char(' ') + words.join(QLatin1Char(' '));
}

} // namespace

LdapHandler* LdapHandler::GetInstance(const QString& server, const QString& user, const QString& password)
{
    if (!s_instance)
        s_instance = new LdapHandler(server, user, password, nullptr);
    s_serverName = server;
    s_userName = user;
    s_password = password;
    return s_instance;
}

LdapHandler::LdapHandler(const QString& server, const QString& user, const QString& password, QObject* parent)
    : QObject(parent)
{
    s_savedServer.clear();
    s_savedUser.clear();
    s_savedPassword.clear();
    s_defaultServer = server;
    s_serverName = server;
    s_userName = user;
    s_password = password;
    s_debugEnabled = QFile::exists(QStringLiteral("/tmp/debug-login"));
    ConnectProcess();
    if (s_debugEnabled)
        qDebug() << QStringLiteral("serverName=") + s_serverName;
}

void LdapHandler::ConnectProcess()
{
    m_process = new QProcess;
    connect(m_process, SIGNAL(finished(int)), SLOT(OnProcessFinished(int)));
    connect(m_process, SIGNAL(readyReadStandardError()), SLOT(OnStandardErrorReady()));
    connect(m_process, SIGNAL(readyReadStandardOutput()), SLOT(OnStandardOuputReady()));
    connect(m_process, SIGNAL(errorOccurred(QProcess::ProcessError)),
            SLOT(OnProcessErrorOccurred(QProcess::ProcessError)));
    connect(m_process, SIGNAL(started()), SLOT(OnProcessStarted()));
}

QStringList LdapHandler::RunCommand(const QString& program, const QStringList& arguments, const QString& label)
{
    const ChildProcess process(new QProcess);
    if (s_debugEnabled)
        qDebug() << Loggable(program, arguments) << label;
    process->setProcessEnvironment(ClientEnvironment());
    ChildOutput output;
    if (!RunChild(*process, program, arguments, StartTimeoutMs, FinishTimeoutMs, output, m_whileClientRuns))
        return {};
    const QString outputText = TextOf(std::exchange(output.standardOutput, {})); // a flood need not be here twice
    WriteLog(label + QStringLiteral(" - SUCCESS"), outputText);
    const QString errorText = TextOf(std::exchange(output.standardError, {}));
    WriteLog(label + QStringLiteral(" - ERROR"), errorText);
    m_errorLines.clear();
    m_errorLines = errorText.split(QLatin1Char('\n'));
    return outputText.split(QLatin1Char('\n'));
}

QString LdapHandler::BuildUri(bool ldaps)
{
    m_uri = ldaps ? QStringLiteral("ldaps") : QStringLiteral("ldap");
    if (s_serverName.isEmpty())
        s_serverName = s_defaultServer;
    // Two substitutions one after the other, so that a "%2" in the server name takes the port; intended.
    const QString port = ldaps ? QStringLiteral("636") : QStringLiteral("389");
    m_uri += QStringLiteral("://%1:%2").arg(s_serverName).arg(port); // NOLINT(clazy-qstring-arg)
    if (s_debugEnabled)
        qDebug() << "URI" << m_uri;
    return m_uri;
}

void LdapHandler::WriteLog(const QString& title, const QString& text)
{
    if (text.isEmpty())
        return;
    QFile file(s_logFile);
    if (!OpenGuarded(file, GuardedMode::Append))
        return;
    QTextStream stream(&file);
    stream << QDateTime::currentDateTime().toString(Qt::TextDate) << " --- " << title << "\n" << ForAudit(text) << "\n";
    stream.flush();
    file.close();
}

QStringList LdapHandler::ReadLog()
{
    QFile file(s_logFile);
    if (!OpenGuarded(file, GuardedMode::Read))
        return {QStringLiteral("Could Not open Log File")};
    return TextOf(file.readAll()).split(QLatin1Char('\n'));
}

void LdapHandler::ClearLog()
{
    QFile::remove(s_logFile); // nothing to do when it fails
}

void LdapHandler::SaveCredentials()
{
    if (!s_serverName.isEmpty())
        s_defaultServer = s_serverName;
    s_savedServer = s_serverName;
    s_savedUser = s_userName;
    s_savedPassword = s_password;
}

void LdapHandler::RestoreCredentials()
{
    s_serverName = s_savedServer;
    s_userName = s_savedUser;
    s_password = s_savedPassword;
}

void LdapHandler::OnStandardErrorReady()
{
    const QByteArray bytes = m_process->readAllStandardError();
    const QString text = TextOf(bytes);
    if (s_debugEnabled)
        qDebug() << "OnStandardErrorReady" << text;
    m_stdErr += text;
    StopFlood(bytes.size());
}

void LdapHandler::OnProcessErrorOccurred(QProcess::ProcessError error)
{
    if (s_debugEnabled)
        qDebug() << "OnProcessErrorOccurred" << error;
}

void LdapHandler::OnProcessStarted()
{
    if (s_debugEnabled)
        qDebug() << "OnProcessStarted";
}
