// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/xmlconfig.h"

#include "tav3/configfile.h"

#include <QBuffer>
#include <QDebug>
#include <QXmlStreamReader>

namespace {

// Three times what the terminal's own configuration uses. They bound the stack, and the memory for the paths.
constexpr int MaxDepth = 16;
constexpr int MaxPathLength = 256;

// Hands the text out tag by tag. The reader decodes what it gets as one piece: with the whole file at once, a byte in
// the wrong encoding would cost the keys before it too, and have no place.
class TagByTag : public QBuffer {
protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        constexpr int Least = 4; // the reader finds the encoding out from these
        const auto left = static_cast<int>(qMin(maxSize, size() - pos()));
        const int end = QByteArray::fromRawData(buffer().constData() + pos(), left).indexOf('>', Least - 1);
        return QBuffer::readData(data, end < 0 ? left : end + 1);
    }
};

QString ChildPath(const QString& parent, const QStringRef& name)
{
    return parent.isEmpty() ? name.toString() : parent + QLatin1Char('/') + name;
}

void NoteElement(const QXmlStreamReader& xml, const QString& path, TavXmlForm& form)
{
    if (form.elements.isEmpty())
        form.root = xml.name().toString();
    QStringList attributes;
    for (const QXmlStreamAttribute& attribute : xml.attributes())
        attributes += attribute.name().toString();
    form.elements.append({path, xml.lineNumber(), attributes});
}

void NoteFault(const QXmlStreamReader& xml, TavXmlForm& form)
{
    form.isWhole = false;
    form.faultLine = xml.lineNumber();
    form.faultColumn = xml.columnNumber();
}

} // namespace

TavXmlConfig::TavXmlConfig()
{
    const QString path = ConfigFilePath(QStringLiteral("config.xml"));
    if (const auto xml = ReadConfigFile(path))
        Read(*xml, path, nullptr);
}

TavXmlConfig::TavXmlConfig(TavXmlForm& form)
{
    const QString path = ConfigFilePath(QStringLiteral("config.xml"));
    if (const auto xml = ReadConfigFile(path))
        Read(*xml, path, &form);
}

TavXmlConfig::TavXmlConfig(const QByteArray& xml, const QString& name)
{
    Read(xml, name, nullptr);
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

void TavXmlConfig::Read(const QByteArray& bytes, const QString& name, TavXmlForm* form)
{
    TagByTag device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    QXmlStreamReader xml(&device);
    xml.setNamespaceProcessing(false);
    while (!xml.atEnd() && !xml.hasError()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::DTD)
            xml.raiseError(); // no entity of the file's own is ever expanded
        else if (token == QXmlStreamReader::StartElement)
            ReadElement(xml, QString(), 0, form);
        else if (token == QXmlStreamReader::Comment && form)
            form->comments += xml.text().toString();
    }
    if (xml.hasError() && form)
        NoteFault(xml, *form);
    // The reader's own sentence can quote the file, and with it a password.
    if (xml.hasError())
        qDebug() << name << "line" << xml.lineNumber() << "column" << xml.columnNumber()
                 << "is not well-formed, what follows is ignored";
}

// Reads the element that the reader stands on: its children and, as the value of a key, its own text. Of a section that
// is white space, which nobody asks for.
void TavXmlConfig::ReadElement(QXmlStreamReader& xml, const QString& path, int depth, TavXmlForm* form)
{
    if (form)
        NoteElement(xml, path, *form);
    if (depth > MaxDepth || path.size() > MaxPathLength)
        xml.raiseError();
    QString text;
    while (!xml.atEnd() && !xml.hasError()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            ReadElement(xml, ChildPath(path, xml.name()), depth + 1, form);
            break;
        case QXmlStreamReader::Characters:
            text += xml.text();
            break;
        case QXmlStreamReader::Comment:
            if (form)
                form->comments += xml.text().toString();
            break;
        case QXmlStreamReader::EndElement:
            if (!m_texts.contains(path))
                m_texts.insert(path, text.trimmed());
            return;
        default:
            break;
        }
    }
}
