// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

// While an object of this kind lives, a session bus is only looked for, never started: without it the D-Bus library
// runs dbus-launch where no address is set, which leaves a daemon behind. Lives around the construction of the
// application object; afterwards the environment is as it was, for the children.
class NoBusOfOurOwn {
public:
    NoBusOfOurOwn();
    ~NoBusOfOurOwn();
    NoBusOfOurOwn(const NoBusOfOurOwn&) = delete;
    NoBusOfOurOwn& operator=(const NoBusOfOurOwn&) = delete;

private:
    const bool m_wasSet; // to an empty text, which counts as none
    bool m_isDisabled = false;
};
