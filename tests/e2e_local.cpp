// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// The local-password window of the built program, by real keys on a real X server.
#include "tav3/crypt.h"
#include "tav3/stringblur.h"
#include "tests/support/gatedriver.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"
#include "tests/support/xview.h"

#include <QFile>
#include <QTest>

namespace {

const QString Window = QStringLiteral("Login");
const QString ErrorBox = QStringLiteral("Login Error");
const QString LocalPassword = QStringLiteral("Lantern 7");
const QString TerminalPassword = QStringLiteral("Beacon 9");
const QString EventScript = QStringLiteral("send_event.sh");

QString Stored(const QString& password, bool hashed)
{
    return hashed ? QString::fromLatin1(crypt_passwd(password.toLatin1().constData(), crypt_make_salt()))
                  : TavStringBlur::Encode(password);
}

QMap<QString, QString> Settings(bool hashed)
{
    return {{QStringLiteral("enablelocalauth"), QStringLiteral("true")},
            {QStringLiteral("localauthpass"), Stored(LocalPassword, hashed)},
            {QStringLiteral("enableterminalpass"), QStringLiteral("true")},
            {QStringLiteral("terminalpass"), Stored(TerminalPassword, hashed)}};
}

} // namespace

class LocalGate : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        CleanTerminal();
        m_events = std::make_unique<FakeTools>();
        m_events->InstallScript(EventScript, {});
    }

    void cleanup()
    {
        m_events.reset();
        m_desktop.StopWindowManager();
    }

    void WrongThenRight_data() { LoadTable("local.tsv"); }

    void WrongThenRight()
    {
        const bool local = Text("asked") == QLatin1String("local");
        const Configuration configuration(Settings(Flag("hashed")));
        const QString program = m_events->Path(Text("link"));
        QVERIFY(QFile::link(QStringLiteral(BUILD_DIR "/bin/qorm-login"), program));
        Gate gate(Words(qPrintable(Text("arguments"))), {}, program);
        QVERIFY(m_desktop.Shows(Window));
        for (int attempt = 0; attempt < 2; ++attempt) {
            m_desktop.Type(local ? TerminalPassword : LocalPassword, "Return");
            QVERIFY(m_desktop.Confirms(ErrorBox));
        }
        m_desktop.Type(local ? LocalPassword : TerminalPassword, "Return");
        QCOMPARE(gate.Status(), 0);
        const QStringList events{QStringLiteral("sec01|localuser"), QStringLiteral("sec01|localuser"),
                                 QStringLiteral("sec02|localuser")};
        QTRY_COMPARE(m_events->Calls(EventScript), events);
    }

    void EmptyEntryAndClosingDoNothing_data() { LoadTable("local.tsv"); }

    void EmptyEntryAndClosingDoNothing()
    {
        if (Flag("window manager"))
            m_desktop.StartWindowManager();
        const Configuration configuration(Settings(true));
        Gate gate;
        QVERIFY(m_desktop.Shows(Window));
        m_desktop.Keys("Return");
        AskToClose(m_desktop.Window(Window));
        if (Flag("window manager"))
            m_desktop.Keys("alt+F4");
        QVERIFY(!Within(NeverMs, [&] { return !gate.IsRunning() || m_desktop.Window(ErrorBox) != 0; }));
        QCOMPARE(m_events->Calls(EventScript), QStringList());
        m_desktop.Type(LocalPassword, "Return");
        QCOMPARE(gate.Status(), 0);
    }

    void BouncedReturn()
    {
        m_events.reset(); // no event script: nothing changes
        const Configuration configuration(Settings(true));
        Gate gate;
        QVERIFY(m_desktop.Shows(Window));
        m_desktop.Type(LocalPassword, "Return Return");
        QCOMPARE(gate.Status(), 0);
        QVERIFY(Gate::Logs(QStringLiteral("bounce handled")));
    }

    void Cancel()
    {
        const Configuration configuration(Settings(true));
        Gate gate({QStringLiteral("setup")});
        QVERIFY(m_desktop.Shows(Window));
        m_desktop.Keys("Tab Tab space");
        QCOMPARE(gate.Status(), 1);
    }

    void NoScreen_data() { LoadTable("local.tsv"); }

    void NoScreen()
    {
        const Configuration configuration({});
        Gate gate(Words(qPrintable(Text("arguments"))));
        QCOMPARE(gate.Status(), 0);
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/QormLoginDebug.log")));
    }

private:
    Desktop m_desktop;
    std::unique_ptr<FakeTools> m_events;
};

QTEST_GUILESS_MAIN(LocalGate)
#include "e2e_local.moc"
