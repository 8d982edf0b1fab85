// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "app/modeselection.h"

#include "config/logincfg.h"

GateMode SelectMode(const QStringList& commandLine, const LoginCfg& cfg)
{
    QString mode;
    if (commandLine.size() > 1) {
        if (commandLine.at(1) == QLatin1String("setup") && !cfg.NeedAuthentication())
            return GateMode::SetupNeedsNoPassword;
        if (commandLine.size() == 2) // hyphens count nowhere in a single argument
            mode = QString(commandLine.at(1)).remove(QLatin1Char('-'));
    } else if (commandLine.size() == 1 && !cfg.authEnabled) {
        return GateMode::NothingToCheck;
    }
    if (mode == QLatin1String("force"))
        return GateMode::RemoteDialog;
    if (cfg.RemoteAuthOnly() && (commandLine.size() <= 1 || mode == QLatin1String("x")))
        return GateMode::RemoteDialog;
    return GateMode::LocalWindow;
}
