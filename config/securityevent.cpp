// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"

#include <QProcess>

void LoginCfg::SendSecurityEvent(const QString& user, bool flag)
{
    QProcess script;
    script.setProgram(QStringLiteral("send_event.sh"));
    script.setArguments({flag ? QStringLiteral("sec01") : QStringLiteral("sec02"), user});
    script.startDetached(); // a missing script must not affect the login
}
