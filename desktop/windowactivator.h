// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

// Gives every window the keyboard focus when it appears, and gives it back to the window below when a box has closed.
// A window manager does so by itself; without one nobody would. Filters the events of the application.
class WindowActivator : public QObject {
public:
    explicit WindowActivator(QObject* application);

    bool eventFilter(QObject* object, QEvent* event) override;
};
