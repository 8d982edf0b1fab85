// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>

// Drops what was typed and clicked while the program was blocked and could not say so: nobody meant it for what has
// come up since. Tells it by the X server's own times. Filters the events of the application.
class StaleInput : public QObject {
public:
    // The one of this process, made at the first call.
    static StaleInput* Instance();

    // Drops what the server saw up to `serverTime`, in ms, 32 bits that wrap around after 49 days.
    void DropUntil(quint32 serverTime);

    // Whether what has this time of the server is dropped; never what is not from the server, whose time is 0.
    bool IsStale(quint32 serverTime) const;

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    StaleInput();

    QElapsedTimer m_sinceDrop; // invalid until the first one
    quint32 m_dropUntil = 0;
};
