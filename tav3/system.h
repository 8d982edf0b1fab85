// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tav3/export.h"

#include <QTextStream>

class TAV3_EXPORT TavSystem {
public:
    // A text stream on standard error. What it holds is written when it is flushed or the process ends by exit().
    static QTextStream cerr;
};
