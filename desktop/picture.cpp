// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/picture.h"

#include "base/guardedfile.h"

#include <QImageReader>

namespace {

constexpr qint64 MaxPixels = 33000000; // of a screen of 8K, and 132 MB in memory

} // namespace

bool OpenPicture(QFile& file)
{
    if (!OpenRegular(file))
        return false;
    QImageReader reader(&file);
    const QSize size = reader.size();
    const bool isReadable = !reader.canRead() || (size.isValid() && qint64(size.width()) * size.height() <= MaxPixels);
    return isReadable && file.seek(0);
}
