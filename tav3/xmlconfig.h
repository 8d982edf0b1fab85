// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tav3/export.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

class QXmlStreamReader;

// What the reader met in a file, for a program that explains a configuration.
struct TavXmlForm {
    struct Element {
        QString path;           // "user/system/security/reqcert", without the root; empty: the root itself
        qint64 line;            // from 1
        QStringList attributes; // their names
    };
    QString root;              // its name; empty: there is none
    QVector<Element> elements; // the root first, the others in the order in which they begin
    QStringList comments;
    bool isWhole = true; // else the reader stopped at this place:
    qint64 faultLine = 0;
    qint64 faultColumn = 0;
};

// The terminal's XML configuration, config.xml in the configuration folder: below a root element one nested element for
// each step of a section's path, in the section one element for each key. The first of two elements for a key wins.
class TAV3_EXPORT TavXmlConfig {
public:
    // Reads the file. A missing one reads as empty; one that is not well-formed, or has a document type declaration,
    // keeps the keys before the fault and gives one warning with file, line and column.
    TavXmlConfig();
    // The same, and tells in `form` what the reader met; nothing of a file that is missing or can't be read.
    explicit TavXmlConfig(TavXmlForm& form);
    // Reads `xml` in the same way; `name` stands for the file in the warning.
    explicit TavXmlConfig(const QByteArray& xml, const QString& name = QStringLiteral("config.xml"));

    // True for "true", "yes", "on" and "1" in any letter case; false for every other text and for a missing key.
    // `section` is a path as "user/system/security".
    bool GetBoolValue(const QString& section, const QString& key) const;
    // The text without the white space at its ends, `defaultText` for a missing key. The two flags have no meaning
    // here.
    QString GetConfig(const QString& section, const QString& key, bool, const QString& defaultText, bool) const;

private:
    TAV3_HIDDEN void Read(const QByteArray& xml, const QString& name, TavXmlForm* form);
    TAV3_HIDDEN void ReadElement(QXmlStreamReader& xml, const QString& path, int depth, TavXmlForm* form);

    QHash<QString, QString> m_texts; // by "section/key"
};
