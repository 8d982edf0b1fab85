// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/keyboard.h"

#include <QX11Info>
#include <X11/XKBlib.h> // last: its macros break Qt's headers
#include <X11/keysym.h>

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

Key KeyOf(quint32 keyCode)
{
    Display* display = QX11Info::display();
    switch (display ? XkbKeycodeToKeysym(display, static_cast<KeyCode>(keyCode), 0, 0) : NoSymbol) {
    case XK_Return:
    case XK_KP_Enter:
        return Key::Return;
    case XK_Escape:
        return Key::Escape;
    case XK_space:
        return Key::Space;
    default:
        return Key::Other;
    }
}

std::bitset<KeyCodes> KeysDown()
{
    std::bitset<KeyCodes> keys;
    char bytes[KeyCodes / 8] = {};
    if (Display* display = QX11Info::display())
        XQueryKeymap(display, bytes);
    for (std::size_t code = 0; code < KeyCodes; ++code)
        keys.set(code, (bytes[code / 8] >> (code % 8) & 1) != 0);
    return keys;
}

void LetHeldKeysSendNoReleases()
{
    if (Display* display = QX11Info::display())
        XkbSetDetectableAutoRepeat(display, True, nullptr); // every X server of today can
}
