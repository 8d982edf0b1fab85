// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "config/logincfg.h"
#include "tav3/xmlconfig.h"

// The configuration as the gate reads it, where that is, and who reads it.
struct TerminalConfig {
    TerminalConfig();

    // What a setting is called in the store in use.
    QString Key(const char* xmlKey, const char* registryName) const;
    // Whether a start of the gate can come to ask a directory.
    bool UsesDirectory() const;
    bool UsesTls() const { return cfg.serverType == QLatin1String("LDAPS"); }

    LoginCfg cfg{true};
    TavXmlForm form; // of config.xml
    TavXmlConfig xml{form};
    bool registryStore; // else the XML store
    QString folder;
    QString path; // of the file of the store in use
    QString user; // with whose rights all this was looked at
};

// Takes the rights of another user, for good, as a start by that user would have them: ids, groups and home folder.
// Nothing to do for an empty name or the own one. Null, or the reason why it failed.
const char* BecomeUser(const QString& name);

QString UserName(unsigned id); // the number where there is no name
