// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ldap/ldaphandler.h"

#include "base/childprocess.h"
#include "base/guardedfile.h"
#include "base/wipe.h"

#include <QDebug>

namespace {

constexpr int StartTimeoutMs = 30000;

} // namespace

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
    m_startRefused = m_process->state() != QProcess::NotRunning;
    if (m_startRefused)
        m_earlierStdErr += m_stdErr; // the running child has failed already if it wrote any
    else
        m_earlierStdErr.clear();
    m_stdErr.clear();
    m_stdOut.clear();
    m_newPassword = newPassword;
    StartSmbPasswd();
    return {};
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
    m_process->start(s_smbPasswdProgram, arguments, QIODevice::ReadWrite);
    if (ForkFailed(*m_process)) {
        m_startRefused = true;
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
    const QByteArray chunk = m_process->readAllStandardOutput().trimmed();
    const QString text = QString::fromUtf8(chunk.constData()); // up to the first NUL byte
    if (s_debugEnabled)
        qDebug() << "OnStandardOuputReady" << text;
    if (text.startsWith(QLatin1String("Old SMB password:"))) {
        if (s_debugEnabled)
            qDebug() << "ouput old password" << text;
        Answer(s_password);
    } else if (text.startsWith(QLatin1String("New SMB password:"))
               || text.startsWith(QLatin1String("Retype new SMB password:"))) {
        if (s_debugEnabled)
            qDebug() << "ouput new password" << text;
        Answer(m_newPassword);
    } else {
        m_stdOut += text;
        StopFlood();
    }
}

void LdapHandler::Answer(const QString& password)
{
    const SecretBytes bytes(password.toLatin1());
    m_process->write(bytes.Text(), bytes.Size()); // not the array, which the process object would share
    m_process->write("\n");
}

// Ends a child whose output would take the memory; its change counts as failed.
void LdapHandler::StopFlood()
{
    if (m_stdOut.size() + m_stdErr.size() <= MaxChildOutputBytes)
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
