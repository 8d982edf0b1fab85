// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tav3/export.h"

// Reversible encipherment of a short text for single sign-on. The key is 32 random bytes in /tmp/.tav3-UID.key,
// whatever the environment: a session, a lock screen and a shell of one user must read each other's. It is made by the
// first rdp_encrypt, and used only while it is a regular file of the caller's that nobody else can read or write.
// Both return a NUL-terminated text in a buffer of the library's own, which the next call of the same operation
// overwrites and the caller may wipe, or null on failure. Not for several threads.
extern "C" {

// The printed form (letters, digits, '-' and '_'), another one at every call. Null for more than 4,096 bytes and
// without a usable key.
TAV3_EXPORT char* rdp_encrypt(const char* text);

// The text that rdp_encrypt was given. Null for a damaged text, one of another key, and without a usable key.
TAV3_EXPORT char* rdp_decrypt(const char* text);
}
