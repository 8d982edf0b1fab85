// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

// Whether caps lock is on; without an X display it counts as off.
bool CapsLockOn();
