// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "base/guardedfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int SystemFlags(GuardedMode mode)
{
    // O_NONBLOCK: a planted FIFO must not hold the program; it has no effect on the regular files we accept.
    const int guard = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
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

QByteArray ReadGuarded(const QString& path, qint64 maxBytes)
{
    QFile file(path);
    return OpenGuarded(file, GuardedMode::Read) ? file.read(maxBytes) : QByteArray();
}
