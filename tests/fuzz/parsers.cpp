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

#include <algorithm>
#include <cstdio>
#include <map>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace {

int s_warnings = 0;

void CountWarning(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    ++s_warnings;
    if (type == QtFatalMsg)
        fprintf(stderr, "%s\n", qPrintable(text));
}

void Require(bool holds, const char* what)
{
    if (!holds)
        qFatal("broken: %s", what);
}

QStringList Lines(const QByteArray& bytes)
{
    return QString::fromUtf8(bytes).split(QLatin1Char('\n'));
}

// A sealed text with its last character changed, where spare bits could hide a change.
QByteArray Damaged(QByteArray text)
{
    text[text.size() - 1] = static_cast<char>(text.back() ^ 1);
    return text;
}

void Xml(const QByteArray& bytes)
{
    const auto key = [](const QByteArray& xml) {
        const QString section = QStringLiteral("user/system/security");
        return TavXmlConfig(xml).GetConfig(section, QStringLiteral("k"), false, QStringLiteral("missing"), false);
    };
    const QByteArray start = "<c><user><system><security><k>";
    s_warnings = 0;
    key(bytes);
    Require(s_warnings <= 1, "one warning a file");
    Require(key(start + "first</k>" + bytes) == QLatin1String("first"), "a key before a fault is kept");
    QString text = QString::fromUtf8(bytes);
    const auto isForbidden = [](QChar c) { return c < QLatin1Char(' ') || c >= QChar(0xd800); };
    text.truncate(static_cast<int>(std::remove_if(text.begin(), text.end(), isForbidden) - text.begin()));
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
    constexpr int FoldedAt = 78;
    const QStringList whole = Unfold(Lines(bytes));
    Require(Unfold(whole) == whole, "nothing is left to unfold");
    QStringList folded;
    for (QString line : whole) {
        for (; line.size() > FoldedAt; line = QLatin1Char(' ') + line.mid(FoldedAt))
            folded += line.left(FoldedAt);
        folded += line;
    }
    Require(Unfold(folded) == whole, "a folded line is put together again");
    const NamingContext context = ParseNamingContext(whole);
    Require(context.baseDn.isEmpty() || context.baseDn.startsWith(QLatin1String(" DC=")), "it is a domain's");
    Require(!context.baseDn.contains(QLatin1String("DnsZones")), "it is no DNS zone's");
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
    const QByteArray user(bytes.constData()); // up to the first NUL
    const QByteArray sealed = rdp_encrypt(user.constData());
    const QString expected = sealed.isEmpty() ? QString() : QString::fromLatin1(user);
    Require(name(sealed + ",00," + bytes) == expected, "only the first field counts");
}

void Blur(const QByteArray& bytes)
{
    const QString text = QString::fromUtf8(bytes);
    const QString blurred = TavStringBlur::Encode(text);
    Require(TavStringBlur::Decode(blurred) == text, "a text comes back");
    Require(TavStringBlur::Decode(QString::fromLatin1(Damaged(blurred.toLatin1()))).isNull(), "damage is noticed");
    if (TavStringBlur::Decode(text).isNull())
        return;
    Require(text.startsWith(QLatin1String("tb1:")), "the prefix stands first");
    Require(TavStringBlur::Decode(QString::fromLatin1(Damaged(text.toLatin1()))).isNull(), "a form has no twin");
}

void Cipher(const QByteArray& bytes)
{
    const QByteArray text(bytes.constData()); // up to the first NUL
    const QByteArray sealed = rdp_encrypt(text.constData());
    Require(sealed.isEmpty() == (text.size() > 4096), "only what is too long is refused");
    Require(sealed.isEmpty() || text == rdp_decrypt(sealed.constData()), "a text comes back");
    Require(sealed.isEmpty() || !rdp_decrypt(Damaged(sealed).constData()), "damage is noticed");
    Require(!rdp_decrypt(text.constData()) || !rdp_decrypt(Damaged(text).constData()), "a form has no twin");
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
    qInstallMessageHandler(CountWarning);
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
