// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

// The support library's plain functions in this program's strings: Latin-1 both ways, null results become empty.

// Crypt-style hash of `value` with the salt and method of `setting`.
QString HashedWith(const QString& value, const QByteArray& setting);
// The same with a fresh salt of the preferred method.
QString Hashed(const QString& value);
QString Enciphered(const QString& value);
QString Deciphered(const QString& text);
