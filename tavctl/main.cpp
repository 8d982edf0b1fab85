// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "base/hardening.h"
#include "tavctl/verbs.h"

#include <QByteArrayList>

namespace {

constexpr int UsageStatus = 2;

const char Usage[] = R"(usage: tavctl VERB
  hash        reads a password from standard input, prints the hash to store for it (recommended)
  obscure     the same, obscured: hidden from a glance only
  check       tells what the gate will do with this terminal's configuration, and what looks wrong in it
  sso user | sso password | sso domain
              prints a field of the user saved for single sign-on
Ends with 0, with 1 when it failed or something looks wrong, with 2 for other words than these.
)";

const struct {
    const char* words;
    int (*run)();
} Verbs[] = {
    {"hash", PrintHash},
    {"obscure", PrintObscured},
    {"check", CheckConfiguration},
    {"sso user", [] { return PrintSavedField(SavedField::User); }},
    {"sso password", [] { return PrintSavedField(SavedField::Password); }},
    {"sso domain", [] { return PrintSavedField(SavedField::Domain); }},
    {"--help", [] { return fputs(Usage, stdout) < 0 ? EXIT_FAILURE : EXIT_SUCCESS; }},
};

} // namespace

int main(int argc, char** argv)
{
    if (!HardenProcess())
        return Fail("refusing to run set-user-id");
    QByteArrayList words;
    for (int i = 1; i < argc; ++i)
        words += argv[i];
    for (const auto& verb : Verbs) {
        if (words.join(' ') == verb.words) {
            const int status = verb.run();
            return fflush(stdout) == 0 ? status : Fail("can't write to standard output");
        }
    }
    std::ignore = fputs(Usage, stderr);
    return UsageStatus;
}
