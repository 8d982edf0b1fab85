// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/desktop.h"
#include "tav3/rdpcipher.h"
#include "tav3/regini.h"
#include "tav3/xmlconfig.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>
#include <QWidget>
#include <sys/wait.h>
#include <unistd.h>

const QString Missing = QStringLiteral("(missing)");

// What holds of sealed texts, the fuzz targets see to.
class TestTav3 : public QObject {
    Q_OBJECT
    QScopedPointer<QTemporaryDir> m_folder;

private slots:
    void initTestCase() { AbortOnConnectWarnings(); }

    void init()
    {
        m_folder.reset(new QTemporaryDir);
        qputenv("TAV3_CONFIG_DIR", QFile::encodeName(m_folder->path()));
        TakeMessages();
    }

    void Xml_data() { LoadTable("tav3.tsv"); }

    void Xml()
    {
        QVERIFY(ShellIn(m_folder->path(), Text("prepare")));
        const TavXmlConfig config;
        QTEST(config.GetConfig(QStringLiteral("a/b"), QStringLiteral("k"), false, Missing, false), "text");
        QCOMPARE(config.GetBoolValue(QStringLiteral("a/b"), QStringLiteral("k")), Flag("truth"));
        const QRegularExpression column(QStringLiteral("column \\d+"));
        QTEST(Joined(TakeMessages()).remove(m_folder->path()).replace(column, QStringLiteral("column N")), "warning");
    }

    void Registry_data() { LoadTable("tav3.tsv"); }

    // A truth of neither "yes" nor "no" is the given default; a byte-order mark may stand before everything.
    void Registry()
    {
        const QString name = QStringLiteral("Name");
        QCOMPARE(TavRegIni().OpenKey(QStringLiteral("HKLM"), QStringLiteral("S"), 0), 2); // no file
        for (const char* mark : {"", "\xef\xbb\xbf"}) {
            const QByteArray bytes = mark + QByteArray("[HKLM\\S]\nnoise\n") + Text("lines").toUtf8();
            WriteFile(m_folder->filePath(QStringLiteral("registry.reg")), QByteArray(bytes).replace("\n", "\r\n"));
            TavRegIni store;
            QCOMPARE(store.OpenKey(QStringLiteral("HKLM"), QStringLiteral("s"), 0), 0);
            QCOMPARE(store.GetSz(name, Missing), Text("text"));
            QCOMPARE(store.GetBoolean(name, false), Text("truth") == QLatin1String("yes"));
            QCOMPARE(store.GetBoolean(name, true), Text("truth") != QLatin1String("no"));
            QCOMPARE(store.OpenKey(QStringLiteral("HKLM"), QStringLiteral("S\\"), 0), 2);
            QCOMPARE(store.GetSz(name, Missing), Missing);
        }
    }

    void KeyFile_data() { LoadTable("tav3.tsv"); }

    // "key" in the table is the name of the key file.
    void KeyFile()
    {
        const QString inTmp = QStringLiteral("key=.tav3-$(id -u).key; %1");
        const auto named = [](QString text) { return text.replace(QStringLiteral("key"), QStringLiteral("$key")); };
        QVERIFY(ShellIn(QStringLiteral("/tmp"), inTmp.arg(QStringLiteral("rm -rf $key*"))));
        if (!ShellIn(QStringLiteral("/tmp"), inTmp.arg(named(Text("prepare")))))
            QSKIP("only root can give a file away");
        QVERIFY(!rdp_decrypt("AAAA")); // makes no key
        const QString files = QStringLiteral("[ \"$(ls -dA $key*)\" = \"%1\" ]");
        QCOMPARE(ShellIn(QStringLiteral("/tmp"), inTmp.arg(files.arg(named(Text("files"))))),
                 Text("prepare") != QLatin1String(":"));
        QCOMPARE(rdp_encrypt("pass") != nullptr, Flag("usable"));
        // Neither a temporary file nor the target of a link was made.
        QVERIFY(ShellIn(QStringLiteral("/tmp"), inTmp.arg(files.arg(named(Text("files"))))));
    }

    // Two processes that need the first key at the same time get the same one.
    void KeyFileOfTwoFirstUses()
    {
        ShellIn(QStringLiteral("/tmp"), QStringLiteral("rm -rf .tav3-$(id -u).key"));
        const QString file = m_folder->filePath(QStringLiteral("sealed"));
        for (int round = 0; round < 50; ++round) {
            const pid_t child = fork();
            const QByteArray sealed = rdp_encrypt("pass");
            if (child == 0) {
                WriteFile(file, sealed);
                _exit(0);
            }
            QCOMPARE(waitpid(child, nullptr, 0), child);
            QVERIFY(!sealed.isEmpty() && rdp_decrypt(FileText(file).constData()));
            QVERIFY(ShellIn(QStringLiteral("/tmp"), QStringLiteral("rm .tav3-$(id -u).key")));
        }
    }

    void WindowPosition()
    {
        const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
        QWidget window;
        window.resize(200, 100);
        TavDesktop::InitWindowPosition(&window);
        QVERIFY((window.geometry().center() - area.center()).manhattanLength() <= 2);
        window.resize(area.size() * 2);
        TavDesktop::InitWindowPosition(&window);
        QVERIFY(area.contains(window.geometry()));
        window.resize(200, 100);
        window.setMaximumHeight(area.height()); // which leaves no other place to grow
        TavDesktop::InitWindowPosition(&window);
        QCOMPARE(window.y(), area.y());
    }
};

QTEST_MAIN(TestTav3)
#include "tst_tav3.moc"
