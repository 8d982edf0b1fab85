// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/capslock.h"

#include <QX11Info>
#include <X11/XKBlib.h> // last: its macros break Qt's headers

namespace {

constexpr unsigned CapsLockIndicator = 1; // bit 0 of the mask

} // namespace

bool CapsLockOn()
{
    Display* display = QX11Info::display();
    unsigned indicators = 0;
    return display && XkbGetIndicatorState(display, XkbUseCoreKbd, &indicators) == Success
        && (indicators & CapsLockIndicator) != 0;
}
