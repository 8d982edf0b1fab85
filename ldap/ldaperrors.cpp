// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ldap/ldaphandler.h"

const QString LdapHandler::InvalidCredentials = QStringLiteral("52e");
const QString LdapHandler::ServerUnreachable = QStringLiteral("9999");

// LoginCfg keeps a list of its own, which differs in three entries; both are meant to be as they are.
// Translated only where they are shown, in the context of LoginCfg.
const QMap<QString, QString> LdapHandler::LdapErrorMessages{
    {QStringLiteral("52e"), QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Invalid username or password"))},
    {QStringLiteral("52E"), QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Invalid username or password"))},
    {QStringLiteral("525"), QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Invalid username or password"))},
    {QStringLiteral("530"), QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Login not permitted at this time"))},
    {QStringLiteral("531"), QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Login not permitted at this time"))},
    {QStringLiteral("532"), QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Your password has expired"))},
    {QStringLiteral("773"),
     QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "You must reset your password before you can log in to this unit."))},
    {QStringLiteral("775"),
     QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Your account is locked. Contact your system administrator"))},
    {QStringLiteral("701"), QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Your account has expired"))},
    {QStringLiteral("533"), QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Your account has been disabled"))},
    {QStringLiteral("568"),
     QStringLiteral(
         QT_TRANSLATE_NOOP("LoginCfg", "Error with supplied username please contact your system administrator"))},
    {QStringLiteral("254"), QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Could not connect to server"))},
    {QStringLiteral("1001"),
     QStringLiteral(
         QT_TRANSLATE_NOOP("LoginCfg",
                           "LDAP server connection error. This can be caused by a configuration problem or by server "
                           "certificate validation error."))},
    {QStringLiteral("1002"),
     QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "LDAP server connection problem. Check configuration."))},
    {QStringLiteral("9999"), QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Could not connect to LDAP server"))},
};

QString LdapHandler::ErrorMessage(const QString& code)
{
    const QString message = LdapErrorMessages.value(code);
    return message.isEmpty() ? QStringLiteral("Unknown error code ") + code : message;
}
