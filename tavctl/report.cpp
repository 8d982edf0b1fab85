// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/report.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <tuple>

namespace {

constexpr int JsonFormat = 1; // raised when a member changes its meaning or goes

const char* NameOf(Grade grade)
{
    switch (grade) {
    case Grade::Error:
        return "error";
    case Grade::Warning:
        return "warning";
    case Grade::Note:
        break;
    }
    return "note";
}

const Wording& WordingOf(const char* code)
{
    const QVector<Wording>& all = Wordings();
    const auto found
        = std::find_if(all.begin(), all.end(), [code](const Wording& wording) { return !strcmp(wording.code, code); });
    if (found == all.end())
        qFatal("no wording for %s", code);
    return *found;
}

// A certificate or an answer of a server must not steer the terminal that shows it.
QString Printable(QString text)
{
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format)
            c = QLatin1Char('?');
    }
    return text;
}

QString Filled(const char* sentence, const QStringList& arguments)
{
    QString text = QString::fromUtf8(sentence);
    for (int i = arguments.size(); i > 0; --i) // from the last: an argument can hold a "%"
        text.replace(QLatin1Char('%') + QString::number(i), Printable(arguments.at(i - 1)));
    return text;
}

} // namespace

void Report::Find(const char* code, const QStringList& arguments, bool applies)
{
    if (!applies)
        return;
    const Wording& wording = WordingOf(code);
    const Finding finding{&wording, Filled(wording.sentence, arguments)};
    // The worst first, otherwise in the order of finding.
    const auto place
        = std::upper_bound(m_findings.begin(), m_findings.end(), finding,
                           [](const Finding& a, const Finding& b) { return a.wording->grade < b.wording->grade; });
    m_findings.insert(place, finding);
}

bool Report::Has(Grade grade) const
{
    return std::any_of(m_findings.begin(), m_findings.end(),
                       [grade](const Finding& finding) { return finding.wording->grade == grade; });
}

int Report::Status(bool strict) const
{
    return Has(Grade::Error) || (strict && Has(Grade::Warning)) ? EXIT_FAILURE : EXIT_SUCCESS;
}

void Report::Print(bool asJson) const
{
    if (asJson)
        PrintJson();
    else
        PrintText();
}

void Report::PrintText() const
{
    for (const auto& [title, text] : m_facts)
        printf("%-14s %s\n", title.toUtf8().constData(), text.toUtf8().constData());
    if (Has(Grade::Error) || Has(Grade::Warning))
        puts("What looks wrong:");
    else
        puts(m_findings.isEmpty() ? "Nothing looks wrong." : "Nothing looks wrong. Worth knowing:");
    for (const Finding& finding : m_findings)
        printf("- %s: %s [%s]\n", NameOf(finding.wording->grade), finding.sentence.toUtf8().constData(),
               finding.wording->code);
}

void Report::PrintJson() const
{
    QJsonObject facts;
    for (const auto& [title, text] : m_facts)
        facts.insert(title, text);
    QJsonArray findings;
    for (const Finding& finding : m_findings) {
        findings.append(QJsonObject{{QStringLiteral("grade"), QLatin1String(NameOf(finding.wording->grade))},
                                    {QStringLiteral("code"), QLatin1String(finding.wording->code)},
                                    {QStringLiteral("sentence"), finding.sentence}});
    }
    const QJsonObject report{{QStringLiteral("format"), JsonFormat},
                             {QStringLiteral("version"), QStringLiteral(PROGRAM_VERSION)},
                             {QStringLiteral("verb"), QLatin1String(m_verb)},
                             {QStringLiteral("facts"), facts},
                             {QStringLiteral("findings"), findings}};
    std::ignore = fputs(QJsonDocument(report).toJson().constData(), stdout);
}
