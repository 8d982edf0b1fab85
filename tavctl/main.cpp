// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "base/hardening.h"
#include "tavctl/terminalconfig.h"
#include "tavctl/verbs.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

constexpr int UsageStatus = 2;

const char Usage[] = R"(usage: tavctl VERB [OPTION]...
  hash           reads a password from standard input, prints the hash to store for it (recommended)
  obscure        the same, obscured: hidden from a glance only
  check          tells what the gate will do with this terminal's configuration, and what looks wrong in it
  probe [SERVER] asks the directory without a password, and tells the first thing that fails
  login USER     reads a password from standard input, asks the directory, and tells what the user would see;
                 saves nothing, sends no event
  sso user | sso password | sso domain
                 prints a field of the user saved for single sign-on
Options of check, probe and login:
  --user NAME    looks with the rights of this user, who should be the one that runs the gate; root only
Options of check and probe:
  --strict       warnings count as errors
  --json         prints one JSON object, as tavctl(1) describes it
Ends with 0, with 1 when it failed or found an error, with 2 for other words than these. --version and --help print those.
)";

enum class Operand { None, Optional, Needed, Field };
enum Options { NoOptions = 0, UserOption = 1, ReportOptions = 2 };

const struct Verb {
    const char* name;
    Operand operand;
    int options;
    int (*run)(const Request&);
} Verbs[] = {
    {"hash", Operand::None, NoOptions, PrintHash},
    {"obscure", Operand::None, NoOptions, PrintObscured},
    {"check", Operand::None, UserOption | ReportOptions, CheckConfiguration},
    {"probe", Operand::Optional, UserOption | ReportOptions, ProbeDirectory},
    {"login", Operand::Needed, UserOption, TryLogin},
    {"sso", Operand::Field, NoOptions, PrintSavedField},
};

bool Fits(const QStringList& operands, Operand wanted)
{
    switch (wanted) {
    case Operand::None:
        return operands.isEmpty();
    case Operand::Optional:
        return operands.size() <= 1;
    case Operand::Needed:
        return operands.size() == 1 && !operands.first().isEmpty();
    case Operand::Field:
        break;
    }
    const QStringList fields{QStringLiteral("user"), QStringLiteral("password"), QStringLiteral("domain")};
    return operands.size() == 1 && fields.contains(operands.first());
}

// Takes the words behind the verb apart; false when they are not understood.
bool Parse(const QStringList& words, const Verb& verb, Request& request)
{
    const QCommandLineOption user(QStringLiteral("user"), {}, QStringLiteral("NAME"));
    const QCommandLineOption strict(QStringLiteral("strict"));
    const QCommandLineOption json(QStringLiteral("json"));
    QCommandLineParser parser;
    if (verb.options & UserOption)
        parser.addOption(user);
    if (verb.options & ReportOptions)
        parser.addOptions({strict, json});
    if (!parser.parse(words) || !Fits(parser.positionalArguments(), verb.operand))
        return false;
    request.operand = parser.positionalArguments().value(0);
    if (verb.options & UserOption)
        request.user = parser.value(user);
    request.isStrict = (verb.options & ReportOptions) && parser.isSet(strict);
    request.asJson = (verb.options & ReportOptions) && parser.isSet(json);
    return true;
}

int Run(const Verb& verb, const Request& request)
{
    if (const char* reason = BecomeUser(request.user))
        return Fail(reason);
    return verb.run(request);
}

int RunWords(const QStringList& words)
{
    const QString first = words.value(1);
    if (words.size() == 2 && (first == QLatin1String("--help") || first == QLatin1String("-h")))
        return fputs(Usage, stdout) < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
    if (words.size() == 2 && first == QLatin1String("--version"))
        return puts("tavctl " PROGRAM_VERSION) < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
    for (const Verb& verb : Verbs) {
        Request request;
        if (first == QLatin1String(verb.name) && Parse(words.mid(1), verb, request))
            return Run(verb, request);
    }
    std::ignore = fputs(Usage, stderr);
    return UsageStatus;
}

// The gate's own lines stay out of what is printed here.
void DropMessage(QtMsgType, const QMessageLogContext&, const QString&)
{
}

} // namespace

int main(int argc, char** argv)
{
    if (!HardenProcess())
        return Fail("refusing to run set-user-id");
    qInstallMessageHandler(DropMessage);
    const QCoreApplication application(argc, argv);
    const int status = RunWords(QCoreApplication::arguments());
    return fflush(stdout) == 0 ? status : Fail("can't write to standard output");
}
