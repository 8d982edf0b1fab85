// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

// Keeps the passwords of this process out of core dumps and away from other processes of the user: no core file, no
// tracing, no reading of its memory (its children may be traced as usual). First thing in main().
// False when the program runs with another effective user than the real one (set-user-id), for which it is not made.
bool HardenProcess();
