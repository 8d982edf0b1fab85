// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "config/logincfg.h"
#include "tav3/xmlconfig.h"

// The configuration as the gate reads it, and where that is.
struct TerminalConfig {
    TerminalConfig();

    // What a setting is called in the store in use.
    QString Key(const char* xmlKey, const char* registryName) const;

    LoginCfg cfg{true};
    TavXmlConfig xml;
    bool registryStore; // else the XML store
    QString folder;
    QString path; // of the file of the store in use
};

// What looks wrong, a sentence each. No stored password is quoted.
QStringList FindingsIn(const TerminalConfig& terminal);
