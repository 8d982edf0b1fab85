// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// tavctl probe and login against the real domain controller, with what can be wrong around it.
#include "tests/support/gatedriver.h"
#include "tests/support/table.h"
#include "tests/support/tavctlrun.h"
#include "tests/support/testsupport.h"

#include <QDir>
#include <QTest>

namespace {

const QString Tls = QStringLiteral("/tmp/dc/private/tls");

QStringList WordsIn(const char* column)
{
    return Text(column).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

Configuration ConfigurationFor(const QString& servers, const QString& type)
{
    return Configuration({{QStringLiteral("enableremoteauth"), QStringLiteral("true")},
                          {QStringLiteral("remoteauthserver"), servers},
                          {QStringLiteral("remoteauthtype"), type},
                          {QStringLiteral("remoteauthdomain"), QStringLiteral("example.org")}});
}

} // namespace

class Tavctl : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        qputenv("HOME", QFile::encodeName(m_home.path()));
        qunsetenv("LDAPTLS_CACERT");
        Run(QStringLiteral(PROJECT_DIR "/lab/certificate"),
            {m_home.filePath(QStringLiteral("stranger")), QStringLiteral("dc1.example.org")});
        // The process group: what stands first in it only watches over the directory.
        WriteScript(QStringLiteral("/tmp/dc/with-stopped-directory"),
                    "read -r directory < /tmp/dc/pid\nkill -STOP -$directory\n\"$@\"\nstatus=$?\n"
                    "kill -CONT -$directory\nexit $status");
        WriteScript(QStringLiteral("/tmp/dc/with-web-server"), R"(exec python3 -c '
import socketserver, subprocess, sys, threading
socketserver.TCPServer.allow_reuse_address = True
refuse = lambda client, *_: client.recv(1000) and client.sendall(b"HTTP/1.0 400 Bad Request\r\n")
for port in 389, 636:
    server = socketserver.TCPServer(("dc2.example.org", port), refuse)
    threading.Thread(target=server.serve_forever, daemon=True).start()
sys.exit(subprocess.call(sys.argv[1:]))' "$@")");
    }

    void Probe_data() { LoadTable("tavctl-directory.tsv"); }

    void Probe()
    {
        SetUpServer(Text("certificate"), Text("server"));
        SetUpClient(Text("client"));
        if (!SetUpSamba(Text("samba")))
            QSKIP("smb.conf is the machine's own here");
        const Configuration configuration = ConfigurationFor(QStringLiteral("dc1.example.org"), Text("type"));
        const auto [status, output, error]
            = RunTavctl(QStringList(QStringLiteral("probe")) + WordsIn("words"), {}, WordsIn("wrapper"));
        QVERIFY2(output.contains(Text("part of the report")), qPrintable(output));
        QCOMPARE(CodesIn(output), Text("findings"));
        QCOMPARE(status, output.contains(QLatin1String("- error: ")) ? 1 : 0);
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/AdPwdTest.log")));
    }

    void Login_data() { LoadTable("tavctl-directory.tsv"); }

    void Login()
    {
        CleanTerminal();
        SetUpServer({}, {});
        SetUpClient({});
        FakeTools tools;
        tools.InstallScript(QStringLiteral("send_event.sh"), {});
        const Configuration configuration = ConfigurationFor(Text("servers"), QStringLiteral("LDAPS"));
        const QStringList before = QDir(QStringLiteral("/tmp")).entryList(QDir::AllEntries | QDir::Hidden);
        const auto [status, output, error]
            = RunTavctl({QStringLiteral("login"), Text("user")}, Text("password").toUtf8() + '\n');
        for (const QString& part : Text("parts of the report").split(QLatin1Char('|')))
            QVERIFY2(output.contains(part), qPrintable(output));
        QCOMPARE(QString::number(status), Text("status"));
        QVERIFY(output.endsWith(QLatin1String("Nothing was saved, no event was sent, no window was opened.\n")));
        QVERIFY(!(output + error).contains(Text("password")));
        QCOMPARE(QDir(QStringLiteral("/tmp")).entryList(QDir::AllEntries | QDir::Hidden), before);
        QVERIFY(tools.Calls(QStringLiteral("send_event.sh")).isEmpty());
    }

private:
    // Restarts the directory with another certificate ("NAME TIME", as lab/certificate takes them) or other settings;
    // without a name it gets a good one.
    void SetUpServer(const QString& certificate, const QString& settings)
    {
        const QString wanted = certificate + QLatin1Char('|') + settings;
        if (wanted == m_server)
            return;
        m_directory.Tell(QStringLiteral("stop"));
        const QStringList name = certificate.isEmpty() ? QStringList(QStringLiteral("dc1.example.org"))
                                                       : certificate.split(QLatin1Char(' '));
        Run(QStringLiteral(PROJECT_DIR "/lab/certificate"), QStringList(Tls) + name);
        WriteFile(QStringLiteral("/tmp/dc/more.conf"), settings.toUtf8());
        m_directory.Tell(QStringLiteral("start"));
        m_server = wanted;
    }

    // The lines of .ldaprc behind the one that names the right CA.
    void SetUpClient(const QString& lines)
    {
        WriteFile(m_home.filePath(QStringLiteral(".ldaprc")),
                  "TLS_CACERT " + Tls.toUtf8() + "/ca.pem\n"
                      + QString(lines).replace(QStringLiteral("{home}"), m_home.path()).toUtf8() + '\n');
        // A policy of the whole system, for the rows that name it.
        WriteFile(QStringLiteral("/tmp/dc/gnutls.conf"),
                  "[overrides]\ndisabled-version = tls1.0\ndisabled-version = tls1.1\n");
    }

    // False where the file is the machine's own and would have to be another one.
    static bool SetUpSamba(const QString& lines)
    {
        const QString path = QStringLiteral("/etc/samba/smb.conf");
        if (qgetenv("GATE_SANDBOX") != "namespaces")
            return lines.isEmpty();
        QFile::remove(path);
        if (!lines.isEmpty())
            WriteFile(path, "[global]\n" + lines.toUtf8() + '\n');
        return true;
    }

    DomainController m_directory;
    QTemporaryDir m_home;
    QString m_server;
};

QTEST_GUILESS_MAIN(Tavctl)
#include "e2e_tavctl.moc"
