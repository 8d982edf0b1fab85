// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstdio>
#include <cstdlib>
#include <tuple>

class Report;

// What stands on the command line behind a verb.
struct Request {
    QString operand; // a server, a user, a field; empty when there is none
    QString user;    // of --user, whose rights have been taken already
    bool isStrict = false;
    bool asJson = false;
};

// The verbs. Each returns the exit status; why it failed is told on standard error.

// Both take a password, one line in UTF-8, from standard input (typed twice without echo when that is a terminal) and
// print what the configuration can store for it.
int PrintHash(const Request& request);
int PrintObscured(const Request& request);

// Tells what the gate will do with the configuration of this terminal, and what looks wrong in it. No stored password
// is printed.
int CheckConfiguration(const Request& request);

// Asks the directory without a password, and tells for each server the first thing that fails.
int ProbeDirectory(const Request& request);

// Does with a name and a password what the dialog would, as far as the answer of the directory, and tells what the
// user would see. Nothing is saved, no event is sent, no window opened.
int TryLogin(const Request& request);

// Prints one field of /tmp/.user.1 ("user", "password" or "domain"), deciphered, as one line in UTF-8. Fails without a
// saved user, when the file is refused, and when this user can't decipher it.
int PrintSavedField(const Request& request);

// Reads one line from standard input, `twice` when it is typed. The reason when there is no usable password, else null.
const char* ReadPassword(QString& password, bool twice);

// Adds with whose rights a verb looks.
void AddReader(const Request& request, const QString& user, Report& report);

inline int Fail(const char* reason)
{
    std::ignore = fprintf(stderr, "tavctl: %s\n", reason);
    return EXIT_FAILURE;
}
