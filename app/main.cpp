// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "app/debuglog.h"
#include "app/modeselection.h"
#include "base/hardening.h"
#include "config/logincfg.h"
#include "desktop/fonts.h"
#include "desktop/maskingapplication.h"
#include "desktop/nobusofourown.h"
#include "desktop/plainstyle.h"
#include "desktop/restingcaret.h"
#include "desktop/singleline.h"
#include "desktop/singlepress.h"
#include "desktop/staleinput.h"
#include "desktop/translations.h"
#include "desktop/windowactivator.h"
#include "ui/loginwindow.h"
#include "ui/ngremotelogin.h"

#include <QApplication>
#include <QDebug>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <tuple>
#include <unistd.h>

namespace {

constexpr int CaretRestMs = 10000; // as other desktops have it

// While it lives the environment is without a variable, which the children get as it was.
class WithoutVariable {
public:
    explicit WithoutVariable(const char* name) : m_name(name), m_value(qgetenv(name)) { qunsetenv(name); }
    ~WithoutVariable()
    {
        if (!m_value.isNull())
            qputenv(m_name, m_value);
    }
    Q_DISABLE_COPY(WithoutVariable)

private:
    const char* const m_name;
    const QByteArray m_value;
};

int RunLocalWindow(const QString& programPath, LoginCfg& cfg)
{
    InstallDebugLog(programPath);
    LoginWindow window(&cfg, nullptr);
    window.show();
    return QApplication::exec();
}

int RunRemoteDialog(const QString& programPath, LoginCfg& cfg)
{
    qDebug() << "Remote Login";
    if (access("/tmp/.newuser", F_OK) == 0 && access("/tmp/.newuser.1", F_OK) == 0) {
        // Completes the hand-over of a user saved by an earlier run, whatever the command leaves behind.
        std::ignore = system("mv /tmp/.newuser /tmp/.user; mv /tmp/.newuser.1 /tmp/.user.1");
        exit(0);
    }
    InstallDebugLog(programPath);
    QApplication::setQuitOnLastWindowClosed(false); // the dialog ends the process itself, with its own status
    ngremotelogin dialog(&cfg, nullptr);
    qDebug() << "Remote Login Created";
    dialog.show();
    qDebug() << "Remote Login show";
    return QApplication::exec();
}

// What the program's windows have in common; each filters the application's events.
void SetUpDesktop(QApplication& application)
{
    InstallTranslation(application);
    new WindowActivator(&application);
    new RestingCaret(&application, CaretRestMs);
    new SingleLine(&application);
    // The last filter installed sees an event first: a press that is dropped as stale is still known to be held.
    StaleInput::Instance();
    new SinglePress(&application);
}

} // namespace

int main(int argc, char** argv)
{
    if (!HardenProcess()) {
        std::ignore = fputs("qorm-login: refusing to run set-user-id\n", stderr);
        return EXIT_FAILURE;
    }
    // A write to an X server that has died fails then, and Qt ends us with status 1, as it does after a read. A child
    // gets the signal: Qt sets it back.
    std::ignore = signal(SIGPIPE, SIG_IGN);
    LoginCfg cfg(true); // before the application object, so that its lines come first
    // A session manager could end the event loop, which would count as a good password.
    unsetenv("SESSION_MANAGER");
    // No OpenGL: loading it would more than double the time to the first frame.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // Whatever desktop or theme the variables name: it would be loaded, and could change the order of buttons.
    QApplication::setDesktopSettingsAware(false);
    QApplication::setStyle(new PlainStyle); // owned by the application
    LoadFontConfiguration();
    auto noBus = std::make_unique<NoBusOfOurOwn>();
    auto noTheme = std::make_unique<WithoutVariable>("QT_QPA_PLATFORMTHEME");
    MaskingApplication app(argc, argv);
    noTheme.reset();
    noBus.reset();
    SetUpDesktop(app);
    const QStringList commandLine = QCoreApplication::arguments();
    const QString programPath = commandLine.value(0);
    switch (SelectMode(commandLine, cfg)) {
    case GateMode::SetupNeedsNoPassword:
        qDebug() << "setup passed as argument but, password not required";
        return 0;
    case GateMode::NothingToCheck:
        qDebug() << "no arguments passed and user authorization not required";
        return 0;
    case GateMode::RemoteDialog:
        return RunRemoteDialog(programPath, cfg);
    case GateMode::LocalWindow:
        break;
    }
    return RunLocalWindow(programPath, cfg);
}
