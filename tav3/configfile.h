// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

// What the two configuration stores have in common.

// The path of a file in the configuration folder: /etc/tav3, or what TAV3_CONFIG_DIR names.
QString ConfigFilePath(const QString& name);

// The content of a regular file, at most its first 4 MiB. Nothing when it is missing (silent) or can't be read (one
// debug line with the reason).
std::optional<QByteArray> ReadConfigFile(const QString& path);

// True for "true", "yes", "on" and "1" in any letter case, false for every other text.
bool IsTrueWord(const QString& text);
