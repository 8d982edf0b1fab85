// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

// Fails the test when something that can be seen of the window is cut off or lies on something else.
void CheckLayout(QWidget& window);
// When a text of it is too faint: with the pointer on every button, with all of them disabled, and as usual.
void CheckContrastInEveryState(QWidget& window);
