// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "app/modeselection.h"
#include "config/logincfg.h"
#include "ldap/ldaphandler.h"
#include "tav3/crypt.h"
#include "tav3/rdpcipher.h"
#include "tav3/stringblur.h"
#include "tav3/system.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <csignal>
#include <sys/resource.h>

namespace {

const QString User = QStringLiteral("/tmp/.user");
const QString User1 = QStringLiteral("/tmp/.user.1");
const QString LoggedIn = QStringLiteral("/tmp/.config/.loggedin");
const QString StartLog = QStringLiteral("/tmp/config/files/QXlogin.log");
const QString LdapSearch = QStringLiteral("ldapsearch");
const QString EventScript = QStringLiteral("send_event.sh");
auto* const s_console = new QString; // what would go to standard error; outlives the library's stream

QString Joined(const QStringList& texts, QChar separator = QLatin1Char('|'))
{
    return texts.join(separator);
}

// One argument of each call, in a line.
QString Arguments(const QStringList& calls, int index)
{
    QStringList arguments;
    for (const QString& call : calls)
        arguments += call.section(QLatin1Char('|'), index, index);
    return Joined(arguments, QLatin1Char(' '));
}

// Answers every box and dialog while it lives: boxes with No when `newPassword` is null, else with Yes; the
// set-password dialog with that password, or with Cancel when it is empty.
class Answers : public QTimer {
public:
    explicit Answers(const QString& newPassword)
    {
        callOnTimeout([this, newPassword] { Answer(QApplication::activeModalWidget(), newPassword); });
        start(0);
    }
    QString boxes;

private:
    void Answer(QWidget* modal, const QString& newPassword)
    {
        if (!modal || modal == m_answered)
            return;
        m_answered = modal;
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            boxes += box->windowTitle() + box->text();
            return box->button(newPassword.isNull() ? QMessageBox::No : QMessageBox::Yes)->click();
        }
        for (const char* name : {"leNewPassword", "leRetypePassword"})
            modal->findChild<QLineEdit*>(QLatin1String(name))->setText(newPassword);
        auto* change = modal->findChild<QPushButton*>(QStringLiteral("pushButton"));
        auto* cancel = modal->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel);
        (newPassword.isEmpty() ? cancel : change)->click();
    }
    QWidget* m_answered = nullptr;
};

} // namespace

class TestConfig : public QObject {
    Q_OBJECT
    QScopedPointer<FakeTools> m_tools;
    QScopedPointer<LoginCfg> m_cfg;

private slots:
    void initTestCase()
    {
        AbortOnConnectWarnings();
        TavSystem::cerr.setString(s_console);
        QDir().mkpath(QFileInfo(LoggedIn).path());
        QDir().mkpath(QFileInfo(StartLog).path());
    }

    void init()
    {
        m_tools.reset(); // it puts the search path back
        m_tools.reset(new FakeTools);
        m_tools->Install(EventScript, {});
        qputenv("TAV3_CONFIG_DIR", QFile::encodeName(m_tools->Path(QString())));
        m_cfg.reset(new LoginCfg(true));
        for (const QString& path : {User, User1, LoggedIn, StartLog})
            QFile::remove(path);
        LdapHandler::s_instance = nullptr;
        LdapHandler::s_smbPasswdProgram = m_tools->Path(QStringLiteral("smbpasswd"));
        s_console->clear();
        TakeMessages();
    }

    void ReadConfig_data() { LoadTable("config.tsv"); }

    void ReadConfig()
    {
        const QString xml
            = QStringLiteral("<c><user><system><systeminfo><uselegacyapplets>%1</uselegacyapplets></systeminfo>"
                             "<security>%2</security></system></user></c>");
        WriteFile(m_tools->Path(QStringLiteral("config.xml")), xml.arg(Text("legacy"), Text("security")).toUtf8());
        WriteFile(m_tools->Path(QStringLiteral("registry.reg")),
                  "[HKEY_LOCAL_MACHINE\\Software\\" + Text("registry").toUtf8());
        const LoginCfg cfg(true);
        const QString log = QStringLiteral("LoginCfg()|\"%1\" %2");
        QCOMPARE(Joined(TakeMessages()),
                 log.arg(Text("legacy"), QLatin1String(Text("legacy").isEmpty() ? "false" : "true")));
        const auto flag = [](bool value) { return QString::number(value); };
        QTEST(Joined({flag(cfg.needAuthentication), cfg.terminalPassword, cfg.localAuthPassword,
                      flag(cfg.localAuthEnabled), flag(cfg.remoteAuthEnabled), flag(cfg.authEnabled), cfg.remoteServer,
                      cfg.backupServer, cfg.serverType, cfg.remoteDomain, flag(cfg.requireCert), cfg.remotePort}),
              "values");
    }

    void LocalPassword_data() { LoadTable("config.tsv"); }

    void LocalPassword()
    {
        const QString mode = Text("mode");
        m_cfg->terminalPasswordMode = mode == QLatin1String("terminal");
        m_cfg->localAuthEnabled = mode == QLatin1String("local");
        m_cfg->authEnabled = m_cfg->localAuthEnabled || mode == QLatin1String("remote");
        (m_cfg->terminalPasswordMode ? m_cfg->terminalPassword : m_cfg->localAuthPassword) = Text("stored");
        QCOMPARE(m_cfg->CheckLocalPassword(Text("entered")), Flag("good"));
    }

    void SaveUser_data() { LoadTable("config.tsv"); }

    void SaveUser()
    {
        m_cfg->SaveUserFiles(Text("name"), Text("password"), Text("domain"));
        QCOMPARE(ModeOf(User) | ModeOf(User1), 0600U);
        const QList<QByteArray> lines = FileText(User).split('\n');
        QCOMPARE(lines.size(), 3);
        for (const int i : {0, 1}) {
            const QByteArray key = Text(i == 0 ? "name" : "password").toLatin1();
            const QByteArray hash = lines.at(i).mid(2);
            QCOMPARE(lines.at(i), (i == 0 ? "$U" : "$P") + QByteArray(crypt_passwd(key.constData(), hash.constData())));
        }
        QVERIFY(lines.at(0).mid(2) != lines.at(1).mid(2)); // a salt each, in the row of equal texts
        QString enciphered = QString::fromLatin1(FileText(User1));
        QCOMPARE(enciphered.right(1), QStringLiteral("\n"));
        QStringList fields = enciphered.chopped(1).split(QStringLiteral(",00,"));
        for (QString& field : fields)
            field = QString::fromLatin1(rdp_decrypt(field.toLatin1().constData()));
        QTEST(Joined(fields), "saved");
    }

    void SaveUserWhatCanBe()
    {
        QDir().mkdir(User); // can't be written
        m_cfg->SaveUserFiles(QStringLiteral("bob"), QStringLiteral("secret"), QString());
        QDir().rmdir(User);
        QVERIFY(!FileText(User1).isEmpty());
        signal(SIGXFSZ, SIG_IGN);
        const struct rlimit full = {20, RLIM_INFINITY}; // bytes of a file, as on a full disk
        const struct rlimit free = {RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &full);
        m_cfg->SaveUserFiles(QStringLiteral("bob"), QStringLiteral("secret"), QString());
        setrlimit(RLIMIT_FSIZE, &free);
        QCOMPARE(FileText(User) + FileText(User1), QByteArray()); // never half a credential
    }

    void SavedName_data() { LoadTable("config.tsv"); }

    void SavedName()
    {
        const bool loggedIn = Flag("marker") && !Text("file").isNull();
        const QString jorg = QLatin1String(rdp_encrypt("J\xf6rg"));
        if (Flag("marker"))
            WriteFile(LoggedIn, {});
        if (!Text("file").isNull())
            WriteFile(User1, Text("file").replace(QStringLiteral("{}"), jorg).toLatin1());
        QCOMPARE(m_cfg->IsLoggedIn(), loggedIn);
        QTEST(m_cfg->LoadSavedUserName(), "name");
        QFile::remove(LoggedIn);
        QCOMPARE(m_cfg->IsLoggedIn(), loggedIn); // it stays
    }

    void StartLogStopsGrowing()
    {
        m_cfg->WriteLoginLog(QStringLiteral("a,b"));
        const QRegularExpression line(QStringLiteral("^\\w{3} \\w{3} \\d+ \\d\\d:\\d\\d:\\d\\d \\d{4}::a,b\n$"));
        QVERIFY(line.match(QString::fromUtf8(FileText(StartLog))).hasMatch());
        for (const int size : {65536, 65537}) {
            WriteFile(StartLog, QByteArray(size, 'x'));
            m_cfg->WriteLoginLog(QStringLiteral("a,b"));
            QCOMPARE(FileText(StartLog).endsWith("::a,b\n"), size == 65536);
        }
    }

    void Events()
    {
        m_cfg->SendSecurityEvent(QStringLiteral("b o b"), true);
        QTRY_COMPARE(Joined(m_tools->Calls(EventScript)), QStringLiteral("sec01|b o b"));
        m_cfg->SendSecurityEvent(QString(), false);
        QTRY_COMPARE(m_tools->Calls(EventScript).value(1), QStringLiteral("sec02|"));
    }

    // An answer: "+" and the days to expiry, or the sub-code of a refusal.
    void Login_data() { LoadTable("config.tsv"); }

    void Login()
    {
        const QByteArray answer = Text("answer").toLatin1();
        const QByteArray entry
            = "dn: x\nmsDS-UserPasswordExpiryTimeComputed: " + DirectoryTime(answer.mid(1).toInt()) + "\n\n";
        const QByteArray refusal = "ldap_bind: Invalid credentials (49)\nx, data " + answer + ", v1\n";
        m_tools->InstallDirectory("namingContexts: DC=d\n\n", answer.startsWith('+') ? entry : refusal);
        m_tools->Install(QStringLiteral("smbpasswd"), "Changed\n");
        m_cfg->serverType = Text("type");
        const QStringList servers = Text("servers").split(QLatin1Char(' '));
        m_cfg->remoteServer = servers.value(0);
        m_cfg->backupServer = servers.value(1);
        const Answers answers(Text("newPassword"));
        const bool accepted = Text("codes").endsWith(QLatin1String("true 0"));
        QCOMPARE(m_cfg->CheckRemoteLogin(QStringLiteral("bob"), QStringLiteral("secret")), accepted);
        const QStringList log = TakeMessages();
        QVERIFY(log.filter(QStringLiteral("secret")).isEmpty());
        const QStringList codes = log.filter(QStringLiteral("CheckLdapResponse"));
        QCOMPARE(Joined(codes).remove(QStringLiteral("CheckLdapResponse ")), Text("codes"));
        QTEST(m_cfg->resultMessage, "message");
        QCOMPARE(m_cfg->passwordChanged, Text("newPassword") == QLatin1String("new"));
        QCOMPARE(QFile::exists(User1), accepted);
        QTEST(Arguments(m_tools->Calls(LdapSearch).filter(QStringLiteral("namingContexts")), 3), "asked");
        const bool warned = QByteArray(QTest::currentDataTag()).startsWith("warned");
        const QString box = QStringLiteral("Password Change? Your Password will expire in  %1 day(s).\n\n Do you want "
                                           "to change your password now?  \n");
        QCOMPARE(answers.boxes, warned ? box.arg(answer.at(1)) : QString());
        QTRY_COMPARE(m_tools->Calls(EventScript).size(), Text("events").count(QStringLiteral("sec0")));
        QStringList events = m_tools->Calls(EventScript); // two scripts, at the same time
        events.sort();
        QCOMPARE(Joined(events, QLatin1Char(' ')).remove(QStringLiteral("|bob")), Text("events"));
    }

    void Probe_data() { LoadTable("config.tsv"); }

    void Probe()
    {
        const QString setting = Text("setting");
        const QString password = setting == QLatin1String("empty") ? QString() : QStringLiteral("secret");
        m_tools->InstallScript(LdapSearch,
                               "/bin/cat /proc/$$/environ > \"$here/environment\"\n" + Text("tool").toUtf8());
        if (Text("tool").isEmpty())
            m_tools->Remove(LdapSearch);
        m_cfg->requireCert = setting == QLatin1String("certificate");
        m_cfg->remotePort = QStringLiteral("3268");
        m_cfg->remoteDomain = Text("domain");
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(m_tools->Path(QString())));
        const bool good = m_cfg->LdapSearchLoginToServer(Text("server"), QStringLiteral("bob"), password,
                                                         setting == QLatin1String("TLS"));
        qputenv("PATH", path);
        QTEST(m_cfg->resultMessage, "code");
        QCOMPARE(good, Text("code").isEmpty());
        QCOMPARE(QFile::exists(User1), good);
        const QString error = QStringLiteral("authentication error on server %1Error Code=%2\n");
        QCOMPARE(*s_console, good ? QString() : error.arg(Text("server"), Text("code")));
        if (Text("tool").isEmpty())
            return;
        QCOMPARE(Joined(m_tools->Calls(LdapSearch)),
                 QStringLiteral("-H|%1|-D|bob@%2|-w|%3|-x|-b|%4|cn=bob|pwdLastSet")
                     .arg(Text("uri"), Text("domain"), password, Text("base")));
        const QByteArray environment = FileText(m_tools->Path(QStringLiteral("environment")));
        QCOMPARE(environment == QByteArray("LDAPTLS_REQCERT=allow", 22), !m_cfg->requireCert);
        QCOMPARE(environment.contains("TAV3_CONFIG_DIR="), m_cfg->requireCert);
    }

    void ProbeTriesTheBackupServer()
    {
        m_tools->InstallScript(LdapSearch, "case $2 in *dc2:*) exit 0 ;; esac; exit 1");
        m_cfg->remoteServer = QStringLiteral("dc1");
        QVERIFY(!m_cfg->LdapSearchLogin(QStringLiteral("bob"), QStringLiteral("secret"), false));
        m_cfg->backupServer = QStringLiteral("dc2");
        QVERIFY(m_cfg->LdapSearchLogin(QStringLiteral("bob"), QStringLiteral("secret"), false));
        QCOMPARE(Arguments(m_tools->Calls(LdapSearch), 1),
                 QStringLiteral("ldap://dc1: ldap://: ldap://dc1: ldap://dc2:"));
    }

    // Modes of terminals with no login, a local, a remote, and both; then the same with a password for the set-up.
    void Mode_data() { LoadTable("config.tsv"); }

    void Mode()
    {
        const QStringList commandLine
            = QStringLiteral("gate %1").arg(Text("arguments")).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        QString modes;
        for (int i = 0; i < 8; ++i) {
            m_cfg->needAuthentication = i >= 4;
            m_cfg->localAuthEnabled = i % 2 == 1;
            m_cfg->authEnabled = i % 4 != 0;
            modes += QLatin1Char("SNRL"[int(SelectMode(commandLine, *m_cfg))]);
        }
        QTEST(modes, "modes");
    }
};

QTEST_MAIN(TestConfig)
#include "tst_config.moc"
