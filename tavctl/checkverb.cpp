// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/verbs.h"

#include "app/modeselection.h"
#include "tavctl/findings.h"

#include <QFile>

namespace {

QStringList s_warnings;

// The gate's own lines stay out of the report; what it warns of while it reads belongs to it.
void KeepWarning(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtWarningMsg)
        s_warnings += text;
}

void Print(const char* title, const QString& text)
{
    printf("%-15s%s\n", title, text.toUtf8().constData());
}

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

int CheckConfiguration()
{
    qunsetenv("QT_LOGGING_RULES"); // it could silence the warnings
    qInstallMessageHandler(KeepWarning);
    const TerminalConfig terminal;
    QStringList findings = FindingsIn(terminal);
    findings = s_warnings + findings;
    findings.removeDuplicates(); // the file was read twice
    Print("configuration",
          terminal.path + QLatin1String(terminal.registryStore ? " (registry-style store)" : " (XML store)"));
    Print("no argument", Outcome({}, terminal.cfg));
    for (const char* argument : {"setup", "force", "x"})
        Print(argument, Outcome({QLatin1String(argument)}, terminal.cfg));
    puts(findings.isEmpty() ? "Nothing looks wrong." : "What looks wrong:");
    for (const QString& finding : qAsConst(findings))
        printf("- %s\n", finding.toUtf8().constData());
    return findings.isEmpty() ? EXIT_SUCCESS : EXIT_FAILURE;
}
