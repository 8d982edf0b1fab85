// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPair>
#include <QStringList>
#include <QVector>

enum class Grade {
    Error,   // the terminal is open, or nobody can sign in
    Warning, // it works, but not safely or not wholly
    Note
};

// What can be found. The code is stable, for scripts and for tavctl(1); in the sentence stand %1, %2 ... for the
// arguments.
struct Wording {
    const char* code;
    Grade grade;
    const char* sentence;
};

const QVector<Wording>& Wordings();

// What a verb has to say: facts, a title and a text each, and findings.
class Report {
public:
    explicit Report(const char* verb) : m_verb(verb) { }

    void AddFact(const QString& title, const QString& text) { m_facts.append({title, text}); }
    // A finding, when it applies. The code must be one of Wordings().
    void Find(const char* code, const QStringList& arguments, bool applies = true);

    // For people, or one JSON object whose form tavctl(1) documents.
    void Print(bool asJson) const;
    // The exit status: failure with an error, or with a warning when those count too.
    int Status(bool strict) const;

private:
    struct Finding {
        const Wording* wording;
        QString sentence;
    };

    void PrintText() const;
    void PrintJson() const;
    bool Has(Grade grade) const;

    const char* m_verb;
    QVector<QPair<QString, QString>> m_facts;
    QVector<Finding> m_findings;
};
