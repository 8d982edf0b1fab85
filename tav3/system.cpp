// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/system.h"

#include <cstdio>

QTextStream TavSystem::cerr(stderr, QIODevice::WriteOnly);
