// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// What a screen reader learns about the built program, over the real accessibility bus.
#include <atspi/atspi.h> // first: it has a member named signals, which is a word of Qt

#include "tests/support/gatedriver.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"
#include "tests/support/xview.h"

#include <QTest>

namespace {

using Node = std::shared_ptr<AtspiAccessible>;

QString Taken(gchar* text)
{
    const QString taken = QString::fromUtf8(text);
    g_free(text);
    return taken;
}

QString NameOf(AtspiAccessible* node)
{
    return Taken(atspi_accessible_get_name(node, nullptr));
}

bool Is(const Node& node, AtspiStateType state)
{
    const std::shared_ptr<AtspiStateSet> states(atspi_accessible_get_state_set(node.get()), g_object_unref);
    return states && atspi_state_set_contains(states.get(), state);
}

// All that can be seen, without the panels that only hold others. The tree may change meanwhile: what is gone as it is
// asked for is left out.
QVector<Node> Nodes(const Node& parent = Node(atspi_get_desktop(0), g_object_unref))
{
    QVector<Node> nodes;
    for (int i = 0; i < atspi_accessible_get_child_count(parent.get(), nullptr); ++i) {
        AtspiAccessible* child = atspi_accessible_get_child_at_index(parent.get(), i, nullptr);
        if (!child)
            continue;
        const Node node(child, g_object_unref);
        const AtspiRole role = atspi_accessible_get_role(child, nullptr);
        if (role != ATSPI_ROLE_APPLICATION && !Is(node, ATSPI_STATE_SHOWING))
            continue;
        if (role != ATSPI_ROLE_PANEL && role != ATSPI_ROLE_FILLER && role != ATSPI_ROLE_APPLICATION)
            nodes += node;
        nodes += Nodes(node);
    }
    return nodes;
}

// Some versions of the library call a button a push button.
QString RoleOf(AtspiAccessible* node)
{
    const QString role = Taken(atspi_accessible_get_role_name(node, nullptr));
    return role == QLatin1String("push button") ? QStringLiteral("button") : role;
}

// "role: name" of each, and the text of a field behind it.
QString Tree()
{
    QString tree;
    for (const Node& node : Nodes()) {
        const QString role = RoleOf(node.get());
        tree += role + QStringLiteral(": ") + NameOf(node.get());
        if (role.endsWith(QLatin1String("text")))
            tree += QStringLiteral(" = ") + Taken(atspi_text_get_text(ATSPI_TEXT(node.get()), 0, -1, nullptr));
        tree += QLatin1Char('\n');
    }
    return tree;
}

// Arguments of a shell that runs `command`, in which $1 is the bus's address.
QStringList OnAccessibilityBus(const char* command)
{
    return {QStringLiteral("-c"),
            QStringLiteral("set -- $(dbus-send --session --dest=org.a11y.Bus --print-reply=literal /org/a11y/bus "
                           "org.a11y.Bus.GetAddress); exec ")
                + QLatin1String(command)};
}

QStringList announced; // what of something has changed, and its name

} // namespace

class Accessibility : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        CleanTerminal();
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_userFolder.path()));
        m_sessionBus.process.start(QStringLiteral("dbus-daemon"),
                                   Words("--session --nofork --print-address --address=unix:runtime=yes"));
        QVERIFY(m_sessionBus.process.waitForReadyRead(WaitMs));
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_sessionBus.process.readLine().trimmed());
        qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
        QCOMPARE(atspi_init(), 0);
        const auto onChange = [](AtspiEvent* event, void*) {
            announced += QString::fromUtf8(event->type) + QLatin1Char(' ') + NameOf(event->source);
        };
        for (const char* change :
             {"object:property-change:accessible-name", "object:text-changed", "object:state-changed:focused"})
            QVERIFY(atspi_event_listener_register_from_callback(onChange, nullptr, nullptr, change, nullptr));
        m_monitor.process.start(QStringLiteral("sh"), OnAccessibilityBus("dbus-monitor --address $1"));
        QVERIFY(m_monitor.process.waitForReadyRead(WaitMs));
        m_tools.InstallExpiringDirectory();
    }

    void Screens_data() { LoadTable("accessibility.tsv"); }

    // A row goes on where the one before it ended, unless it starts the program anew.
    void Screens()
    {
        if (!Text("start").isEmpty()) {
            m_gate.reset();
            m_gate = std::make_unique<Gate>(Text("start").split(QLatin1Char(' ')));
            qunsetenv("DBUS_SESSION_BUS_ADDRESS"); // the next one has to find the bus in the user's folder
        }
        QVERIFY(Within(WaitMs, [] { return FocusedTitle() == Text("window"); }));
        m_desktop.Keys(Text("keys").split(QLatin1Char(' ')));
        const bool shown = Within(WaitMs, [] { return Tree().contains(Text("tree")); });
        QVERIFY2(shown, qPrintable(Tree()));
        QVERIFY(Text("announced").isEmpty() || Within(WaitMs, [] { return announced.contains(Text("announced")); }));
    }

    // The reader does not learn what the eye then sees.
    void ViewButton()
    {
        Node button;
        for (const Node& node : Nodes()) {
            if (NameOf(node.get()) == QLatin1String("Show new password"))
                button = node;
        }
        QVERIFY(button);
        AtspiRect* place = atspi_component_get_extents(ATSPI_COMPONENT(button.get()), ATSPI_COORD_TYPE_SCREEN, nullptr);
        QVERIFY(place);
        atspi_generate_mouse_event(place->x + place->width / 2, place->y + place->height / 2, "b1p", nullptr);
        g_free(place);
        QVERIFY(Within(WaitMs, [&] { return Is(button, ATSPI_STATE_PRESSED); }));
        QVERIFY(Tree().contains(QStringLiteral("password text: New Password: = ***\n")));
        CloseFocused();
        QVERIFY(
            Within(WaitMs, [] { return Tree().contains(QStringLiteral("label: The password was not changed.\n")); }));
        m_gate.reset();
    }

    void NoPasswordIsOnTheBus()
    {
        QProcess::execute(QStringLiteral("sh"), OnAccessibilityBus("dbus-send --address=$1 / end.of.traffic"));
        QByteArray traffic;
        QVERIFY(Within(WaitMs, [&] {
            traffic += m_monitor.process.readAllStandardOutput();
            return traffic.contains("interface=end.of;");
        }));
        for (const char* part : {"string \"f\"", "string \"*\""}) // typed, and masked
            QVERIFY2(traffic.contains(part), part);
        for (const char* part : {"QZX", "WKJ", "\"Q\"", "\"Z\"", "\"X\"", "\"W\"", "\"K\"", "\"J\""})
            QVERIFY2(!traffic.contains(part), part);
    }

private:
    Desktop m_desktop;
    QTemporaryDir m_userFolder;
    FakeTools m_tools;
    Configuration m_configuration{{{QStringLiteral("enableremoteauth"), QStringLiteral("true")},
                                   {QStringLiteral("remoteauthserver"), QStringLiteral("dc1")},
                                   {QStringLiteral("remoteauthtype"), QStringLiteral("LDAP")},
                                   {QStringLiteral("remoteauthdomain"), QStringLiteral("example.org")},
                                   {QStringLiteral("enableterminalpass"), QStringLiteral("true")},
                                   {QStringLiteral("terminalpass"), QStringLiteral("$6$salt$nothing")}}};
    Service m_sessionBus;
    Service m_monitor;
    std::unique_ptr<Gate> m_gate;
};

QTEST_GUILESS_MAIN(Accessibility)
#include "e2e_accessibility.moc"
