// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"

#include "config/support.h"
#include "tav3/stringblur.h"

bool LoginCfg::CheckLocalPassword(const QString& entered) const
{
    if (!terminalPasswordMode) {
        if (!authEnabled)
            return true; // nothing to check
        if (!localAuthEnabled)
            return false;
    }
    const QString& stored = terminalPasswordMode ? terminalPassword : localAuthPassword;
    // A text that was not obscured decodes to null, which Qt would hold equal to an empty entry.
    QString decoded = TavStringBlur::Decode(stored);
    const bool matches = !decoded.isNull() && decoded == entered;
    decoded.fill(QChar()); // overwrites the password in place
    if (matches)
        return true;
    // A failed hash is an empty text: it can match an empty stored password only, and is meant to.
    return stored == HashedWith(entered, stored.toLatin1());
}
