// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// Random sessions at the gate, beside a model of what a person expects of it. Each is a process of its own that runs
// main() of the program on a real X server, and in it a player, who knows where the buttons are: it gives X the next
// input when all that is seen is what the model says.
// SESSIONS_SEED is the number of the first session instead of FirstSession, SESSIONS_MINUTES how long to play instead
// of SessionCount.
#include "ldap/ldaphandler.h"
#include "tav3/rdpcipher.h"
#include "tav3/stringblur.h"
#include "tests/session_model.h"
#include "tests/support/gatedriver.h"
#include "tests/support/testsupport.h"
#include "tests/support/xview.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStyleHints>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <cstdlib>
#include <random>
#include <unistd.h>

int GateMain(int argc, char** argv); // of app/main.cpp

namespace {

constexpr unsigned FirstSession = 894; // in 897 keys are pressed while a second server is asked, which accepts
constexpr unsigned SessionCount = 20;
constexpr int InputCount = 30;
constexpr int AgreedStatus = 42; // of a session's process
constexpr int SessionLimitMs = 120000;
constexpr int DoubleClickMs = 200;
constexpr int HoldMs = 330; // in which a key repeats four times

// Notes what it was asked and told, and does not like a weak password.
const char PasswordTool[] = R"sh(
printf 'Old SMB password:'; read -r old; printf 'New SMB password:'; read -r new
printf 'Retype new SMB password:'; read -r again
echo "$2:$4:$old:$new:$again" >> "$here/changes"
[ "$new" != weak ] || echo refused >&2
)sh";

// That of SessionModel; while it is asked keys can be pressed. It even lets a guest in without a password.
const char Directory[] = R"sh(
case "$*" in
    *//dead*) echo "Can't contact LDAP server (-1)" >&2; exit 255 ;;
    *namingContexts) echo 'namingContexts: DC=example,DC=org'; exit ;;
esac
echo "${6%@*}:$8" >> "$here/binds"
[ ! -e "$here/meanwhile" ] || /usr/bin/xdotool key --delay 0 x Tab Return Escape space
end=9223372036854775807 code=52e
case $8 in soon) end=$soon ;; must) code=773 ;; locked) code=775 ;; mute) code= ;; esac
case ${6%@*}:$8 in alice:good | bob:good | alice:soon | bob:soon | guest:)
    printf 'dn: CN=x\npwdLastSet: 134000000000000000\nmsDS-UserPasswordExpiryTimeComputed: %s\n\n' "$end"; exit ;;
esac
echo 'ldap_bind: Invalid credentials (49)' >&2
[ -z "$code" ] || printf '\tadditional info: x, data %s, v1\n' "$code" >&2
exit 49
)sh";

QString Tool(const char* name)
{
    return qEnvironmentVariable("SESSION_TOOLS") + QLatin1Char('/') + QLatin1String(name);
}

// Which terminal a session has.
Terminal TerminalOf(unsigned seed)
{
    if (seed % 6 == 0)
        return {QLatin1String(seed % 4 ? "" : "setup"), {}, {}};
    const QStringList servers[]{Words("live"), Words("live dead"), Words("dead live"), Words("dead1 dead2")};
    const unsigned kind = seed % 16;
    return {u"force"_s, QLatin1String(seed % 3 ? "alice" : ""), servers[kind < 3 ? kind + 1 : 0]};
}

QString NameOf(const QWidget& widget)
{
    const QString name = widget.objectName();
    return name.isEmpty() ? widget.property("text").toString().remove(QLatin1Char('&')) : name;
}

QWidget* Front()
{
    QWidget* front = QApplication::activeModalWidget();
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!front && window->isVisible() && !window->windowTitle().isEmpty())
            front = window;
    }
    return front;
}

// The fields and buttons that Tab reaches.
QMap<QString, QWidget*> Controls(const QWidget& window)
{
    QMap<QString, QWidget*> controls;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isControl = qobject_cast<QLineEdit*>(widget) || qobject_cast<QPushButton*>(widget);
        if (isControl && widget->isVisible() && widget->isEnabled() && widget->focusPolicy() & Qt::TabFocus)
            controls[NameOf(*widget)] = widget;
    }
    return controls;
}

// As SessionModel::State().
QString Seen()
{
    const QWidget* front = qApp ? Front() : nullptr;
    if (!front || !QApplication::focusWidget() || FocusedTitle() != front->windowTitle())
        return {}; // it is on its way
    QStringList parts{front->windowTitle()};
    const auto controls = Controls(*front);
    for (auto control = controls.begin(); control != controls.end(); ++control) {
        const auto* field = qobject_cast<QLineEdit*>(control.value());
        parts += control.key();
        if (field)
            parts.last() += QLatin1Char('=') + field->text();
        if (field && field->hasSelectedText() && field->selectedText().size() == field->text().size())
            parts.last() += QLatin1Char('*');
    }
    parts += u"focus "_s + NameOf(*QApplication::focusWidget());
    return parts.join(QLatin1Char(';'));
}

QStringList Lines(const char* file)
{
    return QString::fromUtf8(FileText(Tool(file))).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString Saved(const char* path)
{
    const QString file = QLatin1String(path);
    return QFile::exists(file) ? SavedUser(file).join(QLatin1Char('|')) : QString();
}

// As SessionModel::Traces().
QString Found()
{
    QStringList parts{QString::number(FileText(Tool("wshutdown.calls")).count('\n')), Saved("/tmp/.user.1"),
                      Saved("/tmp/.newuser.1")};
    for (const char* file : {"binds", "send_event.sh.calls", "changes"}) {
        QStringList lines = Lines(file);
        if (*file == 's')
            lines.sort();
        parts += lines.join(QLatin1Char(' '));
    }
    return parts.join(QLatin1Char(';'));
}

// Only after a good bind of the name on the screen, in the mode on the screen; whatever the model says.
bool MayOpen(int status)
{
    QMap<QString, QWidget*> widgets;
    for (QWidget* window : QApplication::topLevelWidgets())
        for (QWidget* widget : window->findChildren<QWidget*>())
            widgets[widget->objectName()] = widget;
    const auto* user = qobject_cast<QLineEdit*>(widgets.value(u"leUser"_s));
    const QWidget* cancel = widgets.value(u"cancel"_s);
    const QStringList good{u"good"_s, u"soon"_s};
    const QString bind = Lines("binds").value(Lines("binds").size() - 1);
    return user && bind.section(QLatin1Char(':'), 0, 0) == user->text()
        && good.contains(bind.section(QLatin1Char(':'), 1)) && (status == 8) == !cancel->isHidden();
}

} // namespace

class Player : public QObject {
public:
    explicit Player(unsigned seed) : m_random(seed), m_model(TerminalOf(seed)) { s_player = this; }

    // In every process of this program, as soon as it has Qt's application object.
    static void Begin()
    {
        if (!s_player)
            return;
        LdapHandler::s_smbPasswdProgram = Tool("smbpasswd");
        QGuiApplication::styleHints()->setMouseDoubleClickInterval(DoubleClickMs);
        on_exit([](int status, void*) { s_player->End(status); }, nullptr);
        s_player->m_waiting.start();
        s_player->StepIn(0);
    }

private:
    void StepIn(int ms)
    {
        QTimer::singleShot(ms, this, [this] { Step(); });
    }

    void Step()
    {
        if (!m_held.isEmpty())
            UseTool({u"keyup"_s, std::exchange(m_held, {})});
        if (m_model.Status() >= 0 || !Agrees()) {
            if (m_waiting.elapsed() > WaitMs)
                Differ("it stays so");
            return StepIn(5);
        }
        if (m_inputs.size() >= InputCount)
            Agree();
        Give();
        m_waiting.start();
        // The local window pauses before it checks; a second click need not change anything that could be waited for.
        StepIn(!m_held.isEmpty() || m_model.IsLocal() || m_inputs.last().endsWith(u" twice]"_s) ? HoldMs : 1);
    }

    bool Agrees() const { return Seen() == m_model.State() && Found() == m_model.Traces(); }

    [[noreturn]] void Differ(const char* what) const
    {
        printf("%s; inputs: %s\nexpected %d, %s, %s\nseen        %s, %s\n", what, qPrintable(Joined(m_inputs, ' ')),
               m_model.Status(), qPrintable(m_model.State()), qPrintable(m_model.Traces()), qPrintable(Seen()),
               qPrintable(Found()));
        fflush(stdout);
        _exit(1);
    }

    [[noreturn]] void Agree() const
    {
        printf("%d %d", m_inputs.size(), m_model.Status());
        fflush(stdout);
        _exit(AgreedStatus);
    }

    [[noreturn]] void End(int status) const
    {
        const bool opens = status == 0 || status == 8;
        const bool mayOpen = m_model.IsLocal() ? m_inputs.contains(u"local"_s) : MayOpen(status);
        if (status != m_model.Status() || (opens && !mayOpen))
            Differ(qPrintable(u"ended with %1"_s.arg(status)));
        for (int ms = 0; Found() != m_model.Traces(); ms += 5) { // events are on their way
            if (ms > WaitMs)
                Differ("ended, but left something else");
            QThread::msleep(5);
        }
        Agree();
    }

    int Below(int limit) { return int(m_random() % unsigned(limit)); }

    QString OneOf(const QStringList& choices) { return choices.at(Below(choices.size())); }
    QString OneOf(const char* words) { return OneOf(Words(words)); }

    // Mostly as somebody who wants to sign in, now and then as nobody would.
    void Give()
    {
        const bool inField = m_model.IsField(m_model.Focus());
        const bool fillsIn = m_model.Title() == u"Password Change/Reset"_s;
        const int choice = Below(16);
        if (choice < 2)
            return Click(OneOf(m_model.Order()), m_model.IsScreen() && Below(3) == 0);
        if (choice < 3)
            return Press(OneOf("Tab shift+Tab Escape"));
        if (choice < 4)
            return Type(WordFor(m_model.Focus()));
        if (choice < 5 && !fillsIn)
            return Hold(OneOf(inField ? "Return Escape" : "Return space Escape"));
        if (choice < 6 && m_model.IsChangingUser())
            return LetThirtySecondsPass();
        if (choice < 8 && m_model.Order().contains(u"change"_s))
            return Click(u"change"_s);
        GoOn();
    }

    void GoOn()
    {
        const QString focus = m_model.Focus();
        if (!m_model.IsField(focus))
            Press(OneOf("Return space"));
        else if (m_model.IsEmpty())
            Type(WordFor(focus));
        else
            Press(Words("lePasswordEntry lePwd leRetypePassword").contains(focus) ? u"Return"_s : u"Tab"_s);
    }

    QString WordFor(const QString& field)
    {
        if (field == u"leUser"_s)
            return OneOf("alice bob bob guest");
        if (field == u"lePasswordEntry"_s)
            return OneOf("local wrong wrong");
        if (field.endsWith(QLatin1String("wPassword")) || field.startsWith(QLatin1String("leRe")))
            return OneOf("fresh fresh fresh weak");
        return OneOf("good good soon soon must locked mute bad");
    }

    void LetThirtySecondsPass()
    {
        m_inputs += u"(30s)"_s;
        m_model.LetThirtySecondsPass();
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->inherits("ngremotelogin"))
                QMetaObject::invokeMethod(window, "onCuTimeout");
        }
    }

    void Type(const QString& word)
    {
        m_inputs += word;
        m_model.Type(word);
        UseTool(Words("type --delay 0") + QStringList{word});
    }

    void Press(const QString& key)
    {
        m_inputs += QLatin1Char('<') + key + QLatin1Char('>');
        m_model.Press(key);
        UseTool(Words("key --delay 0") + QStringList{key});
    }

    void Hold(const QString& key)
    {
        m_inputs += QLatin1Char('<') + key + u" held>"_s;
        m_model.Press(key);
        m_held = key;
        UseTool({u"keydown"_s, key});
    }

    // Right of a field's text, in the middle of a button.
    void Click(const QString& name, bool twice = false)
    {
        m_inputs += QLatin1Char('[') + name + QLatin1String(twice ? " twice]" : "]");
        const QWidget& widget = *Controls(*Front()).value(name);
        twice ? m_model.ClickTwice(name) : m_model.Click(name);
        const QPoint end(widget.width() - 3, widget.height() / 2);
        const QPoint place = widget.mapToGlobal(widget.inherits("QLineEdit") ? end : widget.rect().center());
        while (m_sinceClick.isValid() && m_sinceClick.elapsed() <= 2 * DoubleClickMs) // no third one either
            QTest::qWait(10);
        UseTool(Words("mousemove") + QStringList{QString::number(place.x()), QString::number(place.y())}
                + Words(twice ? "click --delay 0 --repeat 2 1" : "click 1"));
        m_sinceClick.start();
    }

    static void UseTool(const QStringList& arguments) { Run(u"xdotool"_s, arguments); }

    static Player* s_player;
    std::mt19937 m_random;
    SessionModel m_model;
    QStringList m_inputs;
    QElapsedTimer m_waiting;
    QElapsedTimer m_sinceClick;
    QString m_held; // this key
};

Player* Player::s_player = nullptr;

void Begin()
{
    Player::Begin();
}

Q_COREAPP_STARTUP_FUNCTION(Begin)

class Sessions : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        qputenv("SESSION_TOOLS", QFile::encodeName(m_tools.Path(QString())));
        for (const char* quiet : {"send_event.sh", "wshutdown"})
            m_tools.InstallScript(QLatin1String(quiet), "");
        m_tools.InstallScript(u"smbpasswd"_s, PasswordTool);
        m_tools.InstallScript(u"ldapsearch"_s,
                              "export DISPLAY=" + qgetenv("DISPLAY") + "; soon=" + DirectoryTime(3) + '\n' + Directory);
    }

    void PlayedAsExpected()
    {
        const int minutes = qEnvironmentVariableIntValue("SESSIONS_MINUTES");
        const unsigned first = qEnvironmentVariable("SESSIONS_SEED", QString::number(FirstSession)).toUInt();
        QElapsedTimer played;
        played.start();
        unsigned count = 0;
        int differences = 0;
        for (; minutes ? played.elapsed() < minutes * 60000LL : count < SessionCount; ++count)
            differences += Agrees(first + count) ? 0 : 1;
        qInfo("%u sessions from %u on, %d inputs, in %lld s", count, first, m_inputCount, played.elapsed() / 1000);
        for (auto ending = m_endings.begin(); ending != m_endings.end(); ++ending)
            qInfo("%d times %s", ending.value(), qPrintable(ending.key()));
        QCOMPARE(differences, 0);
    }

private:
    bool Agrees(unsigned seed)
    {
        Prepare(TerminalOf(seed), seed % 3 == 0);
        QProcess session;
        session.setStandardErrorFile(QProcess::nullDevice());
        const QStringList command = Words(qgetenv("SESSIONS_UNDER").constData())
            + QStringList{QCoreApplication::applicationFilePath(), u"play"_s, QString::number(seed)};
        session.start(command.first(), command.mid(1));
        if (!session.waitForFinished(SessionLimitMs)) // the player has a limit for each of its waits
            session.kill();
        session.waitForFinished(WaitMs);
        const QByteArray said = session.readAllStandardOutput();
        if (session.exitStatus() == QProcess::NormalExit && session.exitCode() == AgreedStatus) {
            const QStringList results = Words(said.constData());
            m_inputCount += results.first().toInt();
            ++m_endings[results.last() == u"-1"_s ? u"asking"_s : results.last()];
            return true;
        }
        qWarning("SESSIONS_SEED=%u: status %d, %s", seed, session.exitCode(), said.constData());
        return false;
    }

    void Prepare(const Terminal& terminal, bool keysMeanwhile)
    {
        CleanTerminal();
        Run(u"xdotool"_s, Words("keyup Return keyup Escape keyup space mousemove 0 0"));
        ShellIn(m_tools.Path(QString()), u"rm -f binds changes meanwhile *.calls"_s);
        if (keysMeanwhile)
            WriteFile(Tool("meanwhile"), "");
        if (!terminal.savedUser.isEmpty()) {
            ShellIn(u"/tmp"_s, u"mkdir -p .config; touch .config/.loggedin"_s);
            WriteFile(u"/tmp/.user.1"_s,
                      QByteArray(rdp_encrypt(terminal.savedUser.toLatin1().constData())) + ",00,,00,\n");
        }
        const QString stored = TavStringBlur::Encode(u"local"_s);
        m_configuration = std::make_unique<Configuration>(
            QMap<QString, QString>{{u"enablelocalauth"_s, u"true"_s},
                                   {u"localauthpass"_s, stored},
                                   {u"enableterminalpass"_s, u"true"_s},
                                   {u"terminalpass"_s, stored},
                                   {u"remoteauthserver"_s, terminal.servers.join(QLatin1Char(' '))},
                                   {u"remoteauthtype"_s, u"LDAP"_s},
                                   {u"remoteauthdomain"_s, u"example.org"_s}});
    }

    int m_inputCount = 0;
    QMap<QString, int> m_endings; // exit statuses of the sessions, and how many had each
    FakeTools m_tools;
    Desktop m_desktop;
    std::unique_ptr<Configuration> m_configuration;
};

// As the program with the session's argument.
int Play(char* program, unsigned seed)
{
    static const Player player(seed); // longer than main()
    QByteArray argument = TerminalOf(seed).argument.toLatin1();
    char* words[]{program, argument.isEmpty() ? nullptr : argument.data(), nullptr};
    return GateMain(argument.isEmpty() ? 1 : 2, words);
}

int main(int argc, char** argv)
{
    if (argc == 3 && qstrcmp(argv[1], "play") == 0)
        return Play(argv[0], QByteArray(argv[2]).toUInt());
    const QCoreApplication application(argc, argv);
    Sessions sessions;
    return QTest::qExec(&sessions, argc, argv);
}

#include "e2e_sessions.moc"
