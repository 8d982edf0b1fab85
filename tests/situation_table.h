// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/testsupport.h"

#include <QMap>
#include <QRegularExpression>

// One situation; tests/tables/README.md explains its words.
struct Situation {
    QString text;      // the words as the table has them
    QStringList steps; // the same, those of macros in their places
    QString status;
    QString files;
    int limitS; // 0 when the table does not say
};

// What stands in tests/tables/situations.tsv and in a table of that folder. A line that is no part of the language ends
// the process.
class SituationTable {
public:
    explicit SituationTable(const QString& name)
    {
        for (const QString& file : {QStringLiteral("situations"), name}) {
            const QString path = QStringLiteral(PROJECT_DIR "/tests/tables/%1.tsv").arg(file);
            for (const QString& line : QString::fromUtf8(FileText(path)).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
                ReadLine(line);
        }
        for (Situation& situation : situations)
            situation.steps = Steps(situation.text);
    }

    QMap<QString, QByteArray> scripts; // lines of sh by their names
    QStringList tools;                 // "NAME=SCRIPT"
    QStringList secrets;
    bool needsWorld = false;
    bool needsDomain = false;
    QList<Situation> situations;

private:
    // The lines that `text` stands for: each "{a,b}" in it is one of its choices.
    static QStringList Expanded(const QString& text)
    {
        static const QRegularExpression group(QStringLiteral("\\{([^{}]*)\\}"));
        const QRegularExpressionMatch match = group.match(text);
        if (!match.hasMatch())
            return {text};
        QStringList all;
        for (const QString& choice : match.captured(1).split(QLatin1Char(',')))
            all += Expanded(QString(text).replace(match.capturedStart(), match.capturedLength(), choice));
        return all;
    }

    void ReadLine(const QString& line)
    {
        const QStringList cells = line.split(QLatin1Char('\t'));
        if (line.startsWith(QLatin1Char('#')) || ReadSetting(cells.first(), cells.mid(1).join(QLatin1Char('\t'))))
            return;
        if (cells.size() < 3)
            qFatal("no line of a table of situations: %s", qPrintable(line));
        for (const QString& row : Expanded(line)) {
            const QStringList parts = row.split(QLatin1Char('\t'));
            situations += Situation{parts.at(0), {}, parts.at(1), parts.at(2), parts.value(3).toInt()};
        }
    }

    // False: it is none.
    bool ReadSetting(const QString& key, const QString& value)
    {
        if (key.startsWith(QLatin1Char('$')))
            scripts[key.mid(1)] = value.toUtf8();
        else if (key.startsWith(QLatin1Char('@')) && !value.contains(QLatin1Char('\t')))
            m_macros[key] = value;
        else if (key == QLatin1String("tool"))
            tools += value;
        else if (key == QLatin1String("secret"))
            secrets += value;
        else if (key == QLatin1String("world"))
            needsWorld = true;
        else if (key == QLatin1String("domain"))
            needsDomain = true;
        else
            return false;
        return true;
    }

    QStringList Steps(const QString& text) const
    {
        QStringList steps;
        for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            steps += m_macros.contains(word) ? Steps(m_macros.value(word)) : QStringList{word};
        return steps;
    }

    QMap<QString, QString> m_macros;
};
