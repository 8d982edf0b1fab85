// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/keyboard.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>

// Makes one press one action. A key that is held down repeats; those that start something (Return, Enter, Escape, Space
// on a button) count once until they are let go, whatever windows come and go meanwhile, and not at all when they were
// down before this program came. The second click of a double click presses no button: something else can lie there by
// then. Filters the events of the application; keys as they come from the X server, as Qt keeps those for a window
// behind a box to itself, releases too.
class SinglePress : public QObject, public QAbstractNativeEventFilter {
public:
    explicit SinglePress(QGuiApplication* application);
    ~SinglePress() override;

    // Counts the keys that are down now as held, as after a time in which presses were lost or are not to count, and
    // whose releases are stale then.
    static void HoldKeysDown();

    bool nativeEventFilter(const QByteArray& eventType, void* message, long* result) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    std::bitset<KeyCodes> m_held;
};
