// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

// The X server's time in ms, 32 bits that wrap around after 49 days, after all that was sent before; 0 without a
// server.
quint32 ServerTime();
