// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
//
// Every parser of the program, fed with arbitrary bytes; the variable FUZZ_TARGET names the one. Beyond surviving the
// bytes, each must keep what is required of it here: a breach ends the process.
#include "config/logincfg.h"
#include "ldap/directoryanswer.h"
#include "tav3/rdpcipher.h"
#include "tav3/regini.h"
#include "tav3/stringblur.h"
#include "tav3/xmlconfig.h"
#include "tests/support/testsupport.h"

#include <QRegularExpression>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace {

void Require(bool holds, const char* what)
{
    if (holds)
        return;
    fprintf(stderr, "broken: %s\n", what);
    abort();
}

QStringList Lines(const QByteArray& bytes)
{
    return QString::fromUtf8(bytes).split(QLatin1Char('\n'));
}

void Xml(const QByteArray& bytes)
{
    const auto key = [](const QByteArray& xml) {
        const QString section = QStringLiteral("user/system/security");
        return TavXmlConfig(xml).GetConfig(section, QStringLiteral("k"), false, QStringLiteral("missing"), false);
    };
    const QByteArray start = "<c><user><system><security><k>";
    key(bytes);
    Require(key(start + "first</k>" + bytes) == QLatin1String("first"), "a key before a fault is kept");
    static const QRegularExpression notInXml(QStringLiteral("[^ -\\x{d7ff}]"));
    const QString text = QString::fromUtf8(bytes).remove(notInXml);
    Require(key(start + text.toHtmlEscaped().toUtf8() + "</k>") == text.trimmed(), "a text is read as written");
}

void Registry(const QByteArray& bytes)
{
    const auto value = [](const QByteArray& lines) {
        TavRegIni store("[HKLM\\S]\n\"Name\"=" + lines);
        store.OpenKey(QStringLiteral("HKLM"), QStringLiteral("S"), 0);
        return store.GetSz(QStringLiteral("Name"), QStringLiteral("missing"));
    };
    Require(TavRegIni(bytes).OpenKey(QStringLiteral("HKLM"), QStringLiteral("T\n"), 0) == 2, "no name has two lines");
    value(bytes);
    Require(value("\"first\"\n" + bytes) == QLatin1String("first"), "the first value wins");
    const QString text = Lines(bytes).first();
    const QByteArray quoted = text.toUtf8().replace('\\', "\\\\").replace('"', "\\\"");
    Require(value('"' + quoted + '"') == text, "a text is read as written");
}

void NamingContexts(const QByteArray& bytes)
{
    const QStringList lines = Lines(bytes);
    const NamingContext context = ParseNamingContext(lines);
    static const QRegularExpression lineThatGoesOn(QStringLiteral("(.{78})(?=.)"));
    const QString folded = Joined(lines, '\n').replace(lineThatGoesOn, QStringLiteral("\\1\n "));
    Require(ParseNamingContext(folded.split(QLatin1Char('\n'))).baseDn == context.baseDn,
            "a folded line is put together again");
    static const QRegularExpression domains(QStringLiteral("^( DC=(?!.*DnsZones).*)?$"));
    Require(domains.match(context.baseDn).hasMatch(), "it is a domain's, and no DNS zone's");
    Require(context.baseDn.isEmpty() == context.domain.isEmpty(), "both texts or none");
    Require(!context.domain.contains(QLatin1Char(',')), "the domain is dotted");
}

void ExpiryAnswer(const QByteArray& bytes)
{
    const auto days = [](const QStringList& lines) {
        const PasswordDates dates = ParsePasswordDates(lines, 1800000000);
        return std::make_tuple(dates.DaysSinceChange(), dates.DaysToExpiry(), dates.IsExpiryKnown());
    };
    const QStringList lines = Lines(bytes);
    Require(days(lines + Lines("#" + QByteArray(bytes).replace("\n", "\n#"))) == days(lines), "a comment has no date");
    const auto decided = days(lines + Lines("pwdLastSet: 134444448000000000\npwdMaxAge: 3628800"));
    Require(decided == std::make_tuple(0, 42, true), "the last line of an attribute decides");
}

void SubCode(const QByteArray& bytes)
{
    const QStringList lines = Lines(bytes);
    for (const QString& code : ParseSubCodes(lines))
        Require(!code.contains(QLatin1Char(' ')) && !code.contains(QLatin1Char(',')), "a code is one word");
    const QString complaint = QStringLiteral("ldap_bind: Invalid credentials (49)");
    const QStringList codes = ParseSubCodes({complaint, lines.first() + QStringLiteral(", data 52e, v1")});
    Require(!codes.isEmpty() && codes.last() == QLatin1String("52e"), "a piece of its own is found");
    Require(ParseSubCodes({complaint + lines.first()}).isEmpty(), "one line holds no code");
}

void SavedUser(const QByteArray& bytes)
{
    static LoginCfg config(false);
    config.loggedIn = true;
    const auto name = [](const QByteArray& file) {
        WriteFile(QStringLiteral("/tmp/.user.1"), file);
        return config.LoadSavedUserName();
    };
    name(bytes);
    const QByteArray user = QByteArray(bytes.constData()).left(4096); // up to the first NUL
    Require(name(QByteArray(rdp_encrypt(user.constData())) + ",00," + bytes) == QString::fromLatin1(user),
            "only the first field counts");
}

// What holds of both ways to seal a text, which may be a sealed one itself. A null text says that it was refused.
void Sealing(const QString& text, QString (*seal)(const QString&), QString (*open)(const QString&))
{
    const QString sealed = seal(text);
    Require(sealed != seal(text), "no two forms are alike");
    Require(open(sealed) == text && !open(sealed).isNull(), "a text comes back");
    for (const char* more : {"A", "=", "\n"})
        Require(open(sealed + QLatin1String(more)).isNull(), "nothing follows it");
    Require(open(sealed.chopped(1)).isNull(), "nothing is missing");
    for (const QString& printed : {sealed, text}) {
        if (open(printed).isNull())
            continue;
        // In the last character spare bits could hide the damage.
        for (const int place : {0, printed.size() / 2, printed.size() - 1}) {
            QString damaged = printed;
            damaged[place] = QChar(damaged.at(place).unicode() ^ 1);
            Require(open(damaged).isNull(), "damage is noticed");
        }
    }
}

void Blur(const QByteArray& bytes)
{
    const QString text = QString::fromUtf8(bytes);
    Require(TavStringBlur::Decode(text).isNull() || text.startsWith(QLatin1String("tb1:")), "the prefix stands first");
    Sealing(text, TavStringBlur::Encode, TavStringBlur::Decode);
}

void Cipher(const QByteArray& bytes)
{
    const auto seal = [](const QString& text) { return QString::fromLatin1(rdp_encrypt(text.toLatin1().constData())); };
    const auto open = [](const QString& text) { return QString::fromLatin1(rdp_decrypt(text.toLatin1().constData())); };
    const QString text = QString::fromLatin1(bytes.constData()); // up to the first NUL
    Require(seal(text).isNull() == (text.size() > 4096), "only what is too long is refused");
    Require(!seal(text).contains(QLatin1Char(',')), "it can stand in a list");
    if (text.size() <= 4096)
        Sealing(text, seal, open);
}

using Target = void (*)(const QByteArray&);
const std::map<QByteArray, Target> Targets = {
    {"xml", Xml},
    {"registry", Registry},
    {"naming_context", NamingContexts},
    {"expiry_answer", ExpiryAnswer},
    {"sub_code", SubCode},
    {"saved_user", SavedUser},
    {"blur", Blur},
    {"cipher", Cipher},
};

// The key of the cipher is always the same one, so that a sealed text can be among the seeds.
Target ChosenTarget()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    umask(077);
    WriteFile(QStringLiteral("/tmp/.tav3-%1.key").arg(geteuid()), QByteArray(32, 'k'));
    return Targets.at(qgetenv("FUZZ_TARGET"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static const Target target = ChosenTarget();
    target(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    return 0;
}
