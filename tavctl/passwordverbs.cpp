// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/verbs.h"

#include "config/support.h"
#include "tav3/stringblur.h"

#include <algorithm>
#include <bsd/readpassphrase.h>
#include <cstring>
#include <unistd.h>

namespace {

// Twice what can be hashed, as UTF-8 has up to two bytes for a character of Latin-1.
constexpr size_t LineBytes = 1024;

struct Line {
    char text[LineBytes] = {};

    Line() = default;
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;
    ~Line() { explicit_bzero(text, sizeof text); }

    bool Read(const char* prompt, bool fromTerminal)
    {
        return readpassphrase(prompt, text, sizeof text, fromTerminal ? RPP_REQUIRE_TTY : RPP_STDIN) != nullptr;
    }
};

int Print(QString (*stored)(const QString&))
{
    QString password;
    if (const char* reason = ReadPassword(password, true))
        return Fail(reason);
    const QString text = stored(password);
    if (text.isEmpty())
        return Fail("the system's library refuses this password; it hashes 511 characters at most");
    return puts(qPrintable(text)) >= 0 ? EXIT_SUCCESS : Fail("can't write to standard output");
}

QString HashedWithWarning(const QString& password)
{
    const auto isLost = [](QChar c) { return c.unicode() > 0xff; };
    if (std::any_of(password.begin(), password.end(), isLost))
        std::ignore = fputs("tavctl: warning: in a hash, characters outside Latin-1 can't be told apart\n", stderr);
    return Hashed(password);
}

} // namespace

const char* ReadPassword(QString& password, bool twice)
{
    const bool typed = isatty(STDIN_FILENO) == 1;
    Line line;
    Line again;
    if (!line.Read("Password: ", typed) || (twice && typed && !again.Read("Password again: ", typed)))
        return "no password could be read";
    if (twice && typed && strcmp(line.text, again.text) != 0)
        return "the two passwords differ";
    if (line.text[0] == '\0')
        return "the password is empty";
    if (strlen(line.text) == LineBytes - 1) // cut off
        return "the password is too long";
    password = QString::fromUtf8(line.text);
    return password.contains(QChar::ReplacementCharacter) ? "the password is not UTF-8" : nullptr;
}

int PrintHash(const Request&)
{
    return Print(HashedWithWarning);
}

int PrintObscured(const Request&)
{
    return Print(TavStringBlur::Encode);
}
