// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/stringblur.h"

#include "tav3/sealedtext.h"

#include <QTextCodec>

namespace {

const QLatin1String Prefix("tb1:");

// Not a secret. It only makes the texts unreadable at a glance and a change of them noticeable.
constexpr unsigned char BlurKey[crypto_secretbox_KEYBYTES] = {
    0xa8, 0xd1, 0x73, 0x8e, 0x56, 0x02, 0x11, 0xbe, 0x52, 0x1f, 0x69, 0xdd, 0xaf, 0x99, 0x96, 0x3e,
    0x79, 0x20, 0x1f, 0xb5, 0x51, 0x75, 0x0d, 0x26, 0x17, 0xbd, 0x24, 0x23, 0x1a, 0x83, 0xe3, 0xc9,
};

} // namespace

QString TavStringBlur::Encode(const QString& text)
{
    QByteArray plain = text.toUtf8();
    const auto printed = Seal(plain, BlurKey);
    Wipe(plain);
    return printed ? Prefix + QString::fromLatin1(*printed) : QString();
}

QString TavStringBlur::Decode(const QString& text)
{
    if (!text.startsWith(Prefix))
        return {};
    auto plain = Unseal(text.midRef(Prefix.size()).toLatin1(), BlurKey);
    if (!plain)
        return {};
    // QString::fromUtf8 would drop a byte-order mark that the text begins with.
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QString decoded = QTextCodec::codecForName("UTF-8")->toUnicode(plain->constData(), plain->size(), &state);
    Wipe(*plain);
    return decoded;
}
