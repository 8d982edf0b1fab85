// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

// Stands here and not in ui/, as the login chain runs it between its boxes.
// Calls `check`, which blocks the GUI thread, and returns its result. While it runs the cursor shows that the program
// is busy, and what is typed or clicked meanwhile is dropped afterwards: a Return meant for one attempt must not start
// the next one or answer the box that follows. No event is processed for this, so no timer is disturbed.
bool RunBlockingCheck(const std::function<bool()>& check);
