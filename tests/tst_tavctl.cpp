// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"
#include "config/support.h"
#include "tav3/stringblur.h"
#include "tests/support/testsupport.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString Program = QStringLiteral(BUILD_DIR "/bin/tavctl");
const QString SavedFile = QStringLiteral("/tmp/.user.1");
const QByteArray Plain = "secretpasswrd"; // of 13 letters
const QByteArray Remote = "enableremoteauth=true;remoteauthserver=dc1.x dc2.x;remoteauthtype=LDAPS;"
                          "remoteauthdomain=x;remoteauthport=636;reqcert=on";
const QByteArray Local = "enablelocalauth=on;localauthpass=HASH;enableterminalpass=on;terminalpass=HASH";

struct Result {
    int status;
    QString output;
    QString error;
};

Result Run(const char* words, const QByteArray& input = {})
{
    QProcess process;
    process.start(Program, QString::fromUtf8(words).split(QLatin1Char(' '), Qt::SkipEmptyParts));
    process.write(input);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

bool Opens(const QString& stored, const QString& password)
{
    LoginCfg cfg(true);
    cfg.terminalPassword = stored;
    return !stored.isEmpty() && cfg.CheckLocalPassword(password) && !cfg.CheckLocalPassword(password.chopped(1));
}

// The settings of a row of the table as the text of the two stores.
QByteArray StoreText(QByteArray settings, bool registryStore)
{
    static const QByteArray hash = Hashed(QStringLiteral("pass")).toLatin1();
    settings.replace("sound-remote", Remote).replace("sound-local", Local);
    settings.replace("HASH", hash).replace("BLUR", TavStringBlur::Encode(QStringLiteral("pass")).toLatin1());
    QByteArray text;
    for (const QByteArray& setting : settings.split(';')) {
        const QByteArray key = setting.left(setting.indexOf('='));
        const QByteArray value = setting.mid(key.size() + 1);
        if (!setting.contains('='))
            text += setting + '\n';
        else
            text += registryStore ? '"' + key + "\"=\"" + value + "\"\n" : "<" + key + ">" + value + "</" + key + ">";
    }
    return text;
}

} // namespace

class TestTavctl : public QObject {
    Q_OBJECT
    FakeTools m_tools;
    QTemporaryDir m_folder;

private slots:
    void initTestCase()
    {
        qputenv("TAV3_CONFIG_DIR", QFile::encodeName(m_folder.path()));
        chmod(QFile::encodeName(m_folder.path()).constData(), 0755);
    }

    void Password_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<bool>("warns");
        QTest::newRow("plain, a blank at the end") << QStringLiteral("pass word ") << false;
        QTest::newRow("Latin-1") << QStringLiteral(u"p\u00e4ss\u00ff") << false;
        QTest::newRow("outside Latin-1") << QStringLiteral(u"p\u20acss") << true;
        QTest::newRow("longest that can be hashed") << QString(511, QChar(0xe4)) << false;
    }

    void Password()
    {
        QFETCH(QString, password);
        const Result hash = Run("hash", password.toUtf8() + "\nnext line\n");
        QVERIFY(hash.status == 0 && Opens(hash.output.trimmed(), password));
        QTEST(hash.error.contains(QLatin1String("warning")), "warns");
        const Result obscured = Run("obscure", password.toUtf8());
        QVERIFY(obscured.status == 0 && Opens(obscured.output.trimmed(), password));
        QVERIFY(obscured.error.isEmpty());
    }

    void Terminal_data()
    {
        QTest::addColumn<QByteArray>("again");
        QTest::addColumn<int>("status");
        QTest::newRow("same") << Plain << 0;
        QTest::newRow("differs") << QByteArray("another") << 1;
    }

    void Terminal()
    {
        QFETCH(QByteArray, again);
        QFETCH(int, status);
        QProcess terminal;
        terminal.start(QStringLiteral("script"),
                       {QStringLiteral("-qec"), Program + QStringLiteral(" hash"), QStringLiteral("/dev/null")});
        QByteArray shown;
        QTRY_VERIFY((shown += terminal.readAll()).endsWith("Password: "));
        terminal.write(Plain + "\n");
        QTRY_VERIFY((shown += terminal.readAll()).endsWith("Password again: "));
        terminal.write(again + "\n");
        QVERIFY(terminal.waitForFinished());
        shown += terminal.readAll();
        QVERIFY2(!shown.contains(Plain) && !shown.contains(again), shown.constData());
        QCOMPARE(terminal.exitCode(), status);
        const auto hash = QRegularExpression(QStringLiteral("\\$\\S+")).match(QString::fromUtf8(shown));
        QCOMPARE(Opens(hash.captured(), QString::fromUtf8(Plain)), status == 0);
    }

    // The words of the command line are the row's name.
    void Refused_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<int>("status");
        for (const char* verb : {"hash", "obscure"}) {
            QTest::newRow(verb) << QByteArray("\npass") << 1;
            QTest::addRow("%s ", verb) << QByteArray("p\xe4ss") << 1;  // not UTF-8
            QTest::addRow("%s  ", verb) << QByteArray(1024, 'x') << 1; // must not be cut off
            QTest::addRow("%s password", verb) << QByteArray("pass") << 2;
        }
        QTest::newRow("hash   ") << QByteArray(512, 'x') << 1;
        for (const char* wrong : {"", "sso", "sso users", "check all", "Check"})
            QTest::newRow(wrong) << QByteArray() << 2;
    }

    void Refused()
    {
        QFETCH(QByteArray, input);
        QFETCH(int, status);
        const Result result = Run(QTest::currentDataTag(), input);
        QCOMPARE(result.status, status);
        QVERIFY(result.output.isEmpty());
        QVERIFY(result.error.startsWith(QLatin1String(status == 1 ? "tavctl: " : "usage: ")));
    }

    void Check_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<int>("findings");
        QTest::addColumn<QString>("parts");
        for (const QByteArray& line : FileText(QStringLiteral(PROJECT_DIR "/tests/tavctl-check.tsv")).split('\n')) {
            const QList<QByteArray> cells = line.split('\t');
            if (cells.size() == 4 && !line.startsWith('#'))
                QTest::newRow(cells.at(0).constData())
                    << cells.at(1) << cells.at(2).toInt() << QString::fromUtf8(cells.at(3));
        }
    }

    void Check()
    {
        QFETCH(QByteArray, settings);
        QFETCH(QString, parts);
        const QByteArray row = QTest::currentDataTag();
        for (const char* tool : {"ldapsearch", "wshutdown", "send_event.sh"})
            m_tools.Install(QLatin1String(tool), {});
        if (row == "missing tool")
            m_tools.Remove(QStringLiteral("wshutdown"));
        for (const char* file : {"/tmp/.newuser", "/tmp/.newuser.1"}) {
            unlink(file);
            if (row == "hand-over")
                WriteFile(QLatin1String(file), {});
        }
        const bool legacy = settings.startsWith('[');
        const QString path = m_folder.filePath(QStringLiteral("config.xml"));
        WriteFile(path,
                  "<config><user><system><systeminfo><uselegacyapplets>" + QByteArray(legacy ? "1" : "off")
                      + "</uselegacyapplets></systeminfo><security>"
                      + (legacy ? QByteArray() : StoreText(settings, false)) + "</security></system></user></config>");
        chmod(QFile::encodeName(path).constData(), row == "writable" ? 0666 : 0644);
        WriteFile(m_folder.filePath(QStringLiteral("registry.reg")), StoreText(settings, true));
        const Result result = Run("check");
        for (const QString& part : parts.split(QLatin1Char('|')))
            QVERIFY2(result.output.contains(part), qPrintable(result.output));
        const int findings = result.output.count(QLatin1String("\n- "));
        QTEST(findings, "findings");
        QCOMPARE(result.status, findings == 0 ? 0 : 1);
        QVERIFY2(result.error.isEmpty(), qPrintable(result.error));
        QVERIFY(!result.output.contains(QRegularExpression(QStringLiteral("secret|\\$y\\$|tb1:"))));
    }

    void SavedUser_data()
    {
        QTest::addColumn<QByteArray>("domain"); // what the fields of the file become
        QTest::newRow("whole") << QByteArray("example.org\n");
        for (const char* refused : {"missing", "link", "damaged", "cut off", "other key"})
            QTest::newRow(refused) << QByteArray();
    }

    void SavedUser()
    {
        QFETCH(QByteArray, domain);
        const QByteArray row = QTest::currentDataTag();
        unlink("/tmp/.user.1");
        LoginCfg(true).SaveUserFiles(QStringLiteral(u"j\u00f6rg"), QStringLiteral(u"p\u00e4,ss"),
                                     QStringLiteral("example.org"));
        QByteArray text = FileText(SavedFile);
        if (row == "damaged")
            text[text.size() - 5] = text.at(text.size() - 5) == 'A' ? 'B' : 'A';
        if (row == "cut off")
            text.truncate(text.lastIndexOf(",00,"));
        WriteFile(SavedFile, text);
        if (row == "missing" || row == "link")
            QVERIFY(QFile::rename(SavedFile, m_folder.filePath(QString::fromLatin1(row))));
        if (row == "link")
            QVERIFY(QFile::link(m_folder.filePath(QStringLiteral("link")), SavedFile));
        if (row == "other key")
            unlink(("/tmp/.tav3-" + QByteArray::number(getuid()) + ".key").constData());
        const Result result = Run("sso domain");
        QCOMPARE(result.output.toUtf8(), domain);
        QCOMPARE(result.status, domain.isEmpty() ? 1 : 0);
        QCOMPARE(result.error.isEmpty(), !domain.isEmpty());
        if (row == "whole") {
            QCOMPARE(Run("sso user").output, QStringLiteral(u"j\u00f6rg\n"));
            QCOMPARE(Run("sso password").output, QStringLiteral(u"p\u00e4,ss\n"));
        }
    }
};

QTEST_GUILESS_MAIN(TestTavctl)
#include "tst_tavctl.moc"
