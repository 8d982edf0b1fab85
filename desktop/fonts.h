// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

// Reads the machine's font configuration before Qt does, which would also parse every template that nobody enabled, for
// a list that only font managers show. Same fonts, same fallbacks. Before the application object; where it fails Qt
// reads the configuration in its own way.
void LoadFontConfiguration();
