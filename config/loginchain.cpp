// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"

#include "config/support.h"
#include "desktop/blockingcheck.h"
#include "ldap/ldaphandler.h"
#include "tav3/desktop.h"
#include "ui/setpassword.h"

#include <QCoreApplication>
#include <QDebug>
#include <QMessageBox>

namespace {

// Days left before the directory has been asked: far beyond every warning.
constexpr qint64 NotAskedDays = 300000;

// What the user is told where there is no sentence of a sub-code; translated where it is shown.
const QString NoDirectory
    = QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "This terminal is not set up to sign users in at a directory."));
const QString NotChanged = QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "The password was not changed."));

enum ResponseCode { Accepted, ChangeRequired, ChangeChosen, Refused, AccountLocked, Unreachable };
static_assert(Refused + 1 == AccountLocked, "the locked flag is added to the refusal");

QString Translated(const char* text)
{
    return QCoreApplication::translate("LoginCfg", text);
}

} // namespace

const QString LoginCfg::NoKnownReason = QStringLiteral(
    QT_TRANSLATE_NOOP("LoginCfg", "The directory refused the sign-in and gave no reason known to this terminal."));

bool LoginCfg::CheckRemoteLogin(const QString& user, const QString& password)
{
    daysToExpiry = NotAskedDays;
    explanation = NoDirectory;
    complaint.clear();
    if (!serverType.startsWith(QLatin1String("LDAP")))
        return false;
    return CheckRemoteLdapLogin(user, password, serverType == QLatin1String("LDAPS"));
}

bool LoginCfg::CheckRemoteLdapLogin(const QString& user, const QString& password, bool useLdaps)
{
    qDebug() << "CheckRemoteLdapLogin" << remoteServer << backupServer;
    int code = LoginToLdapServer(remoteServer, user, password, useLdaps);
    if (code == Unreachable)
        code = LoginToLdapServer(backupServer, user, password, useLdaps);
    return code == Accepted;
}

int LoginCfg::LoginToLdapServer(const QString& server, const QString& user, const QString& password, bool useLdaps)
{
    passwordChanged = false;
    LdapHandler* handler = LdapHandler::GetInstance(server, user, password);
    handler->m_useLdaps = useLdaps;
    handler->m_useConfiguredProtocol = true;
    UserHashes hashes(user, password); // made while the directory thinks, for nothing when it refuses
    handler->m_whileClientRuns = [&hashes] { hashes.MakeNext(); };
    const bool queryOk = RunBlockingCheck([handler] { return handler->CheckPassword(); });
    handler->m_whileClientRuns = nullptr;
    resultMessage.clear();
    daysToExpiry = 0;
    const int code = CheckLdapResponse(queryOk, handler);
    bool success = false;
    if (code == ChangeRequired || code == ChangeChosen) {
        RunSetPassword(server, user, password); // the user logs in again in either case
    } else if (queryOk) {
        qDebug() << "Saving Name and Password";
        SaveUserFiles(hashes, remoteDomain);
        qDebug() << "Name and Password Saved";
        success = true;
    } else {
        resultMessage = handler->m_lastError;
        explanation = NoKnownReason;
        complaint = handler->m_complaint;
    }
    qDebug() << "Error Message" << resultMessage << code << success;
    SendSecurityEvent(user, success);
    return code;
}

// Runs the dialog and leaves its outcome in passwordChanged and resultMessage.
void LoginCfg::RunSetPassword(const QString& server, const QString& user, const QString& password)
{
    SetPassword dialog;
    TavDesktop::SetDefaultStyleSheet(&dialog);
    dialog.SetServer(server);
    dialog.SetUserName(user); // empties the old password, so it comes first
    dialog.SetOldPassword(password);
    dialog.exec(); // its result has no meaning
    if (dialog.m_success) {
        passwordChanged = true;
        resultMessage = QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Please log in with your new password"));
    } else {
        resultMessage = dialog.m_message;
        explanation = NotChanged;
    }
    qDebug() << dialog.m_message;
}

int LoginCfg::CheckLdapResponse(bool queryOk, LdapHandler* handler)
{
    resultMessage = handler->m_lastError;
    int code = Accepted;
    if (queryOk) {
        daysToExpiry = handler->m_daysToExpiry;
        if (1 <= daysToExpiry && daysToExpiry <= expiryWarningDays && UserWantsToChange())
            code = ChangeChosen;
    } else if (handler->m_lastCode == LdapHandler::ServerUnreachable) {
        code = Unreachable;
    } else {
        code = handler->m_mustChange ? ChangeRequired : Refused + int(handler->m_accountLocked);
    }
    qDebug() << "CheckLdapResponse" << queryOk << code;
    return code;
}

bool LoginCfg::UserWantsToChange()
{
    // The blanks of the pattern are intended.
    const QString text
        = Translated(" %1 %2 %3.\n\n Do you want to change your password now?  \n")
              .arg(Translated("Your Password will expire in "), QString::number(daysToExpiry), Translated("day(s)"));
    QMessageBox box(QMessageBox::NoIcon, Translated("Password Change?"), text, QMessageBox::Yes | QMessageBox::No);
    box.setTextFormat(Qt::PlainText);
    TavDesktop::SetDefaultStyleSheet(&box);
    if (box.exec() == QMessageBox::Yes) {
        resultMessage = QStringLiteral("User selected to change password");
        qDebug() << resultMessage;
        return true;
    }
    qDebug() << "User did not want to change password now";
    return false;
}
