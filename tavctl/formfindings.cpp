// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/findings.h"

#include "tavctl/report.h"
#include "tavctl/terminalconfig.h"

#include <QMap>
#include <QRegularExpression>
#include <algorithm>
#include <numeric>
#include <vector>

namespace {

const QString SystemInfo = QStringLiteral("user/system/systeminfo");
const QString Security = QStringLiteral("user/system/security");
const QString AnothersKey = QStringLiteral("enablecontrolledpanel"); // of another program of the terminal
const QString CommonName = QStringLiteral("reqcert"); // in another section it may well be another program's

enum class Kind { Switch, Text, Password };
struct KnownKey {
    QString name;
    Kind kind;
    QString Section() const { return name == QLatin1String("uselegacyapplets") ? SystemInfo : Security; }
    QString Path() const { return Section() + QLatin1Char('/') + name; }
};
const std::vector<KnownKey> KnownKeys{
    {QStringLiteral("uselegacyapplets"), Kind::Switch}, {QStringLiteral("enableterminalpass"), Kind::Switch},
    {QStringLiteral("terminalpass"), Kind::Password},   {QStringLiteral("enablelocalauth"), Kind::Switch},
    {QStringLiteral("localauthpass"), Kind::Password},  {QStringLiteral("enableremoteauth"), Kind::Switch},
    {QStringLiteral("remoteauthserver"), Kind::Text},   {QStringLiteral("remoteauthtype"), Kind::Text},
    {QStringLiteral("remoteauthdomain"), Kind::Text},   {QStringLiteral("remoteauthport"), Kind::Text},
    {QStringLiteral("reqcert"), Kind::Switch}};

using Element = TavXmlForm::Element;

QString NameOf(const Element& element)
{
    return element.path.section(QLatin1Char('/'), -1);
}

QString ParentOf(const Element& element)
{
    return element.path.section(QLatin1Char('/'), 0, -2);
}

int Count(const TavXmlForm& form, const QString& path)
{
    return static_cast<int>(std::count_if(form.elements.begin(), form.elements.end(),
                                          [&path](const Element& element) { return element.path == path; }));
}

bool HoldsElements(const TavXmlForm& form, const QString& path)
{
    const QString below = path + QLatin1Char('/');
    return std::any_of(form.elements.begin(), form.elements.end(),
                       [&below](const Element& element) { return element.path.startsWith(below); });
}

// With the root, as a reader of the file sees it.
QString FullPath(const TavXmlForm& form, const QString& path)
{
    return QLatin1Char('/') + form.root + (path.isEmpty() ? QString() : QLatin1Char('/') + path);
}

QString ValueOf(const TerminalConfig& terminal, const KnownKey& key)
{
    return terminal.xml.GetConfig(key.Section(), key.name, false, QString(), false);
}

// How many letters must be put in, taken out or replaced to make one of the other (Levenshtein's distance).
int Distance(const QString& a, const QString& b)
{
    std::vector<int> row(static_cast<size_t>(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < a.size(); ++i) {
        int diagonal = std::exchange(row[0], i + 1);
        for (size_t j = 1; j < row.size(); ++j) {
            const int replaced = diagonal + (a.at(i) != b.at(static_cast<int>(j) - 1));
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

// The known key that a name is likely meant for: a quarter of its letters may be wrong, but two in any case. Letter
// case is no difference here. Empty when none is near.
QString NearestKey(const QString& name)
{
    const auto distance = [&name](const KnownKey& key) { return Distance(name.toLower(), key.name); };
    const auto nearest
        = std::min_element(KnownKeys.begin(), KnownKeys.end(),
                           [&](const KnownKey& a, const KnownKey& b) { return distance(a) < distance(b); });
    return distance(*nearest) <= qMax(2, nearest->name.size() / 4) ? nearest->name : QString();
}

bool IsKnown(const QString& path)
{
    return std::any_of(KnownKeys.begin(), KnownKeys.end(), [&path](const KnownKey& key) { return key.Path() == path; });
}

void FindUnknownKeys(const TavXmlForm& form, Report& report)
{
    for (const Element& element : form.elements) {
        const QString parent = ParentOf(element);
        const QString name = NameOf(element);
        if ((parent != Security && parent != SystemInfo) || IsKnown(element.path) || name == AnothersKey)
            continue;
        const QString line = QString::number(element.line);
        const QString nearest = NearestKey(name);
        const bool isMisplaced = nearest == name; // told as such
        report.Find("unknown-key", {name, line, nearest}, !nearest.isEmpty() && !isMisplaced);
        report.Find("foreign-key", {name, line}, nearest.isEmpty() && parent == Security);
    }
}

// Keys that are missing where they are looked for, but stand in another place; a finding a place.
bool FindMisplacedKeys(const TavXmlForm& form, Report& report)
{
    QMap<QPair<QString, QString>, QStringList> misplaced; // by the place and the right one
    for (const KnownKey& key : KnownKeys) {
        if (Count(form, key.Path()) > 0)
            continue;
        for (const Element& element : form.elements) {
            if (NameOf(element) == key.name && key.name != CommonName)
                misplaced[{ParentOf(element), key.Section()}] += key.name;
        }
    }
    for (auto place = misplaced.constBegin(); place != misplaced.constEnd(); ++place) {
        const auto& [found, right] = place.key();
        // The name of the root is free, but there must be one.
        const QString expected = QStringLiteral("/config/") + right;
        QStringList names = *place;
        names.removeDuplicates();
        report.Find("key-elsewhere", {names.join(QStringLiteral(", ")), FullPath(form, found), expected});
    }
    return !misplaced.isEmpty();
}

void FindSections(const TerminalConfig& terminal, bool isMisplaced, Report& report)
{
    const TavXmlForm& form = terminal.form;
    const bool isRead = form.isWhole && !form.elements.isEmpty() && !terminal.registryStore;
    report.Find("section-missing", {QStringLiteral("/config/") + Security},
                isRead && !isMisplaced && Count(form, Security) == 0);
    for (const QString& section : {SystemInfo, Security})
        report.Find("section-twice", {FullPath(form, section)}, Count(form, section) > 1);
}

// Attributes of a key without a text, or of a section on the way that are named like a key.
void FindAttributes(const TerminalConfig& terminal, Report& report)
{
    for (const Element& element : terminal.form.elements) {
        const QString line = QString::number(element.line);
        for (const KnownKey& key : KnownKeys) {
            const bool isValue
                = element.path == key.Path() && !element.attributes.isEmpty() && ValueOf(terminal, key).isEmpty();
            const bool isOnTheWay = element.path.isEmpty() || key.Path().startsWith(element.path + QLatin1Char('/'));
            report.Find("value-in-attribute", {key.name, line},
                        isValue || (isOnTheWay && element.attributes.contains(key.name)));
        }
    }
}

void FindInKey(const TerminalConfig& terminal, const KnownKey& key, Report& report)
{
    static const QRegularExpression switchWord(QStringLiteral("^(true|yes|on|1|false|no|off|0|)$"),
                                               QRegularExpression::CaseInsensitiveOption);
    const TavXmlForm& form = terminal.form;
    const int count = Count(form, key.Path());
    const QString value = ValueOf(terminal, key);
    const QString shown
        = key.kind == Kind::Password ? QStringLiteral("whatever it is") : QLatin1Char('"') + value + QLatin1Char('"');
    report.Find("key-twice", {key.name, shown}, count > 1);
    // A misspelled switch counts as off, which can leave a terminal open.
    report.Find("unclear-switch", {key.name}, key.kind == Kind::Switch && !value.contains(switchWord));
    const auto element = std::find_if(form.elements.begin(), form.elements.end(),
                                      [&key](const Element& met) { return met.path == key.Path(); });
    if (element != form.elements.end())
        report.Find("key-holds-elements", {key.name, QString::number(element->line)},
                    value.isEmpty() && HoldsElements(form, key.Path()));
    const QRegularExpression tag(QStringLiteral("<%1\\b").arg(key.name));
    report.Find("key-in-comment", {key.name}, count == 0 && !form.comments.filter(tag).isEmpty());
}

} // namespace

void FindInForm(const TerminalConfig& terminal, Report& report)
{
    const TavXmlForm& form = terminal.form;
    report.Find("not-well-formed",
                {terminal.folder + QStringLiteral("/config.xml"), QString::number(form.faultLine),
                 QString::number(form.faultColumn)},
                !form.isWhole);
    FindUnknownKeys(form, report);
    FindSections(terminal, FindMisplacedKeys(form, report), report);
    FindAttributes(terminal, report);
    for (const KnownKey& key : KnownKeys)
        FindInKey(terminal, key, report);
}
