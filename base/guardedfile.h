// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>

enum class GuardedMode {
    Read,     // an existing file of this user or of root
    Truncate, // write from the start, made when missing
    Append    // write at the end, made when missing
};

// Opens a file at a fixed path; every such path of this program is opened here. The folder may be writable for
// everyone, so a symbolic link, a FIFO, a device, a folder, a second hard link and a file of somebody else are refused,
// and nothing is waited for.
// A written file has at most the permissions `permissions`: it is made with them, a wider file of our own is narrowed.
// True when `file` is open; false when it can't be opened or is refused (nothing is reported: the caller skips its
// step).
bool OpenGuarded(QFile& file, GuardedMode mode, unsigned permissions = 0600);

// The whole content of a small file opened as above (at most `maxBytes`, more is cut off), empty when it is refused.
QByteArray ReadGuarded(const QString& path, qint64 maxBytes);
