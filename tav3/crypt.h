// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tav3/export.h"

// Salted hashing with the system's libcrypt. Both return a NUL-terminated text in a buffer of the library's own, which
// the next call of the same operation overwrites and the caller may wipe, or null on failure. Not for several threads.
extern "C" {

// A fresh setting of the preferred method, salted from the kernel's random source.
TAV3_EXPORT char* crypt_make_salt();

// The hash of `key`; `setting` gives method and salt, a whole hash will do. Null for an unknown or damaged setting and
// for a key of more than 511 bytes.
TAV3_EXPORT char* crypt_passwd(const char* key, const char* setting);
}
