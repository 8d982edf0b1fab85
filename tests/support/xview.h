// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// The X screen that DISPLAY names.
constexpr int ScreenWidth = 1280;
constexpr int ScreenHeight = 800;

// How much of it has about the colour 0x00RRGGBB: of thin letters hardly a pixel has it exactly.
qint64 CountPixels(quint32 colour);
// The picture of the pointer as it is shown now.
QByteArray PointerPicture();
// The title of the window that gets what is typed; empty when there is none.
QString FocusedTitle();
// Asks that window, as a window manager does, to close.
void CloseFocused();
