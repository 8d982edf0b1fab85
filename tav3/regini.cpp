// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/regini.h"

#include "tav3/configfile.h"

#include <QTextStream>
#include <algorithm>

namespace {

constexpr int KeyNotFound = 2;

// Reads the quoted text that begins at `at`, with \\ and \" undone, and moves `at` behind it. False when there is none.
bool ReadQuoted(const QStringRef& line, int& at, QString& text)
{
    const QLatin1Char quote('"');
    const QLatin1Char escape('\\');
    if (at >= line.size() || line.at(at) != quote)
        return false;
    for (++at; at < line.size(); ++at) {
        if (line.at(at) == quote) {
            ++at;
            return true;
        }
        const QChar next = at + 1 < line.size() ? line.at(at + 1) : QChar();
        if (line.at(at) == escape && (next == escape || next == quote))
            ++at;
        text += line.at(at);
    }
    return false;
}

bool IsHexDigit(QChar c)
{
    return c.unicode() < 128 && isxdigit(c.unicode());
}

// The value that is left of a line from `at` on, invalid when it is malformed or of another kind.
QVariant ReadValue(const QStringRef& line, int at)
{
    QString text;
    if (ReadQuoted(line, at, text))
        return at == line.size() ? text : QVariant();
    const QStringRef kind = line.mid(at, 6);
    const QStringRef digits = line.mid(at + 6);
    if (kind.compare(QLatin1String("dword:"), Qt::CaseInsensitive) != 0 || digits.isEmpty() || digits.size() > 8
        || !std::all_of(digits.begin(), digits.end(), IsHexDigit))
        return {};
    return digits.toUInt(nullptr, 16);
}

} // namespace

TavRegIni::TavRegIni(const QByteArray& store) : m_store(store)
{
}

int TavRegIni::OpenKey(const QString& hive, const QString& path, unsigned)
{
    CloseKey();
    const auto bytes = m_store ? m_store : ReadConfigFile(ConfigFilePath(QStringLiteral("registry.reg")));
    if (!bytes)
        return KeyNotFound;
    QTextStream store(*bytes);
    store.setCodec("UTF-8"); // drops a byte-order mark
    const QString section = QLatin1Char('[') + hive + QLatin1Char('\\') + path + QLatin1Char(']');
    bool found = false;
    bool inside = false;
    QString whole;
    while (store.readLineInto(&whole)) {
        const QStringRef line = QStringRef(&whole).trimmed();
        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
            inside = line.compare(section, Qt::CaseInsensitive) == 0;
            found = found || inside;
        } else if (inside) {
            AddValue(line);
        }
    }
    return found ? 0 : KeyNotFound;
}

QString TavRegIni::GetSz(const QString& name, const QString& defaultText) const
{
    const QVariant value = m_values.value(name.toCaseFolded());
    return value.userType() == QMetaType::QString ? value.toString() : defaultText;
}

bool TavRegIni::GetBoolean(const QString& name, bool defaultValue) const
{
    const QVariant value = m_values.value(name.toCaseFolded());
    if (!value.isValid())
        return defaultValue;
    return value.userType() == QMetaType::QString ? IsTrueWord(value.toString()) : value.toUInt() != 0;
}

void TavRegIni::CloseKey()
{
    m_values.clear();
}

// Keeps a line of the form "name"=value; a comment or any other line is passed over.
void TavRegIni::AddValue(const QStringRef& line)
{
    int at = 0;
    QString name;
    if (!ReadQuoted(line, at, name) || at >= line.size() || line.at(at) != QLatin1Char('='))
        return;
    const QVariant value = ReadValue(line, at + 1);
    name = name.toCaseFolded();
    if (value.isValid() && !m_values.contains(name))
        m_values.insert(name, value);
}
