// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ui/ngremotelogin.h"

#include "ui_ngremotelogin.h"

#include "config/logincfg.h"
#include "desktop/keyboard.h"
#include "desktop/picture.h"
#include "tav3/desktop.h"

#include <QDebug>
#include <QKeyEvent>
#include <QTimer>
#include <QToolTip>
#include <unistd.h>

namespace {

constexpr int TickMs = 1000;
constexpr int CapsPollMs = 500;
constexpr int TooltipMs = 1000;
constexpr int TooltipRise = 30;    // pixels above the password field
constexpr int CountdownTicks = 10; // of 5 ms each after a good login, so that "Logging in" is painted
constexpr int MaxErrorEntries = 100;

const char BackgroundPicture[] = "/tmp/config/files/login.jpg";

} // namespace

ngremotelogin::ngremotelogin(LoginCfg* configuration, QWidget* parent)
    : QDialog(parent), ui(new Ui::ngremotelogin), cfg(configuration)
{
    debugEnabled = QFile::exists(QStringLiteral("/tmp/debug-login"));
    BuildForm();
    SetUpWindow();
    StyleDialog();
    const QString arguments = QCoreApplication::arguments().join(QLatin1Char(','));
    if (debugEnabled)
        qDebug() << "ngremotelogin" << arguments;
    failedAttempts = 0;
    if (!cfg)
        cfg = new LoginCfg(true); // lives as long as the process
    CopyErrorTable();
    PrepareFields();
    // Deliberately the field, and not this dialog: no key press reaches eventFilter() below.
    qApp->installEventFilter(ui->lePwd);
    if (cfg->IsLoggedIn())
        EnterUnlockMode();
    else
        EnterLoginMode();
    StartTimers();
    ui->capslock->hide();
}

ngremotelogin::~ngremotelogin() = default;

// Before Qt reads a PNG by itself it loads every image plugin of the machine, to ask each whether the picture is its
// own. Meanwhile it finds none.
void ngremotelogin::BuildForm()
{
    const QStringList pluginFolders = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({});
    ui->setupUi(this);
    SharpenPictures();
    setWindowIcon(QIcon(QStringLiteral(":/images/orvek_logo_black_32.png")));
    QCoreApplication::setLibraryPaths(pluginFolders);
}

// On a dense screen the form's pictures are replaced by those of twice the size, which only QIcon looks for.
void ngremotelogin::SharpenPictures()
{
    if (devicePixelRatioF() <= 1)
        return;
    const QIcon user(QStringLiteral(":/images/user-icon-png-orange-150x140.png"));
    ui->userimage->setPixmap(user.pixmap(150, 140));
    const QIcon capsLock(QStringLiteral(":/images/capslock32.png"));
    ui->capslock->setPixmap(capsLock.pixmap(32, 32));
}

void ngremotelogin::SetUpWindow()
{
    ui->leDomain->setStyleSheet(QStringLiteral("QLineEdit { border: none }"));
    ui->leDomain->setFrame(false);
    setWindowFlags(Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    TavDesktop::InitWindowPosition(this);
}

// The default sheet comes by way of another widget, so that the dialog gets the whole at once: every sheet polishes all
// of its children anew.
void ngremotelogin::StyleDialog()
{
    QDialog bare;
    TavDesktop::SetDefaultStyleSheet(&bare);
    QString sheet = bare.styleSheet();
    if (HasBackground()) {
        sheet += QStringLiteral("\nQDialog{background-image:url(/tmp/config/files/login.jpg);}");
        setProperty("onPicture", true); // the sheet looks for it
        ui->userimage->hide();
    }
    sheet += QStringLiteral("\nQLineEdit { border: 1px solid #505050; border-radius: 4px; padding: 0 8px; "
                            "background: white;         selection-background-color: darkgray;}");
    setStyleSheet(sheet);
    ensurePolished(); // or what an earlier dialog left in the style's caches would count
}

// Opened before the style sheet does, which would wait on a FIFO of that name, and read a picture of any size.
bool ngremotelogin::HasBackground()
{
    QFile picture(QString::fromLatin1(BackgroundPicture));
    return access(BackgroundPicture, F_OK) == 0 && OpenPicture(picture);
}

void ngremotelogin::CopyErrorTable()
{
    for (int i = 0; i < MaxErrorEntries && !LoginCfg::AdErrorList[i].isEmpty(); ++i)
        errorTable += LoginCfg::AdErrorList[i];
}

void ngremotelogin::PrepareFields()
{
    ui->lePwd->setStyleSheet(QStringLiteral("lineedit-password-character: 9679")); // U+25CF
    ui->lblMessage->hide();
    ui->leDomain->setStyleSheet(QStringLiteral("background-color: white; color: #404040; "));
    ui->leDomain->setText(cfg->remoteDomain);
    ui->leDomain->setCursorPosition(0); // a long one is shown from its beginning
    ui->leUser->setFocus(Qt::OtherFocusReason);
    ui->leUser->setStyleSheet(QStringLiteral("background-color: white"));
    loginAccepted = false;
}

void ngremotelogin::StartTimers()
{
    exitCountdown = CountdownTicks;
    tickTimer = new QTimer;
    connect(tickTimer, SIGNAL(timeout()), SLOT(onTimeout()));
    tickTimer->setInterval(TickMs);
    tickTimer->start();
    tooltipShown = false;
    capsTimer = new QTimer(this);
    connect(capsTimer, SIGNAL(timeout()), SLOT(checkCapsLock()));
    capsTimer->start(CapsPollMs);
}

void ngremotelogin::on_logout_clicked()
{
    exit(7);
}

void ngremotelogin::checkCapsLock()
{
    if (CapsLockOn()) {
        ui->capslock->show();
        if (!tooltipShown && ui->lePwd->hasFocus())
            ShowTooltip();
    } else {
        ui->capslock->hide();
        hideTooltip();
        tooltipShown = false;
    }
}

void ngremotelogin::ShowTooltip()
{
    const QPoint corner = ui->lePwd->mapToGlobal(QPoint(0, 0));
    QToolTip::showText(corner - QPoint(0, TooltipRise), tr("Caps Lock is ON!"), nullptr);
    QTimer::singleShot(TooltipMs, this, SLOT(hideTooltip())); // no such slot: Qt only warns, intended
    tooltipShown = true;
}

void ngremotelogin::hideTooltip()
{
    QToolTip::showText(QPoint(), QString());
}

void ngremotelogin::reject()
{
    qDebug() << "reject";
}
