// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ldap/ldaphandler.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <unistd.h>

namespace {

const QByteArray Root = "dn:\nnamingContexts: DC=corp,DC=example\n\n";
const QByteArray Entry = "dn: CN=bob\n\n";
const QString Tool = QStringLiteral("smbpasswd");
// What smbpasswd does for each question; the answers go into a file.
const QByteArray Ask = "ask() { printf \"$1\"; read -r answer; printf '%s|' \"$answer\" >> \"$here/answers\"; }\n";

// The audit file, "T" in place of a time stamp.
QString Audit()
{
    const QRegularExpression stamp(QStringLiteral("^\\w{3} \\w{3} \\d+ \\d\\d:\\d\\d:\\d\\d \\d{4} --- "),
                                   QRegularExpression::MultilineOption);
    return LdapHandler::ReadLog().join(QLatin1Char('\n')).replace(stamp, QStringLiteral("T "));
}

// "30000 - today" or a plain number.
qint64 DayNumber(const QString& text)
{
    const qint64 today = text.endsWith(QLatin1String("today")) ? QDateTime::currentSecsSinceEpoch() / 86400 : 0;
    return text.section(QLatin1String(" - "), 0, 0).toLongLong() - today;
}

QString Joined(const QStringList& texts)
{
    return texts.join(QLatin1Char('|'));
}

} // namespace

class TestLdap : public QObject {
    Q_OBJECT
    QScopedPointer<FakeTools> m_tools;
    LdapHandler* m_handler = nullptr;

    void Use(const QByteArray& root, const QByteArray& answer, const QString& password = QStringLiteral("secret"))
    {
        m_tools->InstallDirectory(root, answer);
        m_handler = LdapHandler::GetInstance(QStringLiteral("dc1"), QStringLiteral("bob"), password);
    }

private slots:
    void initTestCase() { AbortOnConnectWarnings(); }

    void init()
    {
        m_tools.reset(); // it puts the search path back
        m_tools.reset(new FakeTools);
        LdapHandler::s_instance = nullptr; // the handler of an earlier row is left alone
        LdapHandler::s_smbPasswdProgram = m_tools->Path(Tool);
        LdapHandler::ClearLog();
        QCOMPARE(Audit(), QStringLiteral("Could Not open Log File"));
        Use(Root, Entry);
    }

    // The bound query goes to the last of the URIs asked for the naming context; an empty base: there is none.
    void Queries_data() { LoadTable("ldap.tsv"); }

    void Queries()
    {
        const QStringList asked = Text("asked").split(QLatin1Char(' '));
        const bool found = !Text("base").isEmpty();
        const QString contexts = Text("contexts").replace(QLatin1Char('|'), QStringLiteral("\nnamingContexts: "));
        Use("dn:\nnamingContexts: " + contexts.toUtf8() + "\n\n", Entry);
        LdapHandler::s_serverName = Text("server");
        m_handler->m_useConfiguredProtocol = !Text("scheme").isEmpty();
        m_handler->m_useLdaps = Text("scheme") == QLatin1String("ldaps");
        QStringList calls;
        for (const QString& uri : asked)
            calls += QStringLiteral("-LLL|-x|-H|%1|-s|base|namingContexts").arg(uri);
        if (found)
            calls += QStringLiteral("-LLL|-x|-H|%1|-D|bob@%2|-w|secret|-b|%3|(sAMAccountName=bob)|dn|pwdLastSet|"
                                    "msDS-UserPasswordExpiryTimeComputed|pwdMaxAge|pwdPolicySubentry")
                         .arg(asked.last(), Text("domain"), Text("base"));
        QCOMPARE(m_handler->CheckPassword(), found);
        QCOMPARE(m_tools->Calls(QStringLiteral("ldapsearch")), calls);
        QCOMPARE(m_handler->m_uri, found ? asked.last() : QString());
        QCOMPARE(m_handler->m_lastCode, QLatin1String(found ? "" : "9999"));
        QCOMPARE(m_handler->m_lastError, QLatin1String(found ? "" : "Could not contact LDAP server"));
        const QString sentence = QStringLiteral("It looks like there are issues with the server you provided");
        if (!found)
            QCOMPARE(m_handler->m_messages, QStringList(sentence) + m_handler->m_errorLines);
    }

    void Expiry_data() { LoadTable("ldap.tsv"); }

    void Expiry()
    {
        const int daysAgo = -Text("changed").toInt();
        QByteArray dates = Text("dates").toUtf8();
        const QByteArray day = dates.mid(dates.indexOf('{')).split('}').first();
        if (!day.isEmpty())
            dates.replace(day + "}", DirectoryTime(DayNumber(QString::fromUtf8(day.mid(1)))));
        Use(Root, "dn: CN=bob\npwdLastSet: " + DirectoryTime(-daysAgo) + "\n" + dates + "\n\n");
        QVERIFY(m_handler->CheckPassword());
        const qint64 days = DayNumber(Text("days"));
        QCOMPARE(m_handler->m_daysToExpiry, days);
        const QString ago = daysAgo ? QStringLiteral("%1 days ago").arg(daysAgo) : QStringLiteral("today");
        QStringList messages{QStringLiteral("You last changed your password ") + ago};
        if (!Flag("known"))
            messages += QStringLiteral("We could not determine when your password will expire");
        messages += QStringLiteral("Your password will expire in %1 days").arg(days);
        QCOMPARE(m_handler->m_messages, messages);
    }

    void Refusal_data() { LoadTable("ldap.tsv"); }

    void Refusal()
    {
        QString complaint = Text("complaint");
        if (!complaint.startsWith(QLatin1String("ldap_bind")) && !complaint.startsWith(QLatin1String("dn")))
            complaint.prepend(QStringLiteral("ldap_bind: Invalid credentials (49)\n\tadditional info: LdapErr: x, "));
        Use(Root, complaint.toUtf8());
        m_handler->m_mustChange = m_handler->m_accountLocked = true; // of an earlier user
        QVERIFY(!m_handler->CheckPassword());
        QTEST(m_handler->m_lastCode, "code");
        QCOMPARE(m_handler->m_lastError, Text("sentences").section(QLatin1Char('|'), -1));
        QCOMPARE(m_handler->m_accountLocked, Text("flags") == QLatin1String("locked"));
        QCOMPARE(m_handler->m_mustChange, Text("flags") == QLatin1String("must change"));
        QStringList messages{QStringLiteral("It looks like there are issues with you credentials")};
        messages += m_handler->m_errorLines;
        if (!Text("sentences").isNull())
            messages += Text("sentences").split(QLatin1Char('|'));
        QCOMPARE(m_handler->m_messages, messages);
        QCOMPARE(m_handler->m_daysToExpiry, qint64(30000));
    }

    void EmptyPasswordIsRefused()
    {
        for (const QString& password : {QString(), QString(2, QChar())}) { // a NUL byte ends it for the tool
            Use(Root, Entry, password);
            QVERIFY(!m_handler->CheckPassword());
            QCOMPARE(m_handler->m_lastCode + m_handler->m_lastError, QStringLiteral("52eInvalid username or password"));
        }
    }

    void DiagnosticLines()
    {
        for (const char* password : {"", "secret", "-w"}) { // empty: switched off
            Use(Root, Entry, QLatin1String(password));
            LdapHandler::s_debugEnabled = *password;
            TakeMessages();
            m_handler->CheckPassword();
            const QString lines = Joined(TakeMessages());
            QCOMPARE(lines.isEmpty(), !*password);
            QCOMPARE(lines.contains(QStringLiteral("bob@ corp.example -w ******** -b  DC=corp")), bool(*password));
            QVERIFY(!(lines + Audit()).contains(QStringLiteral("secret")));
        }
        LdapHandler::s_debugEnabled = false;
    }

    void RunCommand_data() { LoadTable("ldap.tsv"); }

    void RunCommand()
    {
        m_tools->InstallScript(Tool, Text("script").toUtf8());
        const QStringList output = m_handler->RunCommand(Tool, {}, QStringLiteral("L"));
        QVERIFY(!output.isEmpty());
        QTEST(Joined(output), "output");
        QVERIFY(m_handler->RunCommand(QStringLiteral("no-such-tool"), {}, QStringLiteral("L")).isEmpty());
        QTEST(Joined(m_handler->m_errorLines), "errors"); // not touched by the second
        QTEST(Audit(), "audit");
    }

    void RunCommandThatNeverEnds()
    {
        if (!qEnvironmentVariableIsSet("GATE_SLOW"))
            QSKIP("takes ten seconds");
        m_tools->InstallScript(Tool, "echo a; exec sleep 60");
        QElapsedTimer timer;
        timer.start();
        QVERIFY(m_handler->RunCommand(Tool, {}, QStringLiteral("L")).isEmpty());
        QCOMPARE(timer.elapsed() / 5000, 2);
        QCOMPARE(Audit(), QStringLiteral("Could Not open Log File"));
    }

    void Credentials()
    {
        const QString a = QStringLiteral("a");
        const QString b = QStringLiteral("b");
        const QString u = QStringLiteral("u");
        QCOMPARE(LdapHandler::GetInstance(a, u, b), m_handler);
        QCOMPARE(LdapHandler::s_defaultServer, QStringLiteral("dc1"));
        LdapHandler::SaveCredentials();
        LdapHandler::GetInstance(b, b, b);
        LdapHandler::RestoreCredentials();
        QCOMPARE(LdapHandler::s_serverName + LdapHandler::s_userName + LdapHandler::s_password, a + u + b);
        LdapHandler::GetInstance(QString(), b, b);
        LdapHandler::SaveCredentials(); // does not make the empty server the default
        QCOMPARE(m_handler->BuildUri(true), QStringLiteral("ldaps://a:636"));
        QCOMPARE(LdapHandler::s_serverName, a);
    }

    void ChangeRefused()
    {
        m_handler->m_stdErr = QStringLiteral("kept");
        LdapHandler::s_serverName.clear();
        QCOMPARE(m_handler->ChangePassword(QString()), QStringLiteral("Server could not be contacted"));
        const int code = ForkedCode([this] { // in an empty world, without the tool
            return chroot(QFile::encodeName(m_tools->Path(QString())).constData()) != 0
                ? SkipCode
                : m_handler->ChangePassword(QString())
                    != QLatin1String("Changing password is not possible at this time");
        });
        LdapHandler::s_serverName = QStringLiteral("dc1");
        QCOMPARE(m_handler->ChangePassword(QString()), QStringLiteral("New Password is empty"));
        QCOMPARE(m_handler->m_stdErr, QStringLiteral("kept"));
        if (code == SkipCode)
            QSKIP("needs the rights of root");
        QCOMPARE(code, 0);
    }

    void SmbConf()
    {
        const QString path = QStringLiteral("/etc/samba/smb.conf");
        QFile::remove(path);
        QVERIFY(LdapHandler::PrepareSmbConf() && FileText(path).isEmpty());
        QCOMPARE(ModeOf(path), 0644U); // every tool of Samba reads it
        WriteFile(path, "[global]\n");
        QVERIFY(LdapHandler::PrepareSmbConf());
        QCOMPARE(FileText(path), QByteArray("[global]\n"));
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
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, 60000);
        QCOMPARE(m_tools->Calls(Tool), QStringList(QStringLiteral("-r|dc1|-U|bob")));
        QTEST(QString::fromLatin1(FileText(m_tools->Path(QStringLiteral("answers")))), "answers");
        if (!Text("stdOut").isNull())
            QTEST(m_handler->m_stdOut, "stdOut");
        QTEST(m_handler->m_stdErr, "stdErr");
        const QString outcome = Text("stdErr").isEmpty() ? QStringLiteral("Success") : Text("stdErr");
        QCOMPARE(Audit(), QStringLiteral("T Change Password\n%1\n").arg(outcome));
    }

    void ToolThatCantBeStarted()
    {
        LdapHandler::s_debugEnabled = true;
        TakeMessages();
        QCOMPARE(m_handler->ChangePassword(QStringLiteral("new")), QString());
        LdapHandler::s_debugEnabled = false;
        QVERIFY(TakeMessages().contains(QStringLiteral("OnProcessErrorOccurred QProcess::FailedToStart")));
        QCOMPARE(m_handler->m_process->state(), QProcess::NotRunning);
    }

    // Further requests, while the tool of the first still runs.
    void FurtherRequest_data() { LoadTable("ldap.tsv"); }

    void FurtherRequest()
    {
        m_tools->InstallScript(Tool, Text("script").toUtf8());
        QSignalSpy finished(m_handler, SIGNAL(ProcessFinihsed()));
        QCOMPARE(m_handler->ChangePassword(QStringLiteral("new")), QString());
        QTRY_VERIFY(!(m_handler->m_stdOut + m_handler->m_stdErr).isEmpty());
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(m_handler->ChangePassword(QStringLiteral("newer")), QString());
            QVERIFY(m_handler->m_startRefused);
            QCOMPARE(m_handler->m_stdErr + m_handler->m_stdOut, QString());
        }
        m_handler->m_process->closeWriteChannel();
        QTRY_COMPARE(finished.size(), 1);
        QTEST(m_handler->m_stdErr, "stdErr");
        m_tools->InstallScript(Tool, "exit 0"); // a new one has a start of its own
        QCOMPARE(m_handler->ChangePassword(QStringLiteral("newest")), QString());
        QVERIFY(!m_handler->m_startRefused);
        QTRY_COMPARE(finished.size(), 2);
        QCOMPARE(m_handler->m_stdErr, QString());
    }
};

QTEST_GUILESS_MAIN(TestLdap)
#include "tst_ldap.moc"
