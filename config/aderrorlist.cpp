// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"

// Not the same as the handler's table: no "775", no "9999", and "531" says "on this time"; all three are intended.
const QString LoginCfg::AdErrorList[] = {
    QStringLiteral("52e,Invalid username or password"),
    QStringLiteral("773,You must reset your password before you can log in to this unit."),
    QStringLiteral("52E,Invalid username or password"),
    QStringLiteral("525,Invalid username or password"),
    QStringLiteral("530,Login not permitted at this time"),
    QStringLiteral("531,Login not permitted on this time"),
    QStringLiteral("532,Your password has expired"),
    QStringLiteral("533,Your account has been disabled"),
    QStringLiteral("701,Your account has expired"),
    QStringLiteral("254,Could not connect to server"),
    QStringLiteral("568,Error with supplied username please contact your system administrator"),
    QStringLiteral("1001,LDAP server connection error. This can be caused by a configuration problem or by server "
                   "certificate validation error."),
    QStringLiteral("1002,LDAP server connection problem. Check configuration."),
    QString(),
};
