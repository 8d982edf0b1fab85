// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

class QFile;

// Opens a picture of the terminal's, a link or another user's file as it may be. True when `file` is open at its
// beginning; false for what is not a regular file, and for a picture of more than 33 million pixels, which would take
// seconds and gigabytes to read. A file that is no picture at all is opened.
bool OpenPicture(QFile& file);
