// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QObject>

class QKeyEvent;

// Makes one press one action. A key that is held down repeats; those that start something (Return, Enter, Escape, Space
// on a button) count once until they are let go, whatever windows come and go meanwhile, and not at all when they were
// down before this program came. The second click of a double click presses no button: something else can lie there by
// then. Filters the events of the application.
class SinglePress : public QObject {
public:
    explicit SinglePress(QObject* application);
    ~SinglePress() override;

    // Counts every key that is down now as held, as after a time in which presses were lost or are not to count.
    static void HoldKeysDown();

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    struct Press {
        ulong pressed = 0; // the server's times in ms; 0 when it was not seen
        quint32 letGo = 0; // when the key was found to be up, 0 before
    };

    bool IsRepeat(const QKeyEvent* event);
    void NoteKeysLetGo();

    QMap<quint32, Press> m_held; // by X key code
};
