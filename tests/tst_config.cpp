// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "app/modeselection.h"
#include "config/logincfg.h"
#include "ldap/ldaphandler.h"
#include "tav3/crypt.h"
#include "tav3/rdpcipher.h"
#include "tav3/system.h"
#include "tests/support/onbox.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"

#include <QRegularExpression>
#include <QTest>

const QString User1 = QStringLiteral("/tmp/.user.1");
const QString LoggedIn = QStringLiteral("/tmp/.config/.loggedin");
const QString LdapSearch = QStringLiteral("ldapsearch");
auto* const s_console = new QString; // what would go to standard error; outlives the library's stream

class TestConfig : public QObject {
    Q_OBJECT
    QScopedPointer<FakeTools> m_tools;
    QScopedPointer<LoginCfg> m_cfg;

private slots:
    void initTestCase()
    {
        AbortOnConnectWarnings();
        TavSystem::cerr.setString(s_console);
        QVERIFY(ShellIn(QStringLiteral("/tmp"), QStringLiteral("mkdir -p .config config/files")));
        qputenv("PATH", "/nowhere"); // no tool but the stand-ins
    }

    void init()
    {
        m_tools.reset(new FakeTools);
        qputenv("TAV3_CONFIG_DIR", QFile::encodeName(m_tools->Path(QString())));
        m_cfg.reset(new LoginCfg(true));
        QFile::remove(User1);
        QFile::remove(LoggedIn);
        LdapHandler::s_instance = nullptr;
        s_console->clear();
        TakeMessages();
    }

    void ReadConfig_data() { LoadTable("config.tsv"); }

    void ReadConfig()
    {
        for (const char* file : {"config.xml", "registry.reg"})
            WriteFile(m_tools->Path(QLatin1String(file)), Text(file).toUtf8());
        const LoginCfg cfg(true);
        QTEST(Joined(TakeMessages()), "log");
        const std::pair<const char*, QVariant> members[]{{"needAuthentication", cfg.needAuthentication},
                                                         {"terminalPassword", cfg.terminalPassword},
                                                         {"localAuthPassword", cfg.localAuthPassword},
                                                         {"localAuthEnabled", cfg.localAuthEnabled},
                                                         {"remoteAuthEnabled", cfg.remoteAuthEnabled},
                                                         {"authEnabled", cfg.authEnabled},
                                                         {"remoteServer", cfg.remoteServer},
                                                         {"backupServer", cfg.backupServer},
                                                         {"serverType", cfg.serverType},
                                                         {"remoteDomain", cfg.remoteDomain},
                                                         {"requireCert", cfg.requireCert},
                                                         {"remotePort", cfg.remotePort}};
        QStringList values; // without those that are false or empty
        for (const auto& [name, value] : members) {
            if (const QString text = value.toString(); !text.isEmpty() && text != QLatin1String("false"))
                values += QLatin1String(name) + QLatin1Char('=') + text;
        }
        QTEST(Joined(values), "values");
    }

    void LocalPassword_data() { LoadTable("config.tsv"); }

    void LocalPassword()
    {
        m_cfg->terminalPasswordMode = Flag("terminal mode");
        m_cfg->authEnabled = Flag("enabled");
        m_cfg->localAuthEnabled = Flag("local");
        m_cfg->terminalPassword = Text("terminal password");
        m_cfg->localAuthPassword = Text("local password");
        QCOMPARE(m_cfg->CheckLocalPassword(Text("entered")), Flag("good"));
    }

    void SaveUser_data() { LoadTable("config.tsv"); }

    void SaveUser()
    {
        const char* const buffers[] = {crypt_passwd("x", "$5$salt$"), rdp_encrypt("x")}; // the library's own
        m_cfg->SaveUserFiles(Text("name"), Text("password"), Text("domain"));
        for (const char* buffer : buffers)
            QVERIFY(buffer && !*buffer); // they are wiped
        const QString hashed = QString::fromLatin1(FileText(QStringLiteral("/tmp/.user")));
        QTEST(QString(hashed).replace(QRegularExpression(QStringLiteral("\\$y\\$\\S+")), QStringLiteral("HASH")),
              "hashed");
        QVERIFY(hashed.section(QLatin1Char('\n'), 0, 0).mid(2) != hashed.section(QLatin1Char('\n'), 1, 1).mid(2));
        QStringList fields = QString::fromLatin1(FileText(User1)).chopped(1).split(QStringLiteral(",00,"));
        for (QString& field : fields)
            field = QString::fromLatin1(rdp_decrypt(field.toLatin1().constData()));
        QTEST(Joined(fields), "saved");
    }

    void SavedName_data() { LoadTable("config.tsv"); }

    void SavedName()
    {
        if (Flag("marker"))
            WriteFile(LoggedIn, {});
        if (!Text("file").isNull())
            WriteFile(User1, Text("file").toUtf8().replace("{}", rdp_encrypt("J\xf6rg")));
        QCOMPARE(m_cfg->IsLoggedIn(), Flag("logged in"));
        QTEST(m_cfg->LoadSavedUserName(), "name");
        QFile::remove(LoggedIn);
        QCOMPARE(m_cfg->IsLoggedIn(), Flag("logged in")); // it stays
    }

    void StartLogStopsGrowing()
    {
        const QString log = QStringLiteral("/tmp/config/files/QXlogin.log");
        for (const int size : {0, 65536, 65537}) {
            WriteFile(log, QByteArray(size, 'x'));
            m_cfg->WriteLoginLog(QStringLiteral("a,b"));
            const QString added = WithoutTimes(QString::fromUtf8(FileText(log).mid(size)));
            QCOMPARE(added, QLatin1String(size <= 65536 ? "T::a,b\n" : ""));
        }
    }

    void Login_data() { LoadTable("config.tsv"); }

    // The question is answered with No.
    void Login()
    {
        m_tools->InstallDirectory("namingContexts: DC=d\n\n", Filled(Text("answer"), DirectoryTime).toUtf8());
        m_cfg->serverType = Text("type");
        m_cfg->remoteServer = Text("servers").section(QLatin1Char(' '), 0, 0);
        m_cfg->backupServer = Text("servers").section(QLatin1Char(' '), 1);
        QString question;
        QObject login;
        OnBox(login, [&](const QMessageBox& box) { question = box.windowTitle() + box.text(); });
        const bool accepted = Text("codes").endsWith(QLatin1String("true 0"));
        QCOMPARE(m_cfg->CheckRemoteLogin(QStringLiteral("bob"), QStringLiteral("secret")), accepted);
        QTEST(Joined(TakeMessages().filter(QStringLiteral("CheckLdapResponse"))), "codes");
        QTEST(m_cfg->resultMessage, "message");
        QTEST(question, "question");
        QTEST(Joined(m_tools->Calls(LdapSearch).filter(QStringLiteral("namingContexts")), '\n'), "asked");
        QCOMPARE(QFile::exists(User1), accepted);
    }

    void Probe_data() { LoadTable("config.tsv"); }

    void Probe()
    {
        if (!Text("tool").isNull())
            m_tools->InstallScript(LdapSearch, Text("tool").toUtf8());
        m_cfg->requireCert = Flag("certificate");
        m_cfg->remotePort = QStringLiteral("3268");
        m_cfg->remoteDomain = Text("domain");
        m_cfg->remoteServer = Text("servers").section(QLatin1Char(' '), 0, 0);
        m_cfg->backupServer = Text("servers").section(QLatin1Char(' '), 1);
        const bool good = m_cfg->LdapSearchLogin(QStringLiteral("bob"), Text("password"), Flag("TLS"));
        QTEST(m_cfg->resultMessage, "code");
        QCOMPARE(good, Text("code").isEmpty());
        QCOMPARE(QFile::exists(User1), good);
        QTEST(*s_console, "console");
        QTEST(Joined(m_tools->Calls(LdapSearch), '\n'), "calls");
    }

    // Modes of terminals with no login, a local, a remote, and both; then the same with a password for the set-up.
    void Mode_data() { LoadTable("config.tsv"); }

    void Mode()
    {
        const QString line = QStringLiteral("gate %1").arg(Text("arguments"));
        QString modes;
        for (int i = 0; i < 8; ++i) {
            m_cfg->needAuthentication = i >= 4;
            m_cfg->localAuthEnabled = i % 2 == 1;
            m_cfg->authEnabled = i % 4 != 0;
            modes += QLatin1Char("SNRL"[int(SelectMode(line.split(QLatin1Char(' '), Qt::SkipEmptyParts), *m_cfg))]);
        }
        QTEST(modes, "modes");
    }
};

QTEST_MAIN(TestConfig)
#include "tst_config.moc"
