// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// The sign-in of the remote-login dialog, from the button to the exit status, and its keys.
#include "ui/ngremotelogin.h"

#include "ui_ngremotelogin.h"

#include "base/childprocess.h"
#include "base/guardedfile.h"
#include "config/logincfg.h"
#include "desktop/blockingcheck.h"
#include "tav3/desktop.h"

#include <QApplication>
#include <QDebug>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>
#include <cstdlib>
#include <tuple>

namespace {

constexpr int CheckTickMs = 100;
constexpr int CountdownTickMs = 5;
constexpr int MaxFailures = 2; // the next one ends the process

// The sentences of the login chain are translated only where they are shown: logs and tables keep them in English.
QString Translated(const QString& sentence)
{
    return QCoreApplication::translate("LoginCfg", sentence.toUtf8().constData());
}

} // namespace

void ngremotelogin::on_lePwd_returnPressed()
{
    // Deliberately empty: Return reaches the default button.
}

void ngremotelogin::on_login_clicked()
{
    SignIn();
}

void ngremotelogin::on_Unlock_clicked()
{
    SignIn();
}

void ngremotelogin::ShowMessage(const QString& text)
{
    ui->lblMessage->setText(text);
    ui->lblMessage->show();
    ui->login->setEnabled(false);
}

void ngremotelogin::HideMessage()
{
    ui->lblMessage->hide();
    ui->login->setEnabled(true);
}

void ngremotelogin::SignIn()
{
    if (loginAccepted)
        return; // a second press while "Logging in" is shown must not undo a good login
    qDebug() << "on_pushButton_clicked";
    tickTimer->stop();
    ShowMessage(tr("Verifying credentials"));
    loginAccepted = false;
    tickTimer->start(CheckTickMs);
    repaint(); // the check blocks the event loop
    if (unlockMode)
        ShowSavedUser(); // should anything have got past the read-only field
    const QString user = unlockMode ? savedUser : ui->leUser->text(); // the field cuts a long one
    if (ui->lePwd->text().isEmpty() || user.isEmpty())
        qDebug() << "Either password or username are empty"; // the directory refuses it
    checkRunning = true;
    const bool ok = cfg->CheckRemoteLogin(user, ui->lePwd->text());
    checkRunning = false;
    qDebug() << "CheckRemoteLogin returned " << ok;
    if (ok)
        OnAccepted();
    else
        OnRefused();
}

void ngremotelogin::OnAccepted()
{
    if (changeUserMode)
        LeaveHandOver();
    tickTimer->stop();
    loginAccepted = true;
    ShowMessage(tr("Logging in"));
    tickTimer->start(CountdownTickMs);
}

// The next start completes it. What an earlier one left over must not become half of this one.
void ngremotelogin::LeaveHandOver()
{
    RemoveOwn(QStringLiteral("/tmp/.newuser"));
    RemoveOwn(QStringLiteral("/tmp/.newuser.1"));
    std::ignore = system("mv /tmp/.user /tmp/.newuser; mv /tmp/.user.1 /tmp/.newuser.1"); // can't be helped here
}

void ngremotelogin::OnRefused()
{
    HideMessage();
    ShowRefusal();
    if (!ui->leUser->text().isEmpty()) {
        ui->lePwd->setFocus(Qt::OtherFocusReason);
        ui->lePwd->selectAll();
    } else {
        ui->leUser->setFocus(Qt::OtherFocusReason);
    }
    if (++failedAttempts > MaxFailures) {
        qDebug() << "Too many log in failures";
        exit(6);
    }
}

// A changed password is told in the same way, but does not count as an attempt.
void ngremotelogin::ShowRefusal()
{
    QMessageBox box;
    box.setTextFormat(Qt::PlainText);
    box.setText(Translated(cfg->resultMessage));
    if (cfg->resultMessage.isEmpty())
        Explain(box);
    if (cfg->passwordChanged) {
        box.setWindowTitle(tr("Password Changed"));
        --failedAttempts;
        ui->lePwd->clear();
    } else {
        box.setWindowTitle(tr("Authentication Error"));
    }
    TavDesktop::SetDefaultStyleSheet(&box);
    box.exec();
}

// An empty sentence stays empty; what can be said about it stands below.
void ngremotelogin::Explain(QMessageBox& box) const
{
    QStringList lines{Translated(cfg->explanation)};
    if (!cfg->complaint.isEmpty())
        lines += cfg->complaint;
    box.setInformativeText(lines.join(QLatin1Char('\n')));
    // The box's own format holds for its first text only.
    for (QLabel* label : box.findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText);
}

void ngremotelogin::onTimeout()
{
    if (!loginAccepted)
        return;
    if (--exitCountdown <= 0) {
        close();
        exit(changeUserMode ? 8 : 0);
    }
}

void ngremotelogin::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Escape)
        QDialog::keyPressEvent(event);
    else if (changeUserMode)
        on_cancel_clicked();
    else if (!loginAccepted)
        AskForShutdown();
}

// Hidden while the terminal's own prompt is up, and back unchanged when that has ended.
void ngremotelogin::AskForShutdown()
{
    hide();
    RunBlocking([] {
        const ChildProcess prompt(new QProcess);
        prompt->setProcessChannelMode(QProcess::ForwardedChannels);
        ChildOutput none;
        RunChild(*prompt, QStringLiteral("wshutdown"), QStringList(), 0, -1, none); // missing or failing: we come back
    });
    QWidget::setVisible(true); // NOLINT(bugprone-parent-virtual-call): past QDialog, which selects what is in a field
    QApplication::setActiveWindow(this); // no window manager may be there to say so
}

bool ngremotelogin::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            SignIn();
            return true;
        }
    }
    return QObject::eventFilter(object, event); // NOLINT(bugprone-parent-virtual-call): past QDialog, intended
}
