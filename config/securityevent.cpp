// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"

#include <QProcess>

void LoginCfg::SendSecurityEvent(const QString& user, bool flag)
{
    const QString code = flag ? QStringLiteral("sec01") : QStringLiteral("sec02");
    QProcess::startDetached(QStringLiteral("send_event.sh"),
                            {code, user}); // a missing script must not affect the login
}
