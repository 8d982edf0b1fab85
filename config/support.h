// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

// The support library's plain functions in this program's strings: Latin-1 both ways, null results become empty.

// Crypt-style hash of `value` with the salt and method of `setting`.
QString HashedWith(const QString& value, const QByteArray& setting);
// The same with a fresh salt of the preferred method.
QString Hashed(const QString& value);
QString Enciphered(const QString& value);
QString Deciphered(const QString& text);

// The hashes of one user's name and password, each with a salt of its own. They take some 20 ms each on a fast machine,
// and can be made one after the other while somebody else is waited for.
class UserHashes {
public:
    UserHashes(const QString& name, const QString& password) : m_name(name), m_password(password) { }

    // Makes the next one that is missing, if any.
    void MakeNext();
    // Makes what is missing.
    QString OfName();
    QString OfPassword();

    const QString& Name() const { return m_name; }
    const QString& Password() const { return m_password; }

private:
    const QString m_name;
    const QString m_password;
    std::optional<QString> m_nameHash;
    std::optional<QString> m_passwordHash;
};
