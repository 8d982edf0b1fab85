// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class LoginCfg;

enum class GateMode {
    SetupNeedsNoPassword, // ends with 0, no screen
    NothingToCheck,       // ends with 0, no screen
    RemoteDialog,
    LocalWindow
};

// What the program does for its command line (program path first) on a terminal configured so.
GateMode SelectMode(const QStringList& commandLine, const LoginCfg& cfg);
