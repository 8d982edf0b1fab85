// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QMessageLogContext;

// Sends every diagnostic line from here on to /tmp/QormLoginDebug.log when /tmp/debug-login exists, and does nothing
// otherwise. The first line is `appPath`. When the file can't be opened the lines are dropped.
void InstallDebugLog(const QString& appPath);

// The message handler: one line a message, written at once, so that the file is complete however the process ends.
void DebugMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message);
