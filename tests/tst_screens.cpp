// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// The three screens inside this process. What ends it, and what needs an X server, is tested on the built program.
// How they look is tested in every language, and at several scales and with a larger font by CMakeLists.txt, as Qt
// takes these only when a program starts.
#include "desktop/fonts.h"
#include "desktop/plainstyle.h"
#include "desktop/restingcaret.h"
#include "config/logincfg.h"
#include "ldap/ldaphandler.h"
#include "tav3/desktop.h"
#include "tav3/rdpcipher.h"
#include "tests/support/look.h"
#include "tests/support/onbox.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"
#include "ui/loginwindow.h"
#include "ui/ngremotelogin.h"
#include "ui/setpassword.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolTip>
#include <QTranslator>

namespace {

const QString BackgroundPicture = QStringLiteral("/tmp/config/files/login.jpg");

template <typename Widget> Widget* Find(const QWidget& window, const QByteArray& name)
{
    return window.findChild<Widget*>(QString::fromLatin1(name));
}

// The command line that QCoreApplication::arguments() gives, of up to three words.
int wordCount = 0;
char* words[4] = {};

void SetCommandLine(const char* commandLine)
{
    static QByteArrayList kept;
    kept = QByteArray(commandLine).split(' ');
    wordCount = kept.size();
    for (int i = 0; i < wordCount; ++i)
        words[i] = kept[i].data();
    words[wordCount] = nullptr;
}

// Gives the terminal a session of this user, or none for an empty name.
void LogIn(LoginCfg& cfg, const char* user)
{
    ShellIn(QStringLiteral("/tmp"), QStringLiteral("rm -f .user.1; mkdir -p .config; touch .config/.loggedin"));
    if (*user)
        WriteFile(QStringLiteral("/tmp/.user.1"), QByteArray(rdp_encrypt(user)) + ",00,,00,\n");
    cfg.loggedIn = false; // not looked up yet
}

// A dark one, by a link, as the terminal's configuration makes it.
void UsePicture()
{
    QImage picture(400, 500, QImage::Format_RGB32);
    picture.fill(QColor(32, 32, 32));
    ShellIn(QStringLiteral("/tmp"),
            QStringLiteral("mkdir -p config/files; ln -sf ../picture.jpg config/files/login.jpg"));
    QVERIFY(picture.save(QStringLiteral("/tmp/config/picture.jpg")));
}

// Takes steps, between blanks: "field=text" enters a text; others press Escape, click a button or call a slot.
void Do(QWidget& window, const QString& steps)
{
    for (const QString& step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QByteArray name = step.section(QLatin1Char('='), 0, 0).toLatin1();
        if (auto* field = Find<QLineEdit>(window, name)) {
            field->clear(); // past a read-only field, too
            QTest::keyClicks(field, step.section(QLatin1Char('='), 1));
        } else if (auto* button = Find<QPushButton>(window, name)) {
            button->click();
        } else if (name == "menu") {
            QContextMenuEvent request(QContextMenuEvent::Keyboard, QPoint());
            QCoreApplication::sendEvent(Find<QLineEdit>(window, "leUser"), &request);
            QVERIFY(QApplication::activePopupWidget());
        } else if (name == "Escape") {
            QTest::keyClick(&window, Qt::Key_Escape);
        } else {
            QVERIFY2(QMetaObject::invokeMethod(&window, name.constData()), name.constData());
        }
    }
}

// The buttons that can be seen: the default one with an asterisk, one that can't be pressed in parentheses.
QString Buttons(const QWidget& window)
{
    QStringList names;
    for (const auto* button : window.findChildren<QPushButton*>()) {
        const QString name = button->objectName().isEmpty() ? button->text() : button->objectName();
        const auto form = QString::fromLatin1(button->isEnabled() ? "%1%2" : "(%1)%2");
        if (button->isVisibleTo(&window))
            names += form.arg(name, QLatin1String(button->isDefault() ? "*" : ""));
    }
    return names.join(QLatin1Char(' '));
}

std::unique_ptr<SetPassword> Shown()
{
    auto dialog = std::make_unique<SetPassword>();
    TavDesktop::SetDefaultStyleSheet(dialog.get());
    dialog->SetServer(QStringLiteral("live"));
    dialog->SetUserName(QStringLiteral("fine"));
    dialog->show();
    return dialog;
}

std::unique_ptr<SetPassword> FilledIn()
{
    auto dialog = Shown();
    std::ignore = QTest::qWaitForWindowActive(dialog.get());
    dialog->SetOldPassword(QStringLiteral("old"));
    Do(*dialog, QStringLiteral("leNewPassword=new leRetypePassword=new"));
    return dialog;
}

} // namespace

class Screens : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        AbortOnConnectWarnings();
        m_cfg.serverType = QStringLiteral("LDAP");
        m_cfg.remoteServer = QStringLiteral("live");
        m_cfg.remoteDomain = QStringLiteral("example.org");
        LdapHandler::s_smbPasswdProgram = m_tools.Path(QStringLiteral("smbpasswd"));
    }

    void cleanup() { QFile::remove(BackgroundPicture); }

    void RemoteDialog_data() { LoadTable("screens.tsv"); }

    void RemoteDialog()
    {
        m_tools.InstallExpiringDirectory();
        if (!Text("refused").isEmpty())
            m_tools.InstallDirectory("namingContexts: DC=d\n", Text("refused").toUtf8());
        m_cfg.serverType = Text("kind");
        LogIn(m_cfg, Flag("logged in") ? "fine" : "");
        ngremotelogin dialog(&m_cfg);
        dialog.show();
        QString said;
        OnBox(dialog, [&](const QMessageBox& box) {
            said = box.windowTitle() + QStringLiteral(": ");
            for (const auto* label : box.findChildren<QLabel*>())
                said += label->textFormat() == Qt::PlainText ? label->text() : QString();
            Do(dialog, Text("steps at the box"));
        });
        Do(dialog, Text("steps"));
        const auto* user = Find<QLineEdit>(dialog, "leUser");
        const auto* password = Find<QLineEdit>(dialog, "lePwd");
        const auto* message = Find<QLabel>(dialog, "lblMessage");
        const std::pair<const char*, QString> expected[]{
            {"box", said},
            {"buttons", Buttons(dialog)},
            {"message", message->isVisible() ? message->text() : QString()},
            {"user", user->text()},
            {"selected", password->selectedText()}};
        for (const auto& [column, value] : expected)
            QCOMPARE(value, Text(column));
        QVERIFY(!QApplication::activePopupWidget());
        // A long name or domain is shown from its beginning.
        QVERIFY(!user->isReadOnly() || user->cursorPosition() == 0);
        QCOMPARE(Find<QLineEdit>(dialog, "leDomain")->cursorPosition(), 0);
        const QStringList users = Joined(m_tools.Calls(QStringLiteral("ldapsearch"))).split(QLatin1Char('|'));
        QVERIFY(!users.contains(QStringLiteral("(sAMAccountName=other)")));
        m_cfg.serverType = QStringLiteral("LDAP");
    }

    void ChangeUserEndsThirtySecondsAfterAnEdit()
    {
        if (!qEnvironmentVariableIsSet("GATE_SLOW"))
            QSKIP("takes 33 seconds");
        LogIn(m_cfg, "fine");
        ngremotelogin dialogs[]{ngremotelogin(&m_cfg), ngremotelogin(&m_cfg), ngremotelogin(&m_cfg)};
        for (auto& dialog : dialogs)
            Do(dialog, QStringLiteral("change"));
        ngremotelogin left(&m_cfg);
        Do(left, QStringLiteral("change cancel lePwd=p"));
        const auto hasEnded = [](const QWidget& dialog) { return Buttons(dialog).contains(QLatin1String("Unlock")); };
        const auto ended = [&] { return std::count_if(std::begin(dialogs), std::end(dialogs), hasEnded); };
        const auto stays = [&](int count, int ms) { return !QTest::qWaitFor([&] { return ended() != count; }, ms); };
        QVERIFY(stays(0, 3000));
        Do(dialogs[1], QStringLiteral("leUser=n"));
        Do(dialogs[2], QStringLiteral("lePwd=p"));
        QVERIFY(stays(0, 26000));
        QTRY_COMPARE_WITH_TIMEOUT(ended(), 1, 2000);
        QVERIFY(stays(1, 1500));
        QTRY_COMPARE_WITH_TIMEOUT(ended(), 3, 3000);
        QCOMPARE(Find<QLineEdit>(left, "lePwd")->text(), QStringLiteral("p")); // its mode does not end again
    }

    void ViewButtons()
    {
        const auto dialog = FilledIn();
        Find<QLineEdit>(*dialog, "leOldPassword")->insert(QStringLiteral("x"));
        for (const QByteArray word : {"Old", "New", "Retype"}) {
            auto* button = Find<QPushButton>(*dialog, "pbView" + word + "Pwd");
            const auto* field = Find<QLineEdit>(*dialog, "le" + word + "Password");
            QVERIFY(button->isVisible());
            QTest::mousePress(button, Qt::LeftButton);
            QCOMPARE(field->echoMode(), QLineEdit::Normal);
            QTest::mouseRelease(button, Qt::LeftButton);
            QCOMPARE(field->echoMode(), QLineEdit::Password);
        }
    }

    void PasswordChange_data() { LoadTable("screens.tsv"); }

    // What the child was not asked for is no success, nor does a second click wipe out a complaint.
    void PasswordChange()
    {
        ShellIn(m_tools.Path(QString()), QStringLiteral("mkfifo end"));
        m_tools.InstallScript(QStringLiteral("smbpasswd"),
                              "printf '" + Text("complaint").toLatin1() + "' >&2\nread -r end < \"$here/end\"\n"
                                  + "printf changed\n");
        auto dialog = FilledIn();
        Do(*dialog, QStringLiteral("pushButton"));
        QTRY_COMPARE(LdapHandler::s_instance->m_stdErr, Text("complaint"));
        if (Flag("new dialog"))
            dialog = FilledIn();
        Do(*dialog, Text("then"));
        WriteFile(m_tools.Path(QStringLiteral("end")), "now\n");
        QTRY_VERIFY(!dialog->isVisible());
        QCOMPARE(dialog->m_message, Text("message"));
        QCOMPARE(dialog->m_success, Flag("success"));
    }

    void LocalWindow_data() { LoadTable("screens.tsv"); }

    void LocalWindow()
    {
        SetCommandLine(qPrintable(Text("command line")));
        ShellIn(QStringLiteral("/tmp"),
                QStringLiteral("mkdir -p icons; cp " PROJECT_DIR "/resources/capslock32.png icons/lock64.png"));
        LoginWindow window(&m_cfg);
        window.show();
        QVERIFY(!Find<QLabel>(window, "lIcon")->pixmap(Qt::ReturnByValue).isNull());
        QCOMPARE(Buttons(window), Text("buttons"));
        QCOMPARE(bool(window.windowFlags() & Qt::CustomizeWindowHint), Flag("bare title"));
        QVERIFY(window.windowFlags() & Qt::WindowTitleHint);
    }

    void NothingIsCut_data()
    {
        QTest::addColumn<QString>("translation");
        QTest::newRow("English") << QString();
        for (const QString& file : QDir(QStringLiteral(":/translations")).entryList())
            QTest::newRow(qPrintable(file)) << file;
    }

    // The sentences of the login chain, which stand in a table, are there too.
    void NothingIsCut()
    {
        QTranslator translator;
        if (!Text("translation").isEmpty()) {
            QVERIFY(translator.load(QStringLiteral(":/translations/") + Text("translation")));
            QCoreApplication::installTranslator(&translator);
            for (const QString& sentence : LdapHandler::LdapErrorMessages)
                QVERIFY2(!translator.translate("LoginCfg", qPrintable(sentence)).isEmpty(), qPrintable(sentence));
        }
        ForEveryScreen(CheckLayout);
    }

    void NothingIsFaint() { ForEveryScreen(CheckContrastInEveryState); }

    void NothingIsFaintOnDarkPicture()
    {
        UsePicture();
        ForEveryScreen(CheckContrastInEveryState);
    }

    // Two of one length look the same.
    void PasswordsCantBeRead()
    {
        ForEveryScreen([](QWidget& window) {
            const auto look = [](QLineEdit* field, const char* password) {
                field->setText(QLatin1String(password));
                return field->grab().toImage();
            };
            for (const char* name :
                 {"lePwd", "leOldPassword", "leNewPassword", "leRetypePassword", "lePasswordEntry"}) {
                if (auto* field = Find<QLineEdit>(window, name))
                    QVERIFY2(look(field, "iiiiii") == look(field, "WWWWWW"), name);
            }
        });
    }

    void HugePictureIsNotShown()
    {
        ShellIn(QStringLiteral("/tmp"), QStringLiteral("mkdir -p config/files"));
        for (const int width : {3300, 3301}) {
            WriteFile(BackgroundPicture, QByteArray("P6 ") + QByteArray::number(width) + " 10000 255\n");
            QVERIFY(ngremotelogin(&m_cfg).styleSheet().contains(BackgroundPicture) == (width == 3300));
        }
    }

    // Each blink repaints the field.
    void CaretRests()
    {
        const int flashTime = QApplication::cursorFlashTime();
        const RestingCaret caret(qApp, 100);
        ngremotelogin dialog(&m_cfg);
        dialog.show();
        QTRY_COMPARE(QApplication::cursorFlashTime(), 0);
        QTest::keyClick(Find<QLineEdit>(dialog, "leUser"), Qt::Key_A);
        QCOMPARE(QApplication::cursorFlashTime(), flashTime);
        QTRY_COMPARE(QApplication::cursorFlashTime(), 0);
        QApplication::setCursorFlashTime(flashTime);
    }

private:
    using Visit = std::function<void(QWidget&)>;

    void ForEveryScreen(const Visit& look)
    {
        m_tools.InstallExpiringDirectory();
        ForRemoteDialog("", "", look);
        ForRemoteDialog("fine", "", look);
        ForRemoteDialog("fine", "change", look);
        m_tools.InstallDirectory("namingContexts: DC=d\n", // and the longest sentence
                                 "ldap_bind: Invalid credentials (49)\n\tadditional info: x, data 1001, v1\n");
        ForRemoteDialog("", "", look);
        ForSetPassword(look);
        QToolTip::showText(QPoint(), QStringLiteral("Caps Lock"));
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->inherits("QTipLabel"))
                look(*window);
        }
        QToolTip::hideText();
        for (const char* commandLine : {"gate", "gate setup"}) {
            SetCommandLine(commandLine);
            LoginWindow window(&m_cfg);
            window.show();
            look(window);
        }
    }

    // Empty, filled in, with the box after the check, and after that.
    void ForRemoteDialog(const char* session, const char* mode, const Visit& look)
    {
        LogIn(m_cfg, session);
        ngremotelogin dialog(&m_cfg);
        dialog.show();
        Do(dialog, QString::fromLatin1(mode));
        look(dialog);
        Find<QLineEdit>(dialog, "leUser")->setText(QStringLiteral("fine"));
        Find<QLineEdit>(dialog, "lePwd")->setText(QStringLiteral("secret"));
        Find<QLabel>(dialog, "capslock")->show();
        OnBox(dialog, [&](QMessageBox& box) {
            look(dialog);
            look(box);
        });
        Do(dialog, QStringLiteral("on_login_clicked"));
        look(dialog);
    }

    static void ForSetPassword(const Visit& look)
    {
        const auto dialog = Shown();
        look(*dialog);
        for (const char* step : {"leOldPassword=old leNewPassword=new leRetypePassword=other", "pushButton"}) {
            Do(*dialog, QLatin1String(step));
            look(*dialog);
        }
    }

    FakeTools m_tools;
    LoginCfg m_cfg = LoginCfg(true);
};

int main(int argc, char** argv)
{
    QApplication::setStyle(new PlainStyle);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    LoadFontConfiguration();
    SetCommandLine("gate");
    const QApplication application(wordCount, words);
    Screens screens;
    return QTest::qExec(&screens, argc, argv);
}

#include "tst_screens.moc"
