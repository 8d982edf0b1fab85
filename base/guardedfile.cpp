// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "base/guardedfile.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// O_NONBLOCK: a planted FIFO must not hold the program; it has no effect on the regular files we accept.
constexpr int NeverWaiting = O_NONBLOCK | O_CLOEXEC | O_NOCTTY;

int SystemFlags(GuardedMode mode)
{
    const int guard = O_NOFOLLOW | NeverWaiting;
    switch (mode) {
    case GuardedMode::Read:
        return guard | O_RDONLY;
    case GuardedMode::Truncate:
        return guard | O_WRONLY | O_CREAT; // emptied only after the file has been looked at
    case GuardedMode::Append:
        return guard | O_WRONLY | O_CREAT | O_APPEND;
    }
    return guard | O_RDONLY;
}

QIODevice::OpenMode DeviceMode(GuardedMode mode)
{
    if (mode == GuardedMode::Read)
        return QIODevice::ReadOnly;
    return mode == GuardedMode::Append ? QIODevice::WriteOnly | QIODevice::Append : QIODevice::WriteOnly;
}

bool IsAcceptable(int fd, GuardedMode mode, unsigned permissions)
{
    struct stat info { };
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode))
        return false;
    if (mode == GuardedMode::Read)
        return info.st_uid == geteuid() || info.st_uid == 0;
    // A second hard link would let somebody have a file of ours written through a name of theirs.
    if (info.st_uid != geteuid() || info.st_nlink != 1)
        return false;
    const unsigned narrowed = info.st_mode & permissions;
    return narrowed == (info.st_mode & 07777) || fchmod(fd, narrowed) == 0;
}

bool IsRegular(int fd)
{
    struct stat info { };
    return fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
}

// Makes a file of these bytes, whose name is left in `path` in the place of its "XXXXXX"; none is left on failure.
bool WriteNewFile(QByteArray& path, const QByteArray& bytes)
{
    const int fd = mkostemp(path.data(), O_CLOEXEC); // exclusive, 0600
    if (fd < 0)
        return false;
    const bool written = ::write(fd, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size();
    if (::close(fd) == 0 && written)
        return true;
    ::unlink(path.constData());
    return false;
}

} // namespace

bool OpenGuarded(QFile& file, GuardedMode mode, unsigned permissions)
{
    const int fd = ::open(QFile::encodeName(file.fileName()).constData(), SystemFlags(mode), permissions);
    if (fd < 0)
        return false;
    if (IsAcceptable(fd, mode, permissions) && (mode != GuardedMode::Truncate || ftruncate(fd, 0) == 0)
        && file.open(fd, DeviceMode(mode), QFileDevice::AutoCloseHandle))
        return true;
    ::close(fd);
    return false;
}

bool ReplaceGuarded(const QString& path, const QByteArray& bytes)
{
    const QByteArray name = QFile::encodeName(path);
    QByteArray temporary = name + ".XXXXXX";
    if (WriteNewFile(temporary, bytes)) {
        if (::rename(temporary.constData(), name.constData()) == 0)
            return true;
        ::unlink(temporary.constData());
    }
    RemoveOwn(path);
    return false;
}

void RemoveOwn(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat info { };
    if (lstat(name.constData(), &info) == 0 && info.st_uid == geteuid())
        ::unlink(name.constData());
}

bool OpenRegular(QFile& file)
{
    const int fd = ::open(QFile::encodeName(file.fileName()).constData(), O_RDONLY | NeverWaiting);
    if (fd < 0)
        return false;
    if (IsRegular(fd) && file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return true;
    ::close(fd);
    return false;
}

QByteArray ReadGuarded(const QString& path, qint64 maxBytes)
{
    QFile file(path);
    return OpenGuarded(file, GuardedMode::Read) ? file.read(maxBytes) : QByteArray();
}
