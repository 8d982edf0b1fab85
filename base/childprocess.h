// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>
#include <functional>
#include <memory>

// When fork() fails, QProcess (Qt 5.15) can hold process id -1, and its destructor would then send SIGKILL to every
// process of the user. Such an object is deliberately leaked. Any other is deleted, which ends a child still running.
struct ChildDeleter {
    void operator()(QProcess* process) const;
};
using ChildProcess = std::unique_ptr<QProcess, ChildDeleter>;

// More output than this and a child counts as one that never finishes, so that a flood can't take the memory; a line
// costs some 60 bytes here, however short it is. An ordinary root entry of a directory has 5 KB and 100 lines.
constexpr qint64 MaxChildOutputBytes = qint64(1024) * 1024;
constexpr int MaxChildOutputLines = 100000;

struct ChildOutput {
    QByteArray standardOutput; // with merged channels: both
    QByteArray standardError;
};

// What a child wrote, as UTF-8; it ends at the first NUL byte.
QString TextOf(const QByteArray& bytes);

// Starts `program`, looked up through the search path, and waits at most `startTimeoutMs` for the start (0: no wait of
// its own) and `finishTimeoutMs` for the end (-1: no limit), spinning no events. The caller has set channels and
// environment of `process`. What the child wrote is left in `output`.
// `whileItRuns` is called once the child has been started, for work that has to be done anyway.
// True when the child ran and ended by itself; false when it was never started, ran out of time or flooded us.
bool RunChild(QProcess& process, const QString& program, const QStringList& arguments, int startTimeoutMs,
              int finishTimeoutMs, ChildOutput& output, const std::function<void()>& whileItRuns = nullptr);

// Whether the last start of `process` failed already at fork(); nothing may be asked of such an object.
bool ForkFailed(const QProcess& process);
