// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ui/loginwindow.h"

#include "ui_loginwindow.h"

#include "config/logincfg.h"
#include "desktop/picture.h"
#include "tav3/desktop.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDebug>
#include <QImageReader>
#include <QMessageBox>
#include <QPixmap>
#include <QTimer>
#include <cstdlib>

namespace {

constexpr int PauseMs = 100;
constexpr int PauseStepMs = 45;
constexpr int LastEventsMs = 500;
// A Return held down opens pause within pause; some 3,300 levels would overflow the stack.
constexpr int MaxPauseLevels = 200;

bool checkBusy = false; // a check is running in some window of this process

// Lets a bounced Return arrive while the window stays alive.
void Pause()
{
    static int level = 0;
    if (level >= MaxPauseLevels)
        return;
    ++level;
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(PauseMs);
    while (timer.isActive())
        QCoreApplication::processEvents(QEventLoop::AllEvents, PauseStepMs);
    --level;
}

} // namespace

LoginWindow::LoginWindow(LoginCfg* configuration, QWidget* parent)
    : QMainWindow(parent), ui(new Ui::LoginWindow), cfg(configuration)
{
    const QStringList arguments = QCoreApplication::arguments();
    qDebug() << "LoginWindow" << arguments.join(QLatin1Char(','));
    ui->setupUi(this);
    ShowLockPicture();
    if (!cfg)
        cfg = new LoginCfg(true); // lives as long as the process
    genkeyMode = !arguments.isEmpty() && arguments.first().contains(QLatin1String("genkey"));
    // Before the style sheet: every change of the flags applies it anew to the whole window.
    setWindowFlags(genkeyMode ? Qt::WindowTitleHint : Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    TavDesktop::InitWindowPosition(this);
    TavDesktop::SetDefaultStyleSheet(this);
    cfg->WriteLoginLog(arguments.join(QLatin1Char(',')));
    if (!genkeyMode)
        ApplyArguments(arguments);
}

LoginWindow::~LoginWindow()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents, LastEventsMs);
    QCoreApplication::processEvents(QEventLoop::AllEvents, LastEventsMs);
}

// Read here and not by the form, which would wait for ever on a FIFO of that name.
void LoginWindow::ShowLockPicture()
{
    QFile file(QStringLiteral("/tmp/icons/lock64.png"));
    if (OpenPicture(file))
        ui->lIcon->setPixmap(QPixmap::fromImage(QImageReader(&file).read()));
}

// A plain start asks for the local password, one with an argument for the terminal password.
void LoginWindow::ApplyArguments(const QStringList& arguments)
{
    if (arguments.size() < 2) {
        cfg->terminalPasswordMode = false;
    } else {
        ui->buttonBox->setStandardButtons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
        if (arguments.at(1) != QLatin1String("setup"))
            extraArgument = arguments.at(1);
    }
}

bool LoginWindow::IsDone() const
{
    return !cfg->needAuthentication || m_done;
}

void LoginWindow::closeEvent(QCloseEvent* event)
{
    // The window manager must not get anyone past the password.
    event->setAccepted(m_closeAllowed);
}

void LoginWindow::on_buttonBox_accepted()
{
    CheckPassword();
}

void LoginWindow::on_buttonBox_rejected()
{
    checkBusy = true;
    exit(1);
}

void LoginWindow::on_lePasswordEntry_returnPressed()
{
    CheckPassword();
}

void LoginWindow::CheckPassword()
{
    if (checkBusy)
        qDebug() << "bounce handled"; // recorded only: the second run goes on
    checkBusy = true;
    Pause();
    const QString entered = ui->lePasswordEntry->text();
    if (!entered.isEmpty()) {
        if (cfg->CheckLocalPassword(entered))
            Accept();
        else
            Refuse();
    }
    checkBusy = false;
}

void LoginWindow::Accept()
{
    cfg->SendSecurityEvent(QStringLiteral("localuser"), false); // the flag tells of a failure here
    m_closeAllowed = true;
    close();
}

void LoginWindow::Refuse()
{
    cfg->SendSecurityEvent(QStringLiteral("localuser"), true);
    ui->lePasswordEntry->clear();
    QMessageBox box(QMessageBox::NoIcon, tr("Login Error"), tr("Password is invalid"));
    box.setTextFormat(Qt::PlainText);
    TavDesktop::SetDefaultStyleSheet(&box);
    box.exec();
    ui->lePasswordEntry->setFocus(Qt::OtherFocusReason);
}
