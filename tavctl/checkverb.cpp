// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/verbs.h"

#include "app/modeselection.h"
#include "tavctl/findings.h"
#include "tavctl/report.h"
#include "tavctl/terminalconfig.h"

#include <QFile>
#include <unistd.h>

namespace {

QString RemoteOutcome(const LoginCfg& cfg)
{
    if (QFile::exists(QStringLiteral("/tmp/.newuser")) && QFile::exists(QStringLiteral("/tmp/.newuser.1")))
        return QStringLiteral("no screen, status 0: completes the hand-over of a new user");
    const QString dialog = QStringLiteral("the remote-login dialog, which ");
    if (cfg.remoteServer.isEmpty())
        return dialog + QStringLiteral("has no server to ask");
    if (!cfg.serverType.startsWith(QLatin1String("LDAP")))
        return dialog + QStringLiteral("refuses every login");
    const QString backup = cfg.backupServer.isEmpty() ? QString() : QStringLiteral(", then ") + cfg.backupServer;
    const QLatin1String scheme(cfg.serverType == QLatin1String("LDAPS") ? "LDAPS" : "unencrypted LDAP");
    return dialog + QStringLiteral("asks %1 over %2").arg(cfg.remoteServer + backup, scheme);
}

QString LocalOutcome(const char* password, const QString& stored)
{
    return QStringLiteral("the local window, which opens to ")
        + (stored.isEmpty() ? QStringLiteral("any input") : QLatin1String(password));
}

QString Outcome(const QStringList& arguments, const LoginCfg& cfg)
{
    switch (SelectMode(QStringList(QStringLiteral("qorm-login")) + arguments, cfg)) {
    case GateMode::SetupNeedsNoPassword:
        return QStringLiteral("no screen, status 0: no terminal password is required");
    case GateMode::NothingToCheck:
        return QStringLiteral("no screen, status 0: no authentication is enabled");
    case GateMode::RemoteDialog:
        return RemoteOutcome(cfg);
    case GateMode::LocalWindow:
        break;
    }
    return arguments.isEmpty() ? LocalOutcome("the local password", cfg.localAuthPassword)
                               : LocalOutcome("the terminal password", cfg.terminalPassword);
}

} // namespace

void AddReader(const Request& request, const QString& user, Report& report)
{
    const bool isRootByDefault = geteuid() == 0 && request.user.isEmpty();
    report.AddFact(QStringLiteral("looked as"),
                   isRootByDefault ? user + QStringLiteral("; name the user that runs the gate with --user") : user);
}

int CheckConfiguration(const Request& request)
{
    const TerminalConfig terminal;
    Report report("check");
    AddReader(request, terminal.user, report);
    const QLatin1String store(terminal.registryStore ? " (registry-style store)" : " (XML store)");
    report.AddFact(QStringLiteral("configuration"), terminal.path + store);
    report.AddFact(QStringLiteral("no argument"), Outcome({}, terminal.cfg));
    for (const QString& argument : {QStringLiteral("setup"), QStringLiteral("force"), QStringLiteral("x")})
        report.AddFact(argument, Outcome({argument}, terminal.cfg));
    for (const auto find : {FindInFile, FindInForm, FindInPasswords, FindInDirectory, FindOnTerminal})
        find(terminal, report);
    report.Print(request.asJson);
    return report.Status(request.isStrict);
}
