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

// Puts a file of mode 0600 with these bytes at `path`, in one step: written whole under a name of its own beside it and
// then renamed, so that a reader never sees half of it, and a link, a FIFO or a second name of an older file that stood
// there are simply gone.
// False when that fails: then a file of our own at `path` is removed, as nobody may take old content for the new.
bool ReplaceGuarded(const QString& path, const QByteArray& bytes);

// Removes what stands at a fixed path when it belongs to this user, whatever it is (a folder stays); silent.
void RemoveOwn(const QString& path);

// Opens a file that others may have made, such as a picture: links are followed and any owner is right, but only a
// regular file is opened, and nothing is waited for. True when `file` is open.
bool OpenRegular(QFile& file);

// The whole content of a small file opened as above (at most `maxBytes`, more is cut off), empty when it is refused.
QByteArray ReadGuarded(const QString& path, qint64 maxBytes);
