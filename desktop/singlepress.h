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

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool IsRepeat(const QKeyEvent* press);
    void ForgetKeysLetGo();

    QMap<quint32, ulong> m_held; // X key codes, and the server's time of the press in ms
};
