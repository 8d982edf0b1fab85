// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tav3/export.h"

class QWidget;

// How a window of the terminal is placed and styled.
class TAV3_EXPORT TavDesktop {
public:
    // Centres the widget, at its greatest size if it has one, on the screen that holds the pointer, and makes it no
    // larger than that screen's free area.
    // For a window that is not shown yet: its frame is not known and not counted.
    static void InitWindowPosition(QWidget* widget);
    // Gives the widget the terminal's default style sheet, which can be read back and appended to.
    static void SetDefaultStyleSheet(QWidget* widget);
};
