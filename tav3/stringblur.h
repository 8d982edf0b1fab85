// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tav3/export.h"

#include <QString>

// Keeps a stored password from a glance, no more: the key is part of this library, so whoever has the library and the
// text has the password. A hash (see crypt.h) is the better choice wherever the password itself is not needed.
class TAV3_EXPORT TavStringBlur {
public:
    // "tb1:" and the sealed text, another one at every call; a null string when there is no source of random bytes.
    static QString Encode(const QString& text);
    // The text that Encode was given (empty, not null, for an empty one); a null string for anything that Encode did
    // not make, a damaged text included.
    static QString Decode(const QString& text);
};
