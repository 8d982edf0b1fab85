// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/verbs.h"

#include "config/logincfg.h"
#include "ldap/ldaphandler.h"

#include <utility>

namespace {

// The response codes of the login chain, in their order.
const char* const Meanings[]
    = {"accepted", "a change is required", "a change was chosen", "refused", "account locked", "server unreachable"};
enum { Accepted = 0, ChangeRequired = 1, Unreachable = 5 };

void Print(const char* title, const QString& text)
{
    printf("%-14s %s\n", title, text.toUtf8().constData());
}

// As the login chain does, up to where that would act on the answer.
int Ask(LoginCfg& cfg, const QString& server, const QString& user, const QString& password)
{
    LdapHandler* handler = LdapHandler::GetInstance(server, user, password);
    handler->m_useLdaps = cfg.serverType == QLatin1String("LDAPS");
    handler->m_useConfiguredProtocol = true;
    const bool queryOk = handler->CheckPassword();
    const int code = cfg.CheckLdapResponse(queryOk, handler);
    cfg.complaint = handler->m_complaint;
    Print("server", LdapHandler::s_serverName + QLatin1String(handler->m_useLdaps ? " (LDAPS)" : " (LDAP)"));
    if (code != Unreachable) {
        Print("naming context", handler->m_baseDn.trimmed());
        Print("bound as", user + QLatin1Char('@') + handler->m_domainName.trimmed());
    }
    Print("response code", QStringLiteral("%1, %2").arg(code).arg(QLatin1String(Meanings[code])));
    return code;
}

QString Box(const QString& message, const QString& explanation)
{
    return QStringLiteral("the box \"Authentication Error\": ") + (message.isEmpty() ? explanation : message);
}

QString SeenWhenAccepted(qint64 daysToExpiry, qint64 warningDays)
{
    if (daysToExpiry < 1 || daysToExpiry > warningDays)
        return QStringLiteral("is signed in");
    return QStringLiteral(
               "is asked whether to change the password, which expires in %1 day(s), and with No is signed in")
        .arg(daysToExpiry);
}

QString SeenWhenChangeIsRequired()
{
    return LdapHandler::IsSmbPasswdAvailable()
        ? QStringLiteral("the set-password dialog")
        : QStringLiteral("the set-password dialog, whose button does nothing, as /usr/bin/smbpasswd is missing");
}

QString Seen(const LoginCfg& cfg, int code, qint64 warningDays)
{
    if (code == Accepted)
        return SeenWhenAccepted(cfg.daysToExpiry, warningDays);
    if (code == ChangeRequired)
        return SeenWhenChangeIsRequired();
    QStringList reason{LoginCfg::NoKnownReason, cfg.complaint};
    reason.removeAll(QString());
    return Box(cfg.resultMessage, reason.join(QLatin1Char(' ')));
}

// Asks as the dialog would; the response code.
int AskServers(LoginCfg& cfg, const QString& user, const QString& password)
{
    const qint64 warningDays = std::exchange(cfg.expiryWarningDays, 0); // or a box would ask
    int code = Ask(cfg, cfg.remoteServer, user, password);
    if (code == Unreachable)
        code = Ask(cfg, cfg.backupServer, user, password); // also when there is none
    if (code == Accepted)
        Print("expires in", QStringLiteral("%1 day(s)").arg(cfg.daysToExpiry));
    Print("the user sees", Seen(cfg, code, warningDays));
    return code;
}

} // namespace

int TryLogin(const Request& request)
{
    QString password;
    if (const char* reason = ReadPassword(password, false))
        return Fail(reason);
    LdapHandler::s_logFile.clear(); // the audit file is the gate's
    LoginCfg cfg(true);
    int code = Unreachable;
    if (cfg.serverType.startsWith(QLatin1String("LDAP"))) {
        code = AskServers(cfg, request.operand, password);
    } else {
        cfg.CheckRemoteLogin(request.operand, password); // asks nobody, and says why
        Print("the user sees", Box(cfg.resultMessage, cfg.explanation));
    }
    puts("Nothing was saved, no event was sent, no window was opened.");
    return code == Accepted ? EXIT_SUCCESS : EXIT_FAILURE;
}
