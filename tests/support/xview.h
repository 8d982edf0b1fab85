// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

// What stands on the X screen that DISPLAY names.
QImage ScreenPixels();
// The picture of the pointer as it is shown now.
QByteArray PointerPicture();
// The title of the window that gets what is typed.
QString FocusedTitle();
// Asks the window, as a window manager does, to close.
void AskToClose(unsigned long window);
