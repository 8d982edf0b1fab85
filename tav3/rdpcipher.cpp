// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/rdpcipher.h"

#include "tav3/sealedtext.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace {

constexpr size_t MaxTextBytes = 4096;
constexpr size_t PrintedSize // with the NUL
    = sodium_base64_ENCODED_LEN(SealedOverhead + MaxTextBytes, sodium_base64_VARIANT_URLSAFE_NO_PADDING);
constexpr auto KeyBytes = static_cast<ssize_t>(sizeof(SealKey::bytes));

QByteArray KeyPath()
{
    return "/tmp/.tav3-" + QByteArray::number(geteuid()) + ".key";
}

bool ReadKey(int fd, SealKey& key)
{
    struct stat info { };
    return fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_uid == geteuid() && (info.st_mode & 077) == 0
        && info.st_size == KeyBytes && read(fd, key.bytes, sizeof key.bytes) == KeyBytes;
}

bool WriteNewKey(int fd)
{
    SealKey key;
    randombytes_buf(key.bytes, sizeof key.bytes);
    return fchmod(fd, 0600) == 0 && write(fd, key.bytes, sizeof key.bytes) == KeyBytes;
}

// The key is written under a name of its own and then linked to `path`, so that nobody ever sees half a key. Another
// process may be faster: its key is as good; LoadKey() sees whether there is one.
void MakeKeyFile(const QByteArray& path)
{
    QByteArray temporary = path + ".XXXXXX";
    const int fd = mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0)
        return;
    if (WriteNewKey(fd))
        std::ignore = link(temporary.constData(), path.constData());
    close(fd);
    unlink(temporary.constData());
}

bool LoadKey(SealKey& key)
{
    const int fd = open(KeyPath().constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0)
        return false;
    const bool usable = ReadKey(fd, key);
    close(fd);
    return usable;
}

// Only where something is to be enciphered: a key made now could not decipher anything.
bool LoadOrMakeKey(SealKey& key)
{
    const QByteArray path = KeyPath();
    if (access(path.constData(), F_OK) != 0 && errno == ENOENT)
        MakeKeyFile(path);
    return LoadKey(key);
}

// Null when it does not fit.
template <size_t Size> char* CopyTo(char (&buffer)[Size], const QByteArray& text)
{
    if (text.size() >= static_cast<int>(Size))
        return nullptr;
    memcpy(buffer, text.constData(), static_cast<size_t>(text.size()) + 1);
    return buffer;
}

} // namespace

char* rdp_encrypt(const char* text)
{
    static char printed[PrintedSize];
    SealKey key;
    const size_t length = text ? strnlen(text, MaxTextBytes + 1) : 0;
    if (!text || length > MaxTextBytes || !IsCipherReady() || !LoadOrMakeKey(key))
        return nullptr;
    const auto sealed = Seal(QByteArray::fromRawData(text, static_cast<int>(length)), key.bytes);
    return sealed ? CopyTo(printed, *sealed) : nullptr;
}

char* rdp_decrypt(const char* text)
{
    static char plain[MaxTextBytes + 1];
    SealKey key;
    const size_t length = text ? strnlen(text, PrintedSize) : 0;
    if (!text || length >= PrintedSize || !IsCipherReady() || !LoadKey(key))
        return nullptr;
    auto opened = Unseal(QByteArray::fromRawData(text, static_cast<int>(length)), key.bytes);
    if (!opened)
        return nullptr;
    char* result = CopyTo(plain, *opened);
    Wipe(*opened);
    return result;
}
