// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ldap/ldaphandler.h"

#include "base/childprocess.h"
#include "base/guardedfile.h"
#include "base/wipe.h"

#include <QDebug>

bool LdapHandler::IsSmbPasswdAvailable()
{
    return QFile::exists(QStringLiteral("/usr/bin/smbpasswd"));
}

bool LdapHandler::PrepareSmbConf()
{
    QFile file(QStringLiteral("/etc/samba/smb.conf"));
    if (!file.exists() && OpenGuarded(file, GuardedMode::Truncate, 0644)) // every Samba tool must be able to read it
        file.close();
    return file.exists();
}

QString LdapHandler::ChangePassword(const QString& newPassword)
{
    PrepareSmbConf(); // without the file the tool itself complains
    if (s_debugEnabled)
        qDebug() << "LdapHandler::ChangePassword";
    m_lastError = RefusalOfChange(newPassword);
    if (!m_lastError.isEmpty())
        return m_lastError;
    m_earlierStdErr += m_stdErr; // the child that still runs has failed already if it wrote any
    m_stdErr.clear();
    m_stdOut.clear();
    m_newPassword = newPassword;
    StartSmbPasswd();
    return {};
}

bool LdapHandler::RanAsAsked() const
{
    return m_stdErr.isEmpty() && m_running.server == s_serverName && m_running.user == s_userName
        && m_running.oldPassword == s_password && m_running.newPassword == m_newPassword;
}

QString LdapHandler::RefusalOfChange(const QString& newPassword)
{
    if (!IsSmbPasswdAvailable())
        return QStringLiteral("Changing password is not possible at this time");
    if (s_serverName.isEmpty())
        return QStringLiteral("Server could not be contacted");
    if (newPassword.isEmpty())
        return QStringLiteral("New Password is empty");
    return {};
}

void LdapHandler::StartSmbPasswd()
{
    const QStringList arguments{QStringLiteral("-r"), s_serverName, QStringLiteral("-U"), s_userName};
    if (s_debugEnabled)
        qDebug() << s_smbPasswdProgram << arguments;
    if (m_process->state() == QProcess::NotRunning) {
        m_running = {s_serverName, s_userName, s_password, m_newPassword};
        m_earlierStdErr.clear();
        m_childOutputBytes = 0;
    }
    m_process->start(s_smbPasswdProgram, arguments, QIODevice::ReadWrite); // refused while a child runs
    if (ForkFailed(*m_process)) {
        ConnectProcess(); // the old object believes in a child for ever and must not be deleted, see ChildDeleter
    } else {
        m_process->waitForStarted(StartTimeoutMs); // a failed start is only logged
    }
    if (s_debugEnabled)
        qDebug() << "ChangePassword"
                 << "process Started ";
}

void LdapHandler::OnStandardOuputReady()
{
    const QByteArray bytes = m_process->readAllStandardOutput();
    const QString text = TextOf(bytes.trimmed());
    if (s_debugEnabled)
        qDebug() << "OnStandardOuputReady" << text;
    if (text.startsWith(QLatin1String("Old SMB password:"))) {
        if (s_debugEnabled)
            qDebug() << "ouput old password" << text;
        m_running.oldPassword = s_password;
        Answer(s_password);
    } else if (text.startsWith(QLatin1String("New SMB password:"))
               || text.startsWith(QLatin1String("Retype new SMB password:"))) {
        if (s_debugEnabled)
            qDebug() << "ouput new password" << text;
        m_running.newPassword = m_newPassword;
        Answer(m_newPassword);
    } else {
        m_stdOut += text;
    }
    StopFlood(bytes.size());
}

void LdapHandler::Answer(const QString& password)
{
    const SecretBytes bytes(password.toLatin1());
    m_process->write(bytes.Text(), bytes.Size()); // not the array, which the process object would share
    m_process->write("\n");
}

// Ends a child whose output would take the memory; its change counts as failed.
void LdapHandler::StopFlood(int bytesRead)
{
    m_childOutputBytes += bytesRead;
    if (m_childOutputBytes <= MaxChildOutputBytes)
        return;
    m_stdOut.clear();
    m_stdErr = QStringLiteral("Too much output");
    m_process->kill();
}

void LdapHandler::OnProcessFinished(int exitCode)
{
    if (s_debugEnabled)
        qDebug() << "OnProcessFinished" << exitCode;
    m_stdErr.prepend(m_earlierStdErr);
    m_earlierStdErr.clear();
    WriteLog(QStringLiteral("Change Password"), m_stdErr.isEmpty() ? QStringLiteral("Success") : m_stdErr);
    emit ProcessFinihsed();
}
