// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// The three screens inside this process. What ends it, and what needs an X server, is tested on the built program.
#include "config/logincfg.h"
#include "ldap/ldaphandler.h"
#include "tav3/rdpcipher.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"
#include "ui/loginwindow.h"
#include "ui/ngremotelogin.h"
#include "ui/setpassword.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <sys/stat.h>

namespace {

const QString BackgroundPicture = QStringLiteral("/tmp/config/files/login.jpg");
const QString SavedUser = QStringLiteral("/tmp/.user.1");
const QByteArray Root = "namingContexts: DC=example,DC=org\n";

template <typename Widget> Widget* Find(const QWidget& window, const char* name)
{
    return window.findChild<Widget*>(QLatin1String(name));
}

QString Text(const QWidget& window, const char* field)
{
    return Find<QLineEdit>(window, field)->text();
}

void Enter(const QWidget& window, const char* field, const QString& text)
{
    Find<QLineEdit>(window, field)->clear();
    QTest::keyClicks(Find<QLineEdit>(window, field), text);
}

// Clicks a button, presses Escape or calls a slot of the window.
void Do(QWidget& window, const QByteArray& step)
{
    if (step == "Escape")
        QTest::keyClick(&window, Qt::Key_Escape);
    else if (step.startsWith("on"))
        QVERIFY2(QMetaObject::invokeMethod(&window, step.constData()), step.constData());
    else
        Find<QPushButton>(window, step.constData())->click();
}

QString DefaultButtons(const QWidget& dialog)
{
    QStringList names;
    for (const auto* button : dialog.findChildren<QPushButton*>()) {
        if (button->isDefault())
            names += button->objectName();
    }
    return names.join(QLatin1Char(' '));
}

// The names of these widgets that can be seen, one blank between them.
QString Seen(const QWidget& window, const QString& names)
{
    QStringList seen;
    for (const QString& name : names.split(QLatin1Char(' '))) {
        if (window.findChild<QWidget*>(name)->isVisibleTo(&window))
            seen += name;
    }
    return seen.join(QLatin1Char(' '));
}

// Answers the next modal box as soon as it is there, and keeps what it said.
class BoxAnswer {
public:
    explicit BoxAnswer(std::function<void(QMessageBox*)> answer = &QMessageBox::accept) : m_answer(std::move(answer))
    {
        QObject::connect(&m_poll, &QTimer::timeout, [this] { LookForBox(); });
        m_poll.start(5);
    }
    QString said; // "title: text"

private:
    void LookForBox()
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        m_poll.stop();
        said = box->windowTitle() + QStringLiteral(": ") + box->text();
        m_answer(box);
    }

    QTimer m_poll;
    std::function<void(QMessageBox*)> m_answer;
};

// The command line that QCoreApplication::arguments() gives.
int wordCount = 1;
char* words[4] = {};

void SetCommandLine(const QByteArray& commandLine)
{
    static QByteArrayList kept;
    kept = commandLine.split(' ');
    wordCount = kept.size();
    for (int i = 0; i < wordCount; ++i)
        words[i] = kept[i].data();
    words[wordCount] = nullptr;
}

} // namespace

class Screens : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        AbortOnConnectWarnings();
        QDir().mkpath(QStringLiteral("/tmp/.config"));
        QDir().mkpath(QStringLiteral("/tmp/config/files"));
        WriteFile(QStringLiteral("/tmp/.config/.loggedin"), {});
    }

    void init()
    {
        m_tools = std::make_unique<FakeTools>();
        m_cfg = std::make_unique<LoginCfg>(true);
        m_cfg->serverType = QStringLiteral("LDAP");
        m_cfg->remoteServer = QStringLiteral("live");
        SetCommandLine("gate");
        QFile::remove(SavedUser);
    }

    void cleanup() { m_tools.reset(); }

    void Modes_data() { LoadTable("screens.tsv"); }

    void Modes()
    {
        if (Flag("logged in"))
            LogIn();
        ngremotelogin dialog(m_cfg.get());
        dialog.show();
        for (const QString& step : Text("steps").split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            Enter(dialog, "lePwd", QStringLiteral("left over"));
            Do(dialog, step.toLatin1());
        }
        QCOMPARE(QString::number(dialog.height()), Text("height"));
        QCOMPARE(Seen(dialog, QStringLiteral("Unlock login change logout cancel")), Text("buttons"));
        const auto* user = Find<QLineEdit>(dialog, "leUser");
        QCOMPARE(user->text(), Text("user"));
        QCOMPARE(user->styleSheet(), Text("style"));
        QCOMPARE(user->isReadOnly(), Flag("read only"));
        QCOMPARE(Text(dialog, "lePwd"), QString());
        QCOMPARE(dialog.focusWidget()->objectName() + QLatin1Char(' ') + DefaultButtons(dialog), Text("focus"));
        QVERIFY(Seen(dialog, QStringLiteral("lblMessage capslock")).isEmpty());
        dialog.reject();
        QVERIFY(dialog.isVisible());
    }

    void RefusedLogin_data() { LoadTable("screens.tsv"); }

    void RefusedLogin()
    {
        m_tools->InstallDirectory(Root, "ldap_bind: Invalid credentials (49)\n\tadditional info: x, data 533, v1\n");
        ngremotelogin dialog(m_cfg.get());
        dialog.show();
        Enter(dialog, "leUser", Text("user"));
        Enter(dialog, "lePwd", QStringLiteral("secret"));
        const BoxAnswer box;
        Do(dialog, "on_login_clicked");
        QCOMPARE(box.said, QStringLiteral("Authentication Error: Your account has been disabled"));
        QCOMPARE(dialog.focusWidget()->objectName(), Text("focus"));
        QCOMPARE(Find<QLineEdit>(dialog, "lePwd")->selectedText(), Text("selected"));
        QVERIFY(Find<QPushButton>(dialog, "login")->isEnabled());
        QVERIFY(Seen(dialog, QStringLiteral("lblMessage")).isEmpty());
    }

    // Or the exit status would be that of the other mode.
    void NothingChangesTheModeDuringALogin()
    {
        LogIn();
        m_tools->InstallDirectory(Root,
                                  "dn: CN=new\npwdLastSet: " + DirectoryTime(-39)
                                      + "\nmsDS-UserPasswordExpiryTimeComputed: " + DirectoryTime(3) + "\n\n");
        ngremotelogin dialog(m_cfg.get());
        dialog.show();
        Do(dialog, "change");
        Enter(dialog, "leUser", QStringLiteral("new"));
        Enter(dialog, "lePwd", QStringLiteral("secret"));
        const auto disturb = [&dialog] {
            for (const char* step : {"onCuTimeout", "cancel", "Escape"})
                Do(dialog, step);
        };
        const BoxAnswer box([&](QMessageBox* question) {
            disturb();
            question->button(QMessageBox::No)->click();
        });
        Do(dialog, "on_login_clicked");
        QCOMPARE(box.said,
                 QStringLiteral("Password Change?:  Your Password will expire in  3 day(s).\n\n"
                                " Do you want to change your password now?  \n"));
        QVERIFY(QFile::exists(QStringLiteral("/tmp/.newuser.1")));
        disturb();
        QCOMPARE(Text(dialog, "leUser"), QStringLiteral("new"));
        QCOMPARE(Seen(dialog, QStringLiteral("cancel Unlock")), QStringLiteral("cancel"));
        QCOMPARE(Find<QLabel>(dialog, "lblMessage")->text(), QStringLiteral("Logging in"));
    }

    void ChangeUserEndsAfterThirtyIdleSeconds()
    {
        if (!qEnvironmentVariableIsSet("GATE_SLOW"))
            QSKIP("takes 33 seconds");
        LogIn();
        ngremotelogin idle(m_cfg.get());
        ngremotelogin edited(m_cfg.get());
        const auto unlocked = [](const QWidget& dialog) { return !Seen(dialog, QStringLiteral("Unlock")).isEmpty(); };
        QElapsedTimer clock;
        clock.start();
        for (auto* dialog : {&idle, &edited}) {
            dialog->show();
            Do(*dialog, "change");
        }
        QTimer::singleShot(1500, [&] { Enter(edited, "leUser", QStringLiteral("n")); });
        QTimer::singleShot(3000, [&] { Enter(edited, "lePwd", QStringLiteral("p")); });
        QTRY_VERIFY_WITH_TIMEOUT(unlocked(idle), 32000);
        QVERIFY(clock.elapsed() > 29000);
        QVERIFY(!unlocked(edited));
        QTRY_VERIFY_WITH_TIMEOUT(unlocked(edited), 5000);
        QVERIFY(clock.elapsed() > 32000);
    }

    // A style sheet that reads right can still have been ignored.
    void StyleIsPainted()
    {
        const QColor background(20, 120, 60);
        QImage picture(400, 500, QImage::Format_RGB32);
        picture.fill(background);
        QVERIFY(picture.save(BackgroundPicture, "jpg", 100));
        ngremotelogin dialog(m_cfg.get());
        dialog.show();
        QFile::remove(BackgroundPicture);
        const QImage pixels = dialog.grab().toImage();
        const auto* field = Find<QLineEdit>(dialog, "lePwd"); // without the focus, which has a border of its own
        const QPoint edge = field->mapTo(&dialog, QPoint(0, field->height() / 2));
        QCOMPARE(pixels.pixelColor(edge).name(), QStringLiteral("#505050"));
        const QColor corner = pixels.pixelColor(2, 2);
        QVERIFY2(qAbs(corner.red() - background.red()) + qAbs(corner.green() - background.green()) < 8,
                 qPrintable(corner.name()));
        QVERIFY(Seen(dialog, QStringLiteral("userimage")).isEmpty());
    }

    void PasswordFields_data() { LoadTable("screens.tsv"); }

    void PasswordFields()
    {
        InstallSmbPasswd("");
        SetPassword dialog;
        Prefill(dialog, Text("new"), Text("retyped"));
        QCOMPARE(Find<QLabel>(dialog, "lblProblem")->text(), Text("problem"));
        QCOMPARE(Seen(dialog, QStringLiteral("pbViewOldPwd pbViewNewPwd pbViewRetypePwd")), Text("view"));
        Do(dialog, "pushButton");
        QCOMPARE(Find<QLabel>(dialog, "lblProblem")->text(), Text("problem at the click"));
        QTRY_COMPARE(dialog.isVisible(), !Text("problem at the click").isEmpty());
    }

    void ViewButtonsAndUserName()
    {
        SetPassword dialog;
        Prefill(dialog, QStringLiteral("new"), QStringLiteral("new"));
        Find<QLineEdit>(dialog, "leOldPassword")->insert(QStringLiteral("x"));
        for (const auto& [button, field] :
             {std::pair("pbViewOldPwd", "leOldPassword"), std::pair("pbViewNewPwd", "leNewPassword"),
              std::pair("pbViewRetypePwd", "leRetypePassword")}) {
            QVERIFY(!Seen(dialog, QLatin1String(button)).isEmpty());
            QTest::mousePress(Find<QPushButton>(dialog, button), Qt::LeftButton);
            QCOMPARE(Find<QLineEdit>(dialog, field)->echoMode(), QLineEdit::Normal);
            QTest::mouseRelease(Find<QPushButton>(dialog, button), Qt::LeftButton);
            QCOMPARE(Find<QLineEdit>(dialog, field)->echoMode(), QLineEdit::Password);
        }
        dialog.SetUserName(QStringLiteral("other"));
        QCOMPARE(Text(dialog, "leOldPassword"), QString());
        QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel), Qt::LeftButton);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.m_message, QStringLiteral("Cancel was selected, no change attempted"));
    }

    void PasswordChange_data() { LoadTable("screens.tsv"); }

    void PasswordChange()
    {
        InstallSmbPasswd(Text("ending").toUtf8());
        SetPassword dialog;
        Prefill(dialog, QStringLiteral("new"), QStringLiteral("new"));
        Do(dialog, "pushButton");
        QTRY_VERIFY(!dialog.isVisible());
        QCOMPARE(dialog.m_success, Flag("success"));
        QCOMPARE(dialog.m_message, Text("message"));
        QCOMPARE(m_tools->Calls(QStringLiteral("smbpasswd")), QStringList{QStringLiteral("-r|live|-U|fine")});
        QCOMPARE(FileText(m_tools->Path(QStringLiteral("answers"))), QByteArray("old new new"));
    }

    // What an earlier dialog's child does must not pass for success in the next one.
    void OlderChild()
    {
        InstallSmbPasswd("read -r end < \"$here/end\"");
        {
            SetPassword cancelled;
            Prefill(cancelled, QStringLiteral("new"), QStringLiteral("new"));
            Do(cancelled, "pushButton");
            QTRY_VERIFY(!FileText(m_tools->Path(QStringLiteral("answers"))).isEmpty());
        }
        SetPassword dialog;
        Prefill(dialog, QStringLiteral("newer"), QStringLiteral("newer"));
        Do(dialog, "pushButton");
        EndSmbPasswd();
        QTRY_VERIFY(!dialog.isVisible());
        QVERIFY(!dialog.m_success);
        QCOMPARE(dialog.m_message, QStringLiteral("Failed to change password"));
    }

    void FurtherClickKeepsTheComplaint()
    {
        InstallSmbPasswd("echo refused >&2; read -r end < \"$here/end\"");
        SetPassword dialog;
        Prefill(dialog, QStringLiteral("new"), QStringLiteral("new"));
        Do(dialog, "pushButton");
        const LdapHandler* handler = LdapHandler::s_instance;
        QTRY_COMPARE(handler->m_stdErr, QStringLiteral("refused\n"));
        Do(dialog, "pushButton");
        QVERIFY(handler->m_stdErr.isEmpty());
        EndSmbPasswd();
        QTRY_VERIFY(!dialog.isVisible());
        QVERIFY(!dialog.m_success);
    }

    void LocalWindow_data() { LoadTable("screens.tsv"); }

    void LocalWindow()
    {
        SetCommandLine(Text("command line").toUtf8());
        const LoginWindow window(m_cfg.get());
        QCOMPARE(m_cfg->terminalPasswordMode, Flag("terminal password"));
        QCOMPARE(window.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel) != nullptr, Flag("cancel"));
        QCOMPARE(bool(window.windowFlags() & Qt::CustomizeWindowHint), Flag("bare title"));
        QVERIFY(window.windowFlags() & Qt::WindowTitleHint);
    }

    void WrongLocalPassword()
    {
        m_cfg->authEnabled = m_cfg->localAuthEnabled = true;
        m_cfg->localAuthPassword = QStringLiteral("$6$salt$nothing");
        LoginWindow window(m_cfg.get());
        window.show();
        Enter(window, "lePasswordEntry", QStringLiteral("wrong"));
        const BoxAnswer box;
        QTest::keyClick(Find<QLineEdit>(window, "lePasswordEntry"), Qt::Key_Return);
        QCOMPARE(box.said, QStringLiteral("Login Error: Password is invalid"));
        QCOMPARE(Text(window, "lePasswordEntry"), QString());
        QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("lePasswordEntry"));
        window.close();
        QVERIFY(window.isVisible());
    }

    // A Return that is held down opens pause in pause; without a bound the stack overflows.
    void FourThousandReturns()
    {
        LoginWindow window(m_cfg.get());
        window.show();
        auto* field = Find<QLineEdit>(window, "lePasswordEntry");
        int pressed = 0;
        for (int i = 0; i < 4000; ++i)
            QTimer::singleShot(1, [&] {
                ++pressed;
                QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
                QCoreApplication::sendEvent(field, &press);
            });
        QTRY_COMPARE(pressed, 4000);
        QVERIFY(window.isVisible());
    }

private:
    static void LogIn() { WriteFile(SavedUser, QByteArray(rdp_encrypt("fine")) + ",00,,00,\n"); }

    static void Prefill(SetPassword& dialog, const QString& newPassword, const QString& retyped)
    {
        dialog.SetServer(QStringLiteral("live"));
        dialog.SetUserName(QStringLiteral("fine"));
        dialog.SetOldPassword(QStringLiteral("old"));
        dialog.show();
        QTest::keyClicks(Find<QLineEdit>(dialog, "leNewPassword"), newPassword);
        QTest::keyClicks(Find<QLineEdit>(dialog, "leRetypePassword"), retyped);
    }

    // Asks as the real one does, and then ends with `ending`.
    void InstallSmbPasswd(const QByteArray& ending)
    {
        mkfifo(QFile::encodeName(m_tools->Path(QStringLiteral("end"))).constData(), 0600);
        m_tools->InstallScript(QStringLiteral("smbpasswd"),
                               "printf 'Old SMB password:'; read -r old; printf '\\nNew SMB password:'; read -r new\n"
                               "printf '\\nRetype new SMB password:'; read -r again\n"
                               "printf %s \"$old $new $again\" > \"$here/answers\"\n"
                                   + ending + "\n");
        LdapHandler::s_smbPasswdProgram = m_tools->Path(QStringLiteral("smbpasswd"));
    }

    void EndSmbPasswd() { WriteFile(m_tools->Path(QStringLiteral("end")), "now\n"); }

    std::unique_ptr<FakeTools> m_tools;
    std::unique_ptr<LoginCfg> m_cfg;
};

int main(int argc, char** argv)
{
    SetCommandLine("gate");
    const QApplication application(wordCount, words);
    Screens screens;
    return QTest::qExec(&screens, argc, argv);
}

#include "tst_screens.moc"
