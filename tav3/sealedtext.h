// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <optional>
#include <sodium.h>

// Authenticated encryption of a short text: XSalsa20-Poly1305 with a fresh nonce, printed as URL-safe base64 without
// padding (letters, digits, '-' and '_').

constexpr size_t SealedOverhead = crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES;

// A key, wiped when it goes out of scope.
struct SealKey {
    unsigned char bytes[crypto_secretbox_KEYBYTES] = {};

    SealKey() = default;
    SealKey(const SealKey&) = delete;
    SealKey& operator=(const SealKey&) = delete;
    ~SealKey() { sodium_memzero(bytes, sizeof bytes); }
};

// The cipher library must be ready before any of its operations; it is made so at the first call. False when there is
// no source of random bytes.
bool IsCipherReady();

// The printed form of `text`; nothing when the cipher is not ready.
std::optional<QByteArray> Seal(const QByteArray& text, const unsigned char* key);

// The text that was sealed with `key`; nothing when `printed` is anything else. The caller wipes it.
std::optional<QByteArray> Unseal(const QByteArray& printed, const unsigned char* key);

void Wipe(QByteArray& secret);
