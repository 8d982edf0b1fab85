// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

// Calls `visit` with the next modal box as soon as that has the keyboard, and then answers No. Waits while `owner`
// lives.
inline void OnBox(QObject& owner, const std::function<void(QMessageBox&)>& visit)
{
    QTimer::singleShot(5, &owner, [&owner, visit] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->isActiveWindow())
            return OnBox(owner, visit);
        visit(*box);
        box->done(QMessageBox::No);
    });
}
