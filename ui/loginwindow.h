// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QMainWindow>
#include <memory>

class LoginCfg;

namespace Ui {
class LoginWindow;
}

// Asks for a password of the terminal's own configuration. A good one closes the window, which ends the event loop;
// Cancel (offered when the program has an argument) ends the process with 1. Nothing else closes it.
class LoginWindow : public QMainWindow {
    Q_OBJECT
public:
    // `cfg` is not owned; null makes the window read the configuration itself.
    explicit LoginWindow(LoginCfg* cfg, QWidget* parent = nullptr);
    ~LoginWindow() override;

    // Whether no password is needed or one was given; nothing asks for it.
    bool IsDone() const;

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    void on_buttonBox_accepted();
    void on_buttonBox_rejected();
    void on_lePasswordEntry_returnPressed();

private:
    void ShowLockPicture();
    void ApplyArguments(const QStringList& arguments);
    void CheckPassword();
    void Accept();
    void Refuse();

    bool genkeyMode = false; // recorded, read nowhere
    std::unique_ptr<Ui::LoginWindow> ui;
    QFile m_file;          // never opened
    QString extraArgument; // recorded, read nowhere
    LoginCfg* cfg;         // never deleted here
    bool m_done = false;
    bool m_closeAllowed = false; // only a good password closes the window
};
