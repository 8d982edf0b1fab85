// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Gives the running test function its table, the section of its name in tests/tables/`file`: a line "[function]" with
// the names of the columns, then a line a row, which begins with the row's name, the fault that it guards against.
// Tabs stand between the cells. "-" is an empty text, "(null)" a null one, "¶" a line's end and "⇥" a tab.
void LoadTable(const char* file);

// What the current row has in a column; whether that is "yes".
QString Text(const char* column);
bool Flag(const char* column);
