// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QStringList>
#include <memory>

class LoginCfg;
class QMessageBox;
class QTimer;

namespace Ui {
class ngremotelogin;
}

// Signs a user in against the directory, or unlocks a session that is signed in. Three modes on one form: login, unlock
// and change user. Every way out ends the process: 0 good login, 8 good login of another user, 7 Logout, 6 third
// failure.
class ngremotelogin : public QDialog {
    Q_OBJECT
public:
    // `cfg` is not owned; null makes the dialog read the configuration itself.
    explicit ngremotelogin(LoginCfg* cfg, QWidget* parent = nullptr);
    ~ngremotelogin() override;

    void reject() override; // never closes the dialog

    QStringList errorTable; // LoginCfg's entries up to the empty one; kept, not read again

protected:
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void on_lePwd_returnPressed();
    void onTimeout();
    void onCuTimeout();
    void on_login_clicked();
    void on_change_clicked();
    void on_Unlock_clicked();
    void on_logout_clicked();
    void on_cancel_clicked();
    void on_leUser_textEdited(const QString& arg1);
    void on_lePwd_textEdited(const QString& arg1);
    void checkCapsLock();
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void BuildForm();
    void SharpenPictures();
    void SetUpWindow();
    void StyleDialog();
    static bool HasBackground();
    void CopyErrorTable();
    void PrepareFields();
    void StartTimers();

    static void CloseWhatIsAbove();
    void EnterLoginMode();
    void EnterUnlockMode();
    void EnterChangeUserMode();
    void ShowSavedUser();
    void RestartChangeUserTimer();
    bool MayChangeMode() const;

    void ShowMessage(const QString& text);
    void HideMessage();
    void SignIn();
    void OnAccepted();
    static void LeaveHandOver();
    void OnRefused();
    void ShowRefusal();
    void Explain(QMessageBox& box) const;
    void ShowTooltip();
    void hideTooltip(); // deliberately not a slot
    void AskForShutdown();

    std::unique_ptr<Ui::ngremotelogin> ui;
    LoginCfg* cfg; // never deleted here
    int failedAttempts = 0;
    QTimer* tickTimer = nullptr;       // no parent, lives as long as the process
    QTimer* changeUserTimer = nullptr; // only in change-user mode
    QTimer* capsTimer = nullptr;
    bool tooltipShown = false;
    int exitCountdown = 0;
    bool loginAccepted = false;
    bool changeUserMode = false;
    bool unlockMode = false;
    QString savedUser; // whom unlock mode lets in, whatever the field holds
    bool debugEnabled = false;
    bool checkRunning = false; // CheckRemoteLogin() has not returned, its question and dialog included
};
