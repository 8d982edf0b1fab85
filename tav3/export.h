// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

// Marks what the library offers; everything else stays hidden in it.
#define TAV3_EXPORT __attribute__((visibility("default")))
