// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

// Lets the text cursor stand still once nobody has touched keyboard or mouse for `restMs`, until somebody does: a
// terminal can show the gate all night, and each blink wakes it and its X server. Filters the events of the
// application.
class RestingCaret : public QObject {
public:
    RestingCaret(QObject* application, int restMs);

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QTimer m_rest;
    const int m_flashTimeMs;
};
