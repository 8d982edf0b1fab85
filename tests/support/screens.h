// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "config/logincfg.h"
#include "tav3/rdpcipher.h"
#include "tests/support/testsupport.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QTimer>

// For tests that make the screens in their own process.

template <typename Widget> Widget* Find(const QWidget& window, const QByteArray& name)
{
    return window.findChild<Widget*>(QString::fromLatin1(name));
}

// The command line that QCoreApplication::arguments() gives, of up to three words.
inline int wordCount = 0;
inline char* words[4] = {};

inline void SetCommandLine(const char* commandLine)
{
    static QByteArrayList kept;
    kept = QByteArray(commandLine).split(' ');
    wordCount = kept.size();
    for (int i = 0; i < wordCount; ++i)
        words[i] = kept[i].data();
    words[wordCount] = nullptr;
}

// Gives the terminal a session of this user, or none for an empty name.
inline void LogIn(LoginCfg& cfg, const char* user)
{
    const QString saved = QStringLiteral("/tmp/.user.1");
    QFile::remove(saved);
    QDir().mkpath(QStringLiteral("/tmp/.config"));
    WriteFile(QStringLiteral("/tmp/.config/.loggedin"), {});
    if (*user)
        WriteFile(saved, QByteArray(rdp_encrypt(user)) + ",00,,00,\n");
    cfg.loggedIn = false; // not looked up yet
}

// Calls `visit` with the next modal box as soon as that has the keyboard, and then answers No. Waits while `window`
// lives.
inline void OnBox(QWidget& window, const std::function<void(QMessageBox&)>& visit)
{
    QTimer::singleShot(5, &window, [&window, visit] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->isActiveWindow())
            return OnBox(window, visit);
        visit(*box);
        box->done(QMessageBox::No);
    });
}
