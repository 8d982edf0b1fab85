// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// A change of the password from the remote-login dialog, with the real smbpasswd, against the real domain controller.
#include "tests/support/gatedriver.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"
#include "tests/support/xview.h"

#include <QFile>
#include <QTest>

namespace {

const QString Dialog = QStringLiteral("Password Change/Reset");
const QString ChangedBox = QStringLiteral("Password Changed");
const QString ErrorBox = QStringLiteral("Authentication Error");
const QString OldPassword = QStringLiteral("Lantern-2026");
const QString NewPassword = QStringLiteral("Harbour-2026");

// Starts a program where /usr/bin holds another smbpasswd, or none.
QStringList WrapperFor(const QString& tool, const FakeTools& fakes)
{
    if (tool == QLatin1String("missing"))
        return Words("bwrap --die-with-parent --dev-bind / / --tmpfs /usr/bin --ro-bind /usr/bin/sh /usr/bin/sh"
                     " --ro-bind /usr/bin/ldapsearch /usr/bin/ldapsearch");
    if (tool == QLatin1String("hanging"))
        return Words("bwrap --die-with-parent --dev-bind / / --ro-bind")
            + QStringList{fakes.Path(QStringLiteral("hang")), QStringLiteral("/usr/bin/smbpasswd")};
    return {};
}

} // namespace

class PasswordGate : public QObject {
    Q_OBJECT
private slots:
    void init() { CleanTerminal(); }

    void cleanup() { QVERIFY2(!Gate::Logged().contains("-2026"), "a password in a log"); }

    void NoChange_data() { LoadTable("password.tsv"); }

    void NoChange()
    {
        FakeTools fakes;
        fakes.InstallScript(QStringLiteral("hang"), "while read -r line; do :; done\n"); // as long as the gate lives
        Gate gate({}, WrapperFor(Text("tool"), fakes));
        m_desktop.SignIn(QStringLiteral("must-change"), OldPassword);
        QVERIFY(m_desktop.Shows(Dialog));
        for (const QString& step : Text("steps").split(QLatin1Char(' ')))
            Take(step);
        QVERIFY(m_desktop.Hides(Dialog));
        QVERIFY(m_desktop.Shows(ErrorBox));
        QCOMPARE(Gate::LastOutcome(), Text("outcome"));
        QVERIFY(Gate::Logged().contains(Text("logged").toUtf8()));
        QVERIFY(m_desktop.Confirms(ErrorBox));
        m_desktop.Keys("Return"); // with the password that is still there
        QVERIFY(m_desktop.Shows(Dialog));
    }

    void Change_data() { LoadTable("password.tsv"); }

    void Change()
    {
        {
            Gate gate;
            m_desktop.SignIn(Text("user"), OldPassword);
            if (Flag("asked")) {
                QVERIFY(m_desktop.Shows(QStringLiteral("Password Change?")));
                m_desktop.Keys("alt+y");
            }
            ChangePassword(NewPassword);
            QVERIFY(m_desktop.Shows(ChangedBox));
            QCOMPARE(Gate::LastOutcome(), Text("outcome"));
            QVERIFY(!QFile::exists(QStringLiteral("/tmp/.user")));
            QVERIFY(m_desktop.Confirms(ChangedBox));
            m_desktop.Type(NewPassword, "Return");
            QCOMPARE(gate.Status(), 0);
        }
        Gate gate;
        m_desktop.SignIn(Text("user"), OldPassword);
        QVERIFY(m_desktop.Shows(ErrorBox));
    }

    // The failed one counts as a failure, the good one does not.
    void SecondChangeInARow()
    {
        const QString user = QStringLiteral("fine");
        m_server.SetState(user, QStringLiteral("must-change"));
        Gate gate;
        m_desktop.SignIn(user, OldPassword);
        ChangePassword(QStringLiteral("short"));
        QVERIFY(m_desktop.Confirms(ErrorBox));
        m_desktop.Type(OldPassword, "Return");
        ChangePassword(NewPassword);
        QVERIFY(m_desktop.Confirms(ChangedBox));
        m_desktop.Type(OldPassword, "Return");
        QVERIFY(m_desktop.Confirms(ErrorBox));
        m_desktop.Type(NewPassword, "Return");
        QCOMPARE(gate.Status(), 0);
    }

private:
    void Take(const QString& step)
    {
        if (step == QLatin1String("close"))
            AskToClose(m_desktop.Window(Dialog));
        else if (step == QLatin1String("stays"))
            QVERIFY(!Within(NeverMs, [this] { return m_desktop.Window(Dialog) == 0; }));
        else if (step.startsWith(QLatin1Char('=')))
            m_desktop.Type(step.mid(1));
        else
            for (int i = qMax(1, step.section(QLatin1Char('*'), 1).toInt()); i > 0; --i)
                m_desktop.Keys({step.section(QLatin1Char('*'), 0, 0)});
    }

    void ChangePassword(const QString& password)
    {
        QVERIFY(m_desktop.Shows(Dialog));
        m_desktop.Type(password, "Tab");
        m_desktop.Type(password, "Return");
    }

    Desktop m_desktop;
    DomainController m_server;
    Configuration m_configuration{DomainController::Settings()};
};

QTEST_GUILESS_MAIN(PasswordGate)
#include "e2e_password.moc"
