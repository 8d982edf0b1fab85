// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <cstring>
#include <utility>

// Bytes that hold a password, overwritten when they go out of scope.
class SecretBytes {
public:
    explicit SecretBytes(QByteArray bytes) : m_bytes(std::move(bytes)) { }
    ~SecretBytes() { explicit_bzero(m_bytes.data(), static_cast<size_t>(m_bytes.size())); }
    SecretBytes(const SecretBytes&) = delete;
    SecretBytes& operator=(const SecretBytes&) = delete;
    const char* Text() const { return m_bytes.constData(); }
    int Size() const { return m_bytes.size(); }

private:
    QByteArray m_bytes;
};
