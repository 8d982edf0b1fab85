// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// The X screen that DISPLAY names.
constexpr int ScreenWidth = 1280;
constexpr int ScreenHeight = 800;

// How much of it has the colour 0x00RRGGBB; no channel may differ by more than the tolerance.
qint64 CountPixels(quint32 colour, int tolerance = 0);
// The picture of the pointer as it is shown now.
QByteArray PointerPicture();
// The title of the window that gets what is typed; empty when there is none.
QString FocusedTitle();
// Asks that window, as a window manager does, to close.
void CloseFocused();
