// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QStringList>
#include <memory>

class LdapHandler;

namespace Ui {
class SetPassword;
}

// Changes the directory password of one account. Prefill it, run exec() (its result has no meaning), then read
// m_success and m_message. The dialog closes by itself when the change has ended.
class SetPassword : public QDialog {
    Q_OBJECT
public:
    explicit SetPassword(QWidget* parent = nullptr);
    ~SetPassword() override;

    void SetServer(const QString& server);
    void SetUserName(const QString& userName); // empties the old password, so call it first
    void SetOldPassword(const QString& oldPassword);

    std::unique_ptr<Ui::SetPassword> ui;
    QStringList m_handlerMessages; // what the handler had to say when the change ended; kept for the caller
    QString m_message;             // English sentence when the change failed; what the tool said when it succeeded
    QString m_server;
    QString m_userName;
    QString m_oldPassword;
    bool m_success = false;
    LdapHandler* m_handler = nullptr; // not owned; set by the first click

protected:
    bool event(QEvent* event) override;

private slots:
    void on_buttonBox_accepted();
    void on_buttonBox_rejected();
    void on_leOldPassword_textChanged(const QString& arg1);
    void on_leNewPassword_textChanged(const QString& arg1);
    void on_leRetypePassword_textChanged(const QString& arg1);
    void on_leUserName_textChanged(const QString& arg1);
    void OnPwdChangeComplete();
    void on_pushButton_clicked();
    void on_pbViewOldPwd_pressed();
    void on_pbViewOldPwd_released();
    void on_pbViewNewPwd_pressed();
    void on_pbViewNewPwd_released();
    void on_pbViewRetypePwd_pressed();
    void on_pbViewRetypePwd_released();

private:
    void ShowMatch(bool match);
};
