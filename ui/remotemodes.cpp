// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT

// The three modes of the remote-login dialog and the ways between them.
#include "ui/ngremotelogin.h"

#include "ui_ngremotelogin.h"

#include "config/logincfg.h"

#include <QApplication>
#include <QTimer>
#include <QToolTip>

namespace {

constexpr int LoginHeight = 370;
constexpr int UnlockHeight = 450;
constexpr int ChangeUserHeight = 410;
constexpr int ChangeUserMs = 30000; // without an edit

} // namespace

// What is open above the dialog could still act on a field that belongs to another mode now, as a field's menu does.
void ngremotelogin::CloseWhatIsAbove()
{
    while (QWidget* popup = QApplication::activePopupWidget()) {
        if (!popup->close())
            break;
    }
    QToolTip::hideText();
}

void ngremotelogin::EnterLoginMode()
{
    CloseWhatIsAbove();
    changeUserMode = false;
    unlockMode = false;
    resize(width(), LoginHeight);
    ui->change->hide();
    ui->Unlock->hide();
    ui->logout->hide();
    ui->cancel->hide();
    ui->leUser->setReadOnly(false);
    ui->login->show();
    ui->login->setDefault(true); // Return signs in
    ui->leUser->clear();
    ui->lePwd->clear();
    ui->leUser->setFocus(Qt::OtherFocusReason);
}

void ngremotelogin::EnterUnlockMode()
{
    CloseWhatIsAbove();
    resize(width(), UnlockHeight);
    changeUserMode = false;
    unlockMode = true;
    savedUser = cfg->LoadSavedUserName();
    ShowSavedUser();
    ui->leUser->setReadOnly(true);
    ui->lePwd->clear();
    ui->lePwd->setFocus(Qt::OtherFocusReason);
    ui->leUser->setStyleSheet(QStringLiteral("background-color: gray"));
    ui->login->hide();
    ui->cancel->hide();
    ui->change->show();
    ui->Unlock->show();
    ui->Unlock->setDefault(true); // Return signs in
    ui->logout->show();
    delete changeUserTimer;
    changeUserTimer = nullptr;
}

void ngremotelogin::EnterChangeUserMode()
{
    CloseWhatIsAbove();
    resize(width(), ChangeUserHeight);
    changeUserMode = true;
    unlockMode = false;
    ui->change->hide();
    ui->Unlock->hide();
    ui->logout->hide();
    ui->leUser->setReadOnly(false);
    ui->leUser->clear();
    ui->lePwd->clear();
    ui->leUser->setFocus(Qt::OtherFocusReason);
    ui->cancel->show();
    ui->login->show();
    ui->login->setDefault(true); // Return signs in
    ui->leUser->setStyleSheet(QStringLiteral("background-color: white"));
    changeUserTimer = new QTimer;
    connect(changeUserTimer, SIGNAL(timeout()), SLOT(onCuTimeout()));
    changeUserTimer->setInterval(ChangeUserMs);
    changeUserTimer->start();
}

void ngremotelogin::ShowSavedUser()
{
    ui->leUser->setText(savedUser);
    ui->leUser->setCursorPosition(0); // a long name is shown from its beginning
}

// No way of changing the mode may act in the middle of a login or after a good one: the exit status would be that of
// the other mode, and open the session of the first user to the second.
bool ngremotelogin::MayChangeMode() const
{
    return !checkRunning && !loginAccepted;
}

void ngremotelogin::on_change_clicked()
{
    if (MayChangeMode())
        EnterChangeUserMode();
}

void ngremotelogin::on_cancel_clicked()
{
    if (MayChangeMode())
        EnterUnlockMode();
}

void ngremotelogin::onCuTimeout()
{
    if (MayChangeMode())
        EnterUnlockMode();
}

void ngremotelogin::on_leUser_textEdited(const QString&)
{
    RestartChangeUserTimer();
}

void ngremotelogin::on_lePwd_textEdited(const QString&)
{
    RestartChangeUserTimer();
}

void ngremotelogin::RestartChangeUserTimer()
{
    if (changeUserMode && changeUserTimer)
        changeUserTimer->start();
}
