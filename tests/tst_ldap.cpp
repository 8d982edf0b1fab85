// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ldap/ldaphandler.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"

#include <QSignalSpy>
#include <QTest>

const QString Tool = QStringLiteral("smbpasswd");
// What smbpasswd does for each question; the answers go into a file.
const QByteArray Ask = "ask() { printf \"$1\"; read -r answer; printf '%s|' \"$answer\" >> \"$here/answers\"; }\n";

class TestLdap : public QObject {
    Q_OBJECT
    QScopedPointer<FakeTools> m_tools;
    LdapHandler* m_handler = nullptr;

    static QString Audit() { return WithoutTimes(Joined(LdapHandler::ReadLog(), '\n')); }

private slots:
    void initTestCase() { AbortOnConnectWarnings(); }

    void init()
    {
        m_tools.reset(new FakeTools);
        LdapHandler::s_instance = nullptr; // the handler of an earlier row is left alone
        LdapHandler::s_smbPasswdProgram = m_tools->Path(Tool);
        LdapHandler::ClearLog();
        QCOMPARE(Audit(), QStringLiteral("Could Not open Log File"));
        m_handler = LdapHandler::GetInstance(QStringLiteral("dc1"), QStringLiteral("bob"), QStringLiteral("secret"));
    }

    void Queries_data() { LoadTable("ldap.tsv"); }

    void Queries()
    {
        m_tools->InstallDirectory("dn:\nnamingContexts: " + Text("contexts").toUtf8() + "\n\n", "dn: CN=bob\n\n");
        LdapHandler::s_serverName = Text("server");
        m_handler->m_useConfiguredProtocol = !Text("scheme").isEmpty();
        m_handler->m_useLdaps = Text("scheme") == QLatin1String("ldaps");
        const bool found = m_handler->CheckPassword();
        QTEST(Joined(m_tools->Calls(QStringLiteral("ldapsearch")), '\n'), "calls");
        QTEST(m_handler->m_uri, "uri");
        const QStringList complaint{m_handler->m_lastCode, m_handler->m_lastError};
        QCOMPARE(found ? QString() : Joined(complaint + m_handler->m_messages), Text("complaint"));
    }

    void Answer_data() { LoadTable("ldap.tsv"); }

    // In the answer "{N}" is the day in N days, in the messages it is the days until the N-th since 1970.
    void Answer()
    {
        const auto daysUntil
            = [](qint64 day) { return QByteArray::number(day - QDateTime::currentSecsSinceEpoch() / 86400); };
        m_tools->InstallDirectory("namingContexts: DC=d\n\n", Filled(Text("answer"), DirectoryTime).toUtf8());
        LdapHandler::s_password = Text("password").replace(QLatin1Char('0'), QChar()); // a NUL ends it for the tool
        m_handler->m_mustChange = m_handler->m_accountLocked = true;                   // of an earlier user
        QCOMPARE(m_handler->CheckPassword(), Flag("good"));
        QTEST(Joined({m_handler->m_lastCode, m_handler->m_lastError}), "complaint");
        QTEST(m_handler->m_complaint, "client");
        QCOMPARE(m_handler->m_accountLocked, Text("flags") == QLatin1String("locked"));
        QCOMPARE(m_handler->m_mustChange, Text("flags") == QLatin1String("must change"));
        QCOMPARE(Joined(m_handler->m_messages), Filled(Text("messages"), daysUntil));
        QCOMPARE(TakeMessages(), QStringList()); // diagnostic lines are off
    }

    void RunCommand_data() { LoadTable("ldap.tsv"); }

    void RunCommand()
    {
        if (Text("script").contains(QStringLiteral("sleep")) && !qEnvironmentVariableIsSet("GATE_SLOW"))
            QSKIP("takes ten seconds");
        m_tools->InstallScript(Tool, "echo $$ > \"$here/id\"\n" + Text("script").toUtf8());
        m_handler->m_errorLines = QStringList(QStringLiteral("of the one before"));
        const QStringList output = m_handler->RunCommand(Text("program"), {}, QStringLiteral("L"));
        QCOMPARE(QString::number(output.size()) + QLatin1Char(':') + Joined(output), Text("output"));
        QTEST(Joined(m_handler->m_errorLines), "errors");
        QTEST(Audit(), "audit");
        QVERIFY(!ShellIn(m_tools->Path(QString()), QStringLiteral("kill -0 $(cat id)"))); // nothing is left of it
    }

    void Credentials()
    {
        LdapHandler::GetInstance(QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"));
        LdapHandler::SaveCredentials();
        QCOMPARE(LdapHandler::GetInstance({}, {}, {}), m_handler);
        LdapHandler::RestoreCredentials();
        QCOMPARE(LdapHandler::s_serverName + LdapHandler::s_userName + LdapHandler::s_password, QStringLiteral("abc"));
        LdapHandler::s_serverName.clear();
        LdapHandler::SaveCredentials(); // does not make the empty server the default
        QCOMPARE(Joined({m_handler->BuildUri(true), LdapHandler::s_serverName}), QStringLiteral("ldaps://a:636|a"));
    }

    // Every tool of Samba reads the file that is made then.
    void RefusedChangeAndSmbConf()
    {
        const QString path = QStringLiteral("/etc/samba/smb.conf");
        QFile::remove(path);
        m_handler->m_stdErr = QStringLiteral("kept");
        QCOMPARE(m_handler->ChangePassword(QString()), QStringLiteral("New Password is empty"));
        QVERIFY(QFile::exists(path) && FileText(path).isEmpty() && ModeOf(path) == 0644);
        WriteFile(path, "[global]\n");
        LdapHandler::s_serverName.clear();
        QCOMPARE(m_handler->ChangePassword(QString()), QStringLiteral("Server could not be contacted"));
        QCOMPARE(FileText(path), QByteArray("[global]\n"));
        QCOMPARE(m_handler->m_stdErr, QStringLiteral("kept"));
    }

    void Dialogue_data() { LoadTable("ldap.tsv"); }

    void Dialogue()
    {
        m_tools->InstallScript(Tool, Ask + Text("script").toUtf8());
        LdapHandler::s_password = QStringLiteral(u"old\u00e4");
        m_handler->m_stdErr = m_handler->m_stdOut = QStringLiteral("of the change before");
        QSignalSpy finished(m_handler, SIGNAL(ProcessFinihsed()));
        QCOMPARE(m_handler->ChangePassword(QStringLiteral(u"n\u00fc\u20ac")), QString());
        QTRY_VERIFY(!finished.isEmpty() || !(m_handler->m_stdOut + m_handler->m_stdErr).isEmpty());
        m_handler->m_process->closeWriteChannel(); // whatever it still asks for is not answered
        QTRY_COMPARE(finished.size(), 1);
        QTEST(QString::fromLatin1(FileText(m_tools->Path(QStringLiteral("answers")))), "answers");
        QTEST(m_handler->m_stdOut, "stdOut");
        QTEST(m_handler->m_stdErr, "stdErr");
        QTEST(Audit(), "audit");
    }

    // While the tool of the first one still runs.
    void FurtherRequests()
    {
        m_tools->InstallScript(Tool, "echo no >&2; read -r end; head -c 1000000 /dev/zero");
        QSignalSpy finished(m_handler, SIGNAL(ProcessFinihsed()));
        m_handler->ChangePassword(QStringLiteral("new"));
        QTRY_COMPARE(m_handler->m_stdErr, QStringLiteral("no\n"));
        for (int i = 0; i < 2; ++i)
            QCOMPARE(m_handler->ChangePassword(QStringLiteral("newer")), QString());
        QVERIFY(!m_handler->RanAsAsked() && m_handler->m_stdErr.isEmpty());
        m_handler->m_process->closeWriteChannel();
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(m_handler->m_stdErr, QStringLiteral("no\n"));
        // A new one has a start of its own, and may ask when the password is another one already.
        m_tools->InstallScript(Tool, Ask + "head -c 1000000 /dev/zero >&2; read -r go\nask 'New SMB password:'");
        m_handler->ChangePassword(QStringLiteral("newer"));
        m_handler->ChangePassword(QStringLiteral("newest"));
        m_handler->m_process->write("go\n");
        QTRY_COMPARE(finished.size(), 2);
        QVERIFY(m_handler->RanAsAsked() && m_handler->m_stdErr.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestLdap)
#include "tst_ldap.moc"
