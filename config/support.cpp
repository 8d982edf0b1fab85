// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/support.h"

#include "base/wipe.h"
#include "tav3/crypt.h"
#include "tav3/rdpcipher.h"

namespace {

// Takes the text out of a static buffer of the library and wipes it there.
QString Taken(char* buffer)
{
    QString text = QString::fromLatin1(buffer);
    if (buffer)
        explicit_bzero(buffer, strlen(buffer));
    return text;
}

} // namespace

QString HashedWith(const QString& value, const QByteArray& setting)
{
    const SecretBytes key(value.toLatin1());
    return Taken(crypt_passwd(key.Text(), setting.constData()));
}

QString Hashed(const QString& value)
{
    return HashedWith(value, Taken(crypt_make_salt()).toLatin1());
}

QString Enciphered(const QString& value)
{
    const SecretBytes plain(value.toLatin1());
    return Taken(rdp_encrypt(plain.Text()));
}

QString Deciphered(const QString& text)
{
    return Taken(rdp_decrypt(text.toLatin1().constData()));
}

void UserHashes::MakeNext()
{
    if (!m_nameHash)
        OfName();
    else
        OfPassword();
}

QString UserHashes::OfName()
{
    if (!m_nameHash)
        m_nameHash = Hashed(m_name);
    return *m_nameHash;
}

QString UserHashes::OfPassword()
{
    if (!m_passwordHash)
        m_passwordHash = Hashed(m_password);
    return *m_passwordHash;
}
