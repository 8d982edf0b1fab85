// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>
#include <bitset>

// The keyboard as the X server has it now; without an X display caps lock is off and no key is down.

bool CapsLockOn();

// What a key code of X means to a screen; Return is Enter of the number pad, too.
enum class Key { Return, Escape, Space, Other };
Key KeyOf(quint32 keyCode);

// The keys that are held down, by their X key codes.
constexpr std::size_t KeyCodes = 256;
std::bitset<KeyCodes> KeysDown();

// From here on a key that is held down sends this program presses only; otherwise the server feigns a release before
// each, which can't be told from a real one.
void LetHeldKeysSendNoReleases();
