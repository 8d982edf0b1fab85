// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/sealedtext.h"

namespace {

constexpr int PrintedVariant = sodium_base64_VARIANT_URLSAFE_NO_PADDING;

unsigned char* Bytes(QByteArray& array)
{
    return reinterpret_cast<unsigned char*>(array.data());
}

// One text has one printed form only: stray bits after the last byte and any foreign character are refused.
bool FromPrinted(const QByteArray& printed, QByteArray& sealed)
{
    size_t length = 0;
    sealed.resize(printed.size());
    const bool whole = sodium_base642bin(Bytes(sealed), static_cast<size_t>(sealed.size()), printed.constData(),
                                         static_cast<size_t>(printed.size()), nullptr, &length, nullptr, PrintedVariant)
        == 0;
    sealed.truncate(static_cast<int>(length));
    return whole && length >= SealedOverhead;
}

} // namespace

bool IsCipherReady()
{
    return sodium_init() >= 0;
}

std::optional<QByteArray> Seal(const QByteArray& text, const unsigned char* key)
{
    if (!IsCipherReady())
        return std::nullopt;
    QByteArray sealed(text.size() + static_cast<int>(SealedOverhead), Qt::Uninitialized);
    unsigned char* nonce = Bytes(sealed);
    randombytes_buf(nonce, crypto_secretbox_NONCEBYTES);
    crypto_secretbox_easy(nonce + crypto_secretbox_NONCEBYTES, reinterpret_cast<const unsigned char*>(text.constData()),
                          static_cast<size_t>(text.size()), nonce, key);
    const size_t size = sodium_base64_encoded_len(static_cast<size_t>(sealed.size()), PrintedVariant);
    QByteArray printed(static_cast<int>(size), Qt::Uninitialized);
    sodium_bin2base64(printed.data(), size, nonce, static_cast<size_t>(sealed.size()), PrintedVariant);
    printed.chop(1); // the NUL at its end
    return printed;
}

std::optional<QByteArray> Unseal(const QByteArray& printed, const unsigned char* key)
{
    QByteArray sealed;
    if (!IsCipherReady() || !FromPrinted(printed, sealed))
        return std::nullopt;
    const unsigned char* nonce = Bytes(sealed);
    const auto boxSize = static_cast<size_t>(sealed.size()) - crypto_secretbox_NONCEBYTES;
    QByteArray text(static_cast<int>(boxSize - crypto_secretbox_MACBYTES), Qt::Uninitialized);
    if (crypto_secretbox_open_easy(Bytes(text), nonce + crypto_secretbox_NONCEBYTES, boxSize, nonce, key) != 0)
        return std::nullopt; // nothing was deciphered: the seal is checked first
    return text;
}

void Wipe(QByteArray& secret)
{
    sodium_memzero(secret.data(), static_cast<size_t>(secret.size()));
}
