// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// What a screen reader learns about the built program, over the real accessibility bus.
#include <atspi/atspi.h> // first: it has a member named signals, which is a word of Qt

#include "tests/support/gatedriver.h"
#include "tests/support/testsupport.h"

#include <QTest>

namespace {

const QString Dialog = QStringLiteral("User Authentication");
// No other text on the bus consists of one of these letters.
const QString Password = QStringLiteral("QZX");
const QString NewPassword = QStringLiteral("WKJ");

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
using Node = std::unique_ptr<AtspiAccessible, Unref>;

QString Taken(gchar* text)
{
    const QString taken = QString::fromUtf8(text);
    g_free(text);
    return taken;
}

bool Is(const Node& node, AtspiStateType state)
{
    const std::unique_ptr<AtspiStateSet, Unref> states(atspi_accessible_get_state_set(node.get()));
    return states && atspi_state_set_contains(states.get(), state);
}

// "role: name" of a node, and the text of a field behind it.
QString Line(const Node& node)
{
    QString line = Taken(atspi_accessible_get_role_name(node.get(), nullptr)) + QStringLiteral(": ")
        + Taken(atspi_accessible_get_name(node.get(), nullptr));
    const AtspiRole role = atspi_accessible_get_role(node.get(), nullptr);
    if (role == ATSPI_ROLE_TEXT || role == ATSPI_ROLE_PASSWORD_TEXT)
        line += QStringLiteral(" = ") + Taken(atspi_text_get_text(ATSPI_TEXT(node.get()), 0, -1, nullptr));
    return line;
}

// Calls `visit` for all that can be seen; the panels that only hold others are left out.
void Walk(const Node& parent, const std::function<void(const Node&)>& visit)
{
    for (int i = 0; i < atspi_accessible_get_child_count(parent.get(), nullptr); ++i) {
        const Node node(atspi_accessible_get_child_at_index(parent.get(), i, nullptr));
        if (!node)
            continue;
        const AtspiRole role = atspi_accessible_get_role(node.get(), nullptr);
        if (role != ATSPI_ROLE_APPLICATION && !Is(node, ATSPI_STATE_SHOWING))
            continue;
        if (role != ATSPI_ROLE_PANEL && role != ATSPI_ROLE_FILLER && role != ATSPI_ROLE_APPLICATION)
            visit(node);
        Walk(node, visit);
    }
}

void WalkAll(const std::function<void(const Node&)>& visit)
{
    Walk(Node(atspi_get_desktop(0)), visit);
}

QString Tree()
{
    QStringList lines;
    WalkAll([&](const Node& node) { lines += Line(node); });
    return lines.join(QLatin1Char('\n'));
}

bool Shows(const QString& lines)
{
    if (Within(WaitMs, [&] { return Tree().contains(lines); }))
        return true;
    qWarning("%s\nis not in\n%s", qPrintable(lines), qPrintable(Tree()));
    return false;
}

// Presses or releases ("b1p", "b1r") the left button of the pointer over the node of that name.
void Mouse(const QString& name, const char* action)
{
    WalkAll([&](const Node& node) {
        if (Taken(atspi_accessible_get_name(node.get(), nullptr)) != name)
            return;
        AtspiRect* place = atspi_component_get_extents(ATSPI_COMPONENT(node.get()), ATSPI_COORD_TYPE_SCREEN, nullptr);
        atspi_generate_mouse_event(place->x + place->width / 2, place->y + place->height / 2, action, nullptr);
        g_free(place);
    });
}

bool IsPressed(const QString& name)
{
    bool pressed = false;
    WalkAll([&](const Node& node) {
        pressed |= Taken(atspi_accessible_get_name(node.get(), nullptr)) == name && Is(node, ATSPI_STATE_PRESSED);
    });
    return pressed;
}

QStringList announced; // names of what has changed

void OnChange(AtspiEvent* event, void* /*data*/)
{
    announced += Taken(atspi_accessible_get_name(event->source, nullptr));
}

} // namespace

class Accessibility : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        CleanTerminal();
        m_sessionBus.process.start(
            QStringLiteral("dbus-daemon"),
            {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        QVERIFY(m_sessionBus.process.waitForReadyRead(WaitMs));
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_sessionBus.process.readLine().trimmed());
        qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
        QCOMPARE(atspi_init(), 0);
        for (const char* change : {"object:property-change:accessible-name", "object:text-changed"})
            QVERIFY(atspi_event_listener_register_from_callback(OnChange, nullptr, nullptr, change, nullptr));
        StartMonitor();
    }

    void LocalWindow()
    {
        const Configuration configuration({{QStringLiteral("enableterminalpass"), QStringLiteral("true")},
                                           {QStringLiteral("terminalpass"), QStringLiteral("$6$salt$nothing")}});
        const Gate gate({QStringLiteral("setup")});
        QVERIFY(m_desktop.Shows(QStringLiteral("Login")));
        m_desktop.Type(Password);
        QVERIFY(Shows(QStringLiteral("frame: Login\n"
                                     "label: Lock picture\n"
                                     "label: Please Enter User Password\n"
                                     "password text: Please Enter User Password = ***\n"
                                     "push button: OK\n"
                                     "push button: Cancel")));
        m_desktop.Keys("Return");
        QVERIFY(Shows(QStringLiteral("alert: Login Error\nlabel: Password is invalid\npush button: OK")));
    }

    void RemoteDialog()
    {
        FakeTools tools;
        tools.InstallDirectory("namingContexts: DC=example,DC=org\n",
                               "dn: CN=fine\npwdLastSet: " + DirectoryTime(-39)
                                   + "\nmsDS-UserPasswordExpiryTimeComputed: " + DirectoryTime(3) + "\n\n");
        const Configuration configuration(DomainController::Settings());
        const Gate gate;
        QVERIFY(m_desktop.Shows(Dialog));
        m_desktop.Type(QStringLiteral("fine"), "Tab");
        m_desktop.Type(Password, "Caps_Lock");
        QVERIFY(Shows(QStringLiteral("dialog: User Authentication\n"
                                     "image: User picture\n"
                                     "label: Username:\n"
                                     "text: Username: = fine\n"
                                     "label: Password:\n"
                                     "password text: Password: = ***\n"
                                     "image: Caps Lock is on\n"
                                     "label: Domain:\n"
                                     "text: Domain: = example.org\n")));
        m_desktop.Keys("Caps_Lock Return");
        QVERIFY(Shows(QStringLiteral("alert: Password Change?\nlabel:  Your Password will expire in  3 day(s).")));
        QVERIFY(Tree().endsWith(QStringLiteral("push button: Yes\npush button: No")));
        QVERIFY(announced.contains(QStringLiteral("Verifying credentials")));
        m_desktop.Keys("alt+y");
        QVERIFY(m_desktop.Shows(QStringLiteral("Password Change/Reset")));
        m_desktop.Type(NewPassword);
        QVERIFY(Shows(QStringLiteral("password text: New Password: = ***\npush button: Show new password\n")));
        QVERIFY(announced.contains(QStringLiteral("Password Mismatch")));
        Mouse(QStringLiteral("Show new password"), "b1p");
        QVERIFY(Within(WaitMs, [] { return IsPressed(QStringLiteral("Show new password")); }));
        QVERIFY(Tree().contains(QStringLiteral("password text: New Password: = ***\n")));
        Mouse(QStringLiteral("Show new password"), "b1r");
    }

    void NoPasswordIsOnTheBus()
    {
        QByteArray traffic;
        QVERIFY(Within(WaitMs, [&] {
            traffic += m_monitor.process.readAllStandardOutput();
            return traffic.contains("string \"f\"") && traffic.contains("string \"*\""); // typed, and masked
        }));
        for (const QString& secret : {Password, NewPassword}) {
            QVERIFY(!traffic.contains(secret.toUtf8()));
            for (const QChar letter : secret)
                QVERIFY2(!traffic.contains("string \"" + QByteArray(1, letter.toLatin1()) + '"'), qPrintable(secret));
        }
    }

private:
    // Reads all that passes over the accessibility bus.
    void StartMonitor()
    {
        QProcess ask;
        ask.start(QStringLiteral("dbus-send"),
                  {QStringLiteral("--session"), QStringLiteral("--print-reply=literal"),
                   QStringLiteral("--dest=org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                   QStringLiteral("org.a11y.Bus.GetAddress")});
        QVERIFY(ask.waitForFinished(WaitMs));
        m_monitor.process.start(QStringLiteral("dbus-monitor"),
                                {QStringLiteral("--address"), QString::fromUtf8(ask.readAll().trimmed())});
        QVERIFY(m_monitor.process.waitForReadyRead(WaitMs));
    }

    Desktop m_desktop;
    Service m_sessionBus;
    Service m_monitor;
};

QTEST_GUILESS_MAIN(Accessibility)
#include "e2e_accessibility.moc"
