// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tav3/export.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>
#include <optional>

// The registry-style store, registry.reg in the configuration folder: the text form of a registry export in UTF-8.
// Sections and names ignore letter case; the first of two values of a name wins.
class TAV3_EXPORT TavRegIni {
public:
    TavRegIni() = default;
    // Takes `store` in place of the file.
    explicit TavRegIni(const QByteArray& store);

    // Reads the values of the section "hive\path"; 0 when there is such a section, else 2 (and no value is found then).
    // A missing or unreadable file has no section. The access mask has no meaning here.
    int OpenKey(const QString& hive, const QString& path, unsigned accessMask);
    // A quoted value of the open key; `defaultText` when it is missing, malformed or a dword.
    QString GetSz(const QString& name, const QString& defaultText) const;
    // True for a dword other than 0 and for a quoted "true", "yes", "on" or "1" in any letter case, false for other
    // values; `defaultValue` when it is missing or malformed.
    bool GetBoolean(const QString& name, bool defaultValue) const;
    // May be called at any time; no value is found after it.
    void CloseKey();

private:
    TAV3_HIDDEN void AddValue(const QStringRef& line);

    std::optional<QByteArray> m_store; // unset: the file
    QHash<QString, QVariant> m_values; // of the open key, by folded name: QString or unsigned
};
