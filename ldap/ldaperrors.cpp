// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ldap/ldaphandler.h"

const QString LdapHandler::InvalidCredentials = QStringLiteral("52e");
const QString LdapHandler::ServerUnreachable = QStringLiteral("9999");

// LoginCfg keeps a list of its own, which differs in three entries; both are meant to be as they are.
const QMap<QString, QString> LdapHandler::LdapErrorMessages{
    {QStringLiteral("52e"), QStringLiteral("Invalid username or password")},
    {QStringLiteral("52E"), QStringLiteral("Invalid username or password")},
    {QStringLiteral("525"), QStringLiteral("Invalid username or password")},
    {QStringLiteral("530"), QStringLiteral("Login not permitted at this time")},
    {QStringLiteral("531"), QStringLiteral("Login not permitted at this time")},
    {QStringLiteral("532"), QStringLiteral("Your password has expired")},
    {QStringLiteral("773"), QStringLiteral("You must reset your password before you can log in to this unit.")},
    {QStringLiteral("775"), QStringLiteral("Your account is locked. Contact your system administrator")},
    {QStringLiteral("701"), QStringLiteral("Your account has expired")},
    {QStringLiteral("533"), QStringLiteral("Your account has been disabled")},
    {QStringLiteral("568"), QStringLiteral("Error with supplied username please contact your system administrator")},
    {QStringLiteral("254"), QStringLiteral("Could not connect to server")},
    {QStringLiteral("1001"),
     QStringLiteral("LDAP server connection error. This can be caused by a configuration problem or by server "
                    "certificate validation error.")},
    {QStringLiteral("1002"), QStringLiteral("LDAP server connection problem. Check configuration.")},
    {QStringLiteral("9999"), QStringLiteral("Could not connect to LDAP server")},
};

QString LdapHandler::ErrorMessage(const QString& code)
{
    const QString message = LdapErrorMessages.value(code);
    return message.isEmpty() ? QStringLiteral("Unknown error code ") + code : message;
}
