// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/xmlconfig.h"

#include "tav3/configfile.h"

#include <QDebug>
#include <QXmlStreamReader>

namespace {

// Three times what the terminal's own configuration uses. They bound the stack, and the memory for the paths.
constexpr int MaxDepth = 16;
constexpr int MaxPathLength = 256;

QString ChildPath(const QString& parent, const QStringRef& name)
{
    return parent.isEmpty() ? name.toString() : parent + QLatin1Char('/') + name;
}

} // namespace

TavXmlConfig::TavXmlConfig()
{
    const QString path = ConfigFilePath(QStringLiteral("config.xml"));
    if (const auto xml = ReadConfigFile(path))
        Read(*xml, path);
}

TavXmlConfig::TavXmlConfig(const QByteArray& xml, const QString& name)
{
    Read(xml, name);
}

bool TavXmlConfig::GetBoolValue(const QString& section, const QString& key) const
{
    return IsTrueWord(GetConfig(section, key, false, QString(), false));
}

QString TavXmlConfig::GetConfig(const QString& section, const QString& key, bool, const QString& defaultText,
                                bool) const
{
    return m_texts.value(section + QLatin1Char('/') + key, defaultText);
}

void TavXmlConfig::Read(const QByteArray& bytes, const QString& name)
{
    QXmlStreamReader xml(bytes);
    xml.setNamespaceProcessing(false);
    while (!xml.atEnd() && !xml.hasError()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::DTD)
            xml.raiseError(); // no entity of the file's own is ever expanded
        else if (token == QXmlStreamReader::StartElement)
            ReadElement(xml, QString(), 0);
    }
    // The reader's own sentence can quote the file, and with it a password.
    if (xml.hasError())
        qWarning() << name << "line" << xml.lineNumber() << "column" << xml.columnNumber()
                   << "is not well-formed, what follows is ignored";
}

// Reads the children of the element that the reader stands on. An element without children is a key.
void TavXmlConfig::ReadElement(QXmlStreamReader& xml, const QString& path, int depth)
{
    if (depth > MaxDepth || path.size() > MaxPathLength)
        xml.raiseError();
    QString text;
    bool isKey = true;
    while (!xml.atEnd() && !xml.hasError()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            isKey = false;
            ReadElement(xml, ChildPath(path, xml.name()), depth + 1);
            break;
        case QXmlStreamReader::Characters:
            text += xml.text();
            break;
        case QXmlStreamReader::EndElement:
            if (isKey && !m_texts.contains(path))
                m_texts.insert(path, text.trimmed());
            return;
        default:
            break;
        }
    }
}
