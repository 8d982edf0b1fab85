// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/configfile.h"

#include <QDebug>
#include <QFile>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// 10,000 keys take about 0.5 MB; what is longer is no configuration, and must not fill the memory.
constexpr qint64 MaxFileBytes = qint64(4) * 1024 * 1024;

} // namespace

QString ConfigFilePath(const QString& name)
{
    const char* folder = secure_getenv("TAV3_CONFIG_DIR");
    const QString path = folder && *folder ? QFile::decodeName(folder) : QStringLiteral("/etc/tav3");
    return path + QLatin1Char('/') + name;
}

std::optional<QByteArray> ReadConfigFile(const QString& path)
{
    // O_NONBLOCK: a FIFO in the place of the file would be waited for.
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        if (errno != ENOENT)
            qDebug() << path << "can't be read:" << strerror(errno);
        return std::nullopt;
    }
    QFile file;
    struct stat info { };
    if (fstat(fd, &info) == 0 && S_ISREG(info.st_mode)
        && file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return file.read(qMin(file.size(), MaxFileBytes));
    ::close(fd);
    qDebug() << path << "is not a regular file";
    return std::nullopt;
}

bool IsTrueWord(const QString& text)
{
    for (const char* word : {"true", "yes", "on", "1"}) {
        if (text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}
