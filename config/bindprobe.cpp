// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"

#include "base/childprocess.h"
#include "ldap/ldaphandler.h"
#include "tav3/system.h"

#include <QDebug>

namespace {

constexpr int FinishTimeoutMs = 30000;
// What ldapsearch ends with when it can't reach a server; also taken for a child that never ran.
constexpr int NotReachedStatus = 255;

// The exit status as judged below. A child still running at the time limit reports 0, as the process object has it; no
// login builds on that. One that never started or was stopped for flooding can't have bound.
int ExitStatusOf(const QProcess& process, bool ranToEnd)
{
    if (ForkFailed(process) || process.error() == QProcess::FailedToStart)
        return NotReachedStatus;
    if (!ranToEnd)
        return process.state() == QProcess::Running ? 0 : NotReachedStatus;
    // Of a crashed child the code is a signal's number, or nothing at all.
    return process.exitStatus() == QProcess::CrashExit && process.exitCode() == 0 ? NotReachedStatus
                                                                                  : process.exitCode();
}

QString SearchBase(const QString& domain)
{
    QStringList parts;
    for (const QString& component : domain.split(QLatin1Char('.')))
        parts += QStringLiteral("dc=") + component;
    return parts.join(QStringLiteral(", "));
}

} // namespace

bool LoginCfg::LdapSearchLogin(const QString& user, const QString& password, bool useLdaps)
{
    return LdapSearchLoginToServer(remoteServer, user, password, useLdaps)
        || LdapSearchLoginToServer(backupServer, user, password, useLdaps); // also when there is none
}

QStringList LoginCfg::BindProbeArguments(const QString& server, const QString& user, const QString& password,
                                         bool useLdaps) const
{
    const QString uri = useLdaps ? QStringLiteral("ldaps://%1:%2") : QStringLiteral("ldap://%1:%2");
    QStringList arguments;
    arguments << QStringLiteral("-H") << uri.arg(server, remotePort);
    arguments << QStringLiteral("-D") << user + QLatin1Char('@') + remoteDomain;
    arguments << QStringLiteral("-w") << password;
    arguments << QStringLiteral("-x");
    arguments << QStringLiteral("-b") << SearchBase(remoteDomain);
    arguments << QStringLiteral("cn=") + user;
    arguments << QStringLiteral("pwdLastSet");
    return arguments;
}

bool LoginCfg::LdapSearchLoginToServer(const QString& server, const QString& user, const QString& password,
                                       bool useLdaps)
{
    const ChildProcess process(new QProcess);
    process->setProcessChannelMode(QProcess::MergedChannels);
    if (!requireCert) // replaces the whole environment; intended
        process->setEnvironment({QStringLiteral("LDAPTLS_REQCERT=allow")});
    ChildOutput output;
    const bool ranToEnd = RunChild(*process, QStringLiteral("ldapsearch"),
                                   BindProbeArguments(server, user, password, useLdaps), 0, FinishTimeoutMs, output);
    const int exitStatus = ExitStatusOf(*process, ranToEnd);
    const QString text = QString::fromLatin1(output.standardOutput.constData()); // up to the first NUL byte
    qDebug() << "";
    qDebug() << "";
    qDebug() << text;
    qDebug() << exitStatus << exitStatus << process->exitStatus();
    resultMessage.clear();
    if (exitStatus == 0 && !LdapHandler::CountsAsEmpty(password)) {
        qDebug() << "Saving Name and Password";
        SaveUserFiles(user, password, remoteDomain);
        qDebug() << "Name and Password Saved";
        return true;
    }
    const QString code = exitStatus == 0 ? LdapHandler::InvalidCredentials : BindProbeCode(text, exitStatus);
    TavSystem::cerr << "authentication error on server " << server << "Error Code=" << code << "\n";
    TavSystem::cerr.flush();
    resultMessage = code;
    return false;
}

QString LoginCfg::BindProbeCode(const QString& output, int exitStatus) const
{
    QString code;
    for (const QString& piece : output.split(QStringLiteral(", "))) {
        if (!piece.startsWith(QLatin1String("data")))
            continue;
        qDebug() << piece;
        code = QString(piece).remove(QStringLiteral("data "));
    }
    if (!code.isEmpty())
        return code;
    qDebug() << "DATA is empty";
    if (exitStatus == NotReachedStatus && output.contains(QLatin1String("Can't contact LDAP server")))
        return requireCert ? QStringLiteral("1001") : QStringLiteral("1002");
    return QString::number(exitStatus);
}
