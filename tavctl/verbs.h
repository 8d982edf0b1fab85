// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstdlib>
#include <tuple>

// The verbs. Each returns the exit status; why it failed is told on standard error.

// Both take a password, one line in UTF-8, from standard input (typed twice without echo when that is a terminal) and
// print what the configuration can store for it.
int PrintHash();
int PrintObscured();

// Tells what the gate will do with the configuration of this terminal, and what looks wrong in it. No stored password
// is printed. 0 when nothing looks wrong, else 1.
int CheckConfiguration();

enum class SavedField { User, Password, Domain }; // in the order of the file

// Prints one field of /tmp/.user.1, deciphered, as one line in UTF-8. Fails without a saved user, when the file is
// refused, and when this user can't decipher it.
int PrintSavedField(SavedField field);

inline int Fail(const char* reason)
{
    std::ignore = fprintf(stderr, "tavctl: %s\n", reason);
    return EXIT_FAILURE;
}
