// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ui/setpassword.h"

#include "ui_setpassword.h"

#include "ldap/ldaphandler.h"

#include <QDebug>
#include <QEvent>

SetPassword::SetPassword(QWidget* parent) : QDialog(parent), ui(new Ui::SetPassword)
{
    ui->setupUi(this);
    setWindowTitle(tr("Password Change/Reset"));
    ui->pbViewNewPwd->hide();
    ui->pbViewOldPwd->hide();
    ui->pbViewRetypePwd->hide();
    ui->leNewPassword->setEchoMode(QLineEdit::Password);
    ui->leOldPassword->setEchoMode(QLineEdit::Password);
    ui->leRetypePassword->setEchoMode(QLineEdit::Password);
}

SetPassword::~SetPassword() = default;

// Larger than the form says where a large font or a long translation needs it, when a longer complaint or a view button
// appears, too: the layout alone would squeeze the fields.
bool SetPassword::event(QEvent* event)
{
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::Show || event->type() == QEvent::LayoutRequest) {
        const int width = std::max(this->width(), sizeHint().width());
        resize(width, std::max(height(), layout()->totalHeightForWidth(width)));
    }
    return handled;
}

void SetPassword::SetServer(const QString& server)
{
    m_server = server;
    ui->leServer->setText(server);
}

void SetPassword::SetUserName(const QString& userName)
{
    m_userName = userName;
    ui->leUserName->setText(userName);
}

void SetPassword::SetOldPassword(const QString& oldPassword)
{
    m_oldPassword = oldPassword;
    ui->leOldPassword->setText(oldPassword);
    ui->pbViewOldPwd->hide(); // what was filled in can't be revealed
}

void SetPassword::on_buttonBox_accepted()
{
    // The box has no accepting button.
}

void SetPassword::on_buttonBox_rejected()
{
    m_message = QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Cancel was selected, no change attempted"));
    m_success = false;
    close();
}

void SetPassword::on_leOldPassword_textChanged(const QString&)
{
    ui->pbViewOldPwd->show();
}

void SetPassword::on_leNewPassword_textChanged(const QString& arg1)
{
    ui->pbViewNewPwd->show();
    ShowMatch(arg1 == ui->leRetypePassword->text());
}

void SetPassword::on_leRetypePassword_textChanged(const QString& arg1)
{
    ui->pbViewRetypePwd->show();
    ShowMatch(arg1 == ui->leNewPassword->text());
}

void SetPassword::ShowMatch(bool match)
{
    if (match)
        ui->lblProblem->clear();
    else
        ui->lblProblem->setText(tr("Password Mismatch"));
}

void SetPassword::on_leUserName_textChanged(const QString&)
{
    ui->leOldPassword->clear();
}

void SetPassword::on_pushButton_clicked()
{
    const QString newPassword = ui->leNewPassword->text();
    if (newPassword != ui->leRetypePassword->text() || newPassword.isEmpty()) {
        ui->lblProblem->setText(tr("The new and retyped password do not match")); // for two empty fields too
        return;
    }
    m_handler = LdapHandler::GetInstance(ui->leServer->text(), ui->leUserName->text(), ui->leOldPassword->text());
    connect(m_handler, SIGNAL(ProcessFinihsed()), SLOT(OnPwdChangeComplete())); // one more with every click
    const QString refusal = m_handler->ChangePassword(newPassword);
    qDebug() << refusal; // shown nowhere else; the dialog stays for another try
}

void SetPassword::OnPwdChangeComplete()
{
    qDebug() << "OnPwdChangeComplete";
    m_handlerMessages = m_handler->m_messages;
    // The child may be of an earlier click or dialog: what it did need not be what was asked for last.
    m_success = m_handler->RanAsAsked();
    m_message
        = m_success ? m_handler->m_stdOut : QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Failed to change password"));
    qDebug() << "OnPwdChangeComplete" << m_message;
    setResult(Accepted); // whatever the outcome
    close();
    disconnect(this, nullptr, nullptr, nullptr); // what this dialog sends; the handler's connection stays
}

void SetPassword::on_pbViewOldPwd_pressed()
{
    ui->leOldPassword->setEchoMode(QLineEdit::Normal);
}

void SetPassword::on_pbViewOldPwd_released()
{
    ui->leOldPassword->setEchoMode(QLineEdit::Password);
}

void SetPassword::on_pbViewNewPwd_pressed()
{
    ui->leNewPassword->setEchoMode(QLineEdit::Normal);
}

void SetPassword::on_pbViewNewPwd_released()
{
    ui->leNewPassword->setEchoMode(QLineEdit::Password);
}

void SetPassword::on_pbViewRetypePwd_pressed()
{
    ui->leRetypePassword->setEchoMode(QLineEdit::Normal);
}

void SetPassword::on_pbViewRetypePwd_released()
{
    ui->leRetypePassword->setEchoMode(QLineEdit::Password);
}
