// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

// Runs `block`, which keeps the event loop waiting, and drops what was typed and clicked meanwhile. When the X server
// went away meanwhile the process ends here, with status 1.
void RunBlocking(const std::function<void()>& block);

// The same under the busy cursor, for a check that answers; returns its answer.
bool RunBlockingCheck(const std::function<bool()>& check);
