// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

// Marks what the library offers; everything else stays hidden in it.
#define TAV3_EXPORT __attribute__((visibility("default")))
// Keeps a private operation of such a class hidden too.
#define TAV3_HIDDEN __attribute__((visibility("hidden")))
