// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/crypt.h"
#include "tav3/desktop.h"
#include "tav3/rdpcipher.h"
#include "tav3/regini.h"
#include "tav3/stringblur.h"
#include "tav3/xmlconfig.h"

#include <QDir>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString Missing = QStringLiteral("(missing)");
QStringList s_warnings;

void KeepWarning(QtMsgType, const QMessageLogContext&, const QString& text)
{
    s_warnings += text;
}

QByteArray Config(const QByteArray& inSecurity)
{
    return "<config>\n<user><system><security>" + inSecurity + "</security></system></user></config>";
}

void WriteFile(const QString& path, const QByteArray& bytes, QFile::Permissions mode = QFile::ReadOwner)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.setPermissions(mode));
}

} // namespace

class TestTav3 : public QObject {
    Q_OBJECT
    QScopedPointer<QTemporaryDir> m_folder;

    QByteArray Path(const char* name) const { return QFile::encodeName(m_folder->filePath(QLatin1String(name))); }

private slots:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        qputenv("XDG_RUNTIME_DIR", Path(""));
        qputenv("TAV3_CONFIG_DIR", Path(""));
        s_warnings.clear();
    }

    void Xml_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("truth");
        const auto row = [](const char* name, const QByteArray& xml, const QString& text, bool truth = false) {
            QTest::newRow(name) << xml << text << truth;
        };
        const QString on = QStringLiteral("on");
        row("true, blanks around", Config("<k>\n TRUE\t</k>"), QStringLiteral("TRUE"), true);
        row("yes", Config("<k>Yes</k>"), QStringLiteral("Yes"), true);
        row("1, blank inside", Config("<k>1 1</k>"), QStringLiteral("1 1"));
        row("text in pieces", Config("<k>&lt;<!-- --><![CDATA[&]]>\xc3\xa4</k>"), QStringLiteral(u"<&\u00e4"));
        row("other root, attributes", Config("<k a='1'>on</k>").replace("config>", "x:y>"), on, true);
        row("first of two", Config("<k>on</k><k>off</k>"), on, true);
        row("empty first of two", Config("<k/><k>on</k>"), QString());
        row("first across sections", Config("<k>on</k></security><security><k>off</k>"), on, true);
        row("missing key", Config("<K>on</K></security><k>on</k><security><a><k>on</k></a>"), Missing);
        row("warns: fault behind the key", Config("<k>on</k><j>secret</i>"), on, true);
        row("warns: cut off behind the key", Config("<k>on</k>").chopped(30), on, true);
        row("warns: text behind the end", Config("<k>on</k>") + "x", on, true);
        row("warns: fault in the key", Config("<k>secret<</k>"), Missing);
        row("warns: fault before the key", Config("<j>&secret</j><k>on</k>"), Missing);
        row("warns: not UTF-8", Config("<k>on</k><j>\xff</j>"), on, true);
        row("warns: unknown entity", Config("<k>&secret;on</k>"), Missing);
        row("warns: own entity", "<!DOCTYPE c [<!ENTITY e 'on'>\n]>" + Config("<k>&e;</k>"), Missing);
        row("warns: bottomless", Config("<k>on</k>" + QByteArray("<a>").repeated(100000)), on, true);
    }

    void Xml()
    {
        QFETCH(QByteArray, xml);
        const QString section = QStringLiteral("user/system/security");
        const auto handler = qInstallMessageHandler(KeepWarning);
        const TavXmlConfig config(xml, QStringLiteral("c.xml"));
        qInstallMessageHandler(handler);
        QTEST(config.GetConfig(section, QStringLiteral("k"), false, Missing, false), "text");
        QTEST(config.GetBoolValue(section, QStringLiteral("k")), "truth");
        QCOMPARE(s_warnings.size(), QByteArray(QTest::currentDataTag()).startsWith("warns: ") ? 1 : 0);
        const QRegularExpression place(QStringLiteral("^\"c.xml\" line 2 column \\d+ (?!.*secret)"));
        QVERIFY(s_warnings.isEmpty() || place.match(s_warnings.first()).hasMatch());
    }

    void ConfigFile()
    {
        const QString section = QStringLiteral("user/system/security");
        const auto handler = qInstallMessageHandler(KeepWarning);
        const TavXmlConfig missing;
        const int warnedOfMissing = s_warnings.size();
        mkfifo(Path("config.xml").constData(), 0600);
        const TavXmlConfig fifo; // must not wait for a writer
        qInstallMessageHandler(handler);
        QCOMPARE(warnedOfMissing, 0);
        QCOMPARE(s_warnings.size(), 1);
        unlink(Path("config.xml").constData());
        WriteFile(m_folder->filePath(QStringLiteral("config.xml")), Config("<k>on</k>"));
        QVERIFY(TavXmlConfig().GetBoolValue(section, QStringLiteral("k")));
    }

    void Registry_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QString>("text"); // with Missing as the default
        QTest::addColumn<int>("truth");    // -1: the default
        const auto row = [](const char* name, const char* lines, const char* text, int truth) {
            QTest::newRow(name) << QByteArray(lines) << (text ? QString::fromUtf8(text) : Missing) << truth;
        };
        row("escapes", R"("Name"="\\\"a\n\b")", R"(\"a\n\b)", 0);
        row("not Latin, blanks", R"("Name"=" $6$ä ")", " $6$ä ", 0);
        row("empty", R"("Name"="")", "", 0);
        row("any case, blanks around", " \"nAME\"=\"YES\" \t", "YES", 1);
        row("first of two, the malformed passed over", "\"Name\"=\"a\n\"Name\"=\"b\"\n\"NAME\"=\"c\"", "b", 0);
        row("comment, escaped name", ";\"Name\"=\"a\"\n\"\\\"Name\"=\"b\"\n\"Name\"=\"c\"", "c", 0);
        row("dword", R"("Name"=DWORD:fFFFFFFF)", nullptr, 1);
        row("dword 0", R"("Name"=dword:00000000)", nullptr, 0);
        row("no value", R"("Name"=)", nullptr, -1);
        row("no equals sign", R"("Name""a")", nullptr, -1);
        row("open quote", R"("Name"="a\")", nullptr, -1);
        row("text behind the quote", R"("Name"="a"x)", nullptr, -1);
        row("dword without digits", R"("Name"=dword:)", nullptr, -1);
        row("dword of nine digits", R"("Name"=dword:000000001)", nullptr, -1);
        row("dword with a sign", R"("Name"=dword:+1)", nullptr, -1);
        row("other kind", R"("Name"=hex:01)", nullptr, -1);
        row("value of another section", "[HKLM\\S\\T]\n\"Name\"=\"a\"", nullptr, -1);
        row("second part of the section", "[-HKLM\\S]\n\"Name\"=\"a\"\n[hklm\\s]\n\"Name\"=\"b\"", "b", 0);
    }

    void Registry()
    {
        QFETCH(QByteArray, lines);
        QFETCH(int, truth);
        const QString name = QStringLiteral("Name");
        const QByteArray bytes = "\xef\xbb\xbf[HKLM\\S]\r\nnoise\r\n" + lines.replace("\n", "\r\n");
        WriteFile(m_folder->filePath(QStringLiteral("registry.reg")), bytes);
        TavRegIni store;
        store.CloseKey();
        QCOMPARE(store.OpenKey(QStringLiteral("HKLM"), QStringLiteral("s"), 0x20019), 0);
        QTEST(store.GetSz(name, Missing), "text");
        QCOMPARE(store.GetBoolean(name, false), truth == 1);
        QCOMPARE(store.GetBoolean(name, true), truth != 0);
        QCOMPARE(store.OpenKey(QStringLiteral("HKLM"), QStringLiteral("S\\"), 0x20019), 2);
        QCOMPARE(store.GetSz(name, Missing), Missing);
        QCOMPARE(TavRegIni("[HKLM\\S").OpenKey(QStringLiteral("HKLM"), QStringLiteral("S"), 0x20019), 2);
    }

    void Blur()
    {
        for (const QString& text : {QString(), QStringLiteral(u"p\u00e4\u0441\U0001f511"), QString(5000, u'x')}) {
            const QString blurred = TavStringBlur::Encode(text);
            QVERIFY(blurred.startsWith(QLatin1String("tb1:")) && blurred != TavStringBlur::Encode(text));
            QVERIFY(!TavStringBlur::Decode(blurred).isNull());
            QCOMPARE(TavStringBlur::Decode(blurred), text);
            QVERIFY(TavStringBlur::Decode(QStringLiteral("tb2:") + blurred.mid(4)).isNull());
        }
        for (const char* other : {"", "tb1:", "pass", "$6$salt$hash", "tb1:$6$salt$hash"})
            QVERIFY(TavStringBlur::Decode(QLatin1String(other)).isNull());
    }

    void DamagedTextsAreRefused()
    {
        // Of this length both printed forms end in a character with spare bits.
        const QByteArray blurred = TavStringBlur::Encode(QStringLiteral("pass12")).toLatin1();
        const QByteArray printed = rdp_encrypt("pass12");
        const auto bothRefuse = [](const QByteArray& blur, const QByteArray& cipher) {
            return TavStringBlur::Decode(QString::fromLatin1(blur)).isNull() && !rdp_decrypt(cipher.constData());
        };
        for (int i = 0; i < printed.size(); ++i) {
            for (const char flip : {'\1', '\2', '\4', '\x60'}) {
                QByteArray blur = blurred;
                QByteArray cipher = printed;
                blur[i + 4] = static_cast<char>(blur.at(i + 4) ^ flip);
                cipher[i] = static_cast<char>(cipher.at(i) ^ flip);
                QVERIFY2(bothRefuse(blur, cipher), cipher.constData());
            }
            QVERIFY2(bothRefuse(blurred.left(i + 4), printed.left(i)), "cut off");
        }
        for (const char* more : {"A", "=", "\n"})
            QVERIFY2(bothRefuse(blurred + more, printed + more), more);
        QVERIFY(rdp_decrypt(printed.constData()));
        unlink(Path("tav3.key").constData());
        QVERIFY2(!rdp_decrypt(printed.constData()), "text of another key");
    }

    void Hash()
    {
        const QByteArray setting = crypt_make_salt();
        QVERIFY(setting != crypt_make_salt());
        const QByteArray hash = crypt_passwd("pass", setting.constData());
        QVERIFY(hash.startsWith(setting) && hash != crypt_passwd("Pass", hash.constData()));
        QCOMPARE(QByteArray(crypt_passwd("pass", hash.constData())), hash);
        for (const char* damaged : {"", "*0", "*1", "$9$x", "tb1:abc", "$y$"})
            QVERIFY2(!crypt_passwd("pass", damaged), damaged);
    }

    void Cipher()
    {
        const QRegularExpression alphabet(QStringLiteral("^[A-Za-z0-9_-]{54,}$"));
        for (const QByteArray& text : {QByteArray(""), QByteArray("p\xe4,00,ss"), QByteArray(4096, '\xff')}) {
            const QByteArray printed = rdp_encrypt(text.constData());
            QVERIFY(alphabet.match(QString::fromLatin1(printed)).hasMatch());
            QVERIFY(printed != rdp_encrypt(text.constData()));
            QCOMPARE(QByteArray(rdp_decrypt(printed.constData())), text);
        }
        const QByteArray tooLong(6000, 'x');
        QVERIFY(!rdp_encrypt(tooLong.constData()) && !rdp_decrypt(tooLong.constData()));
    }

    void KeyFile_data()
    {
        QTest::addColumn<bool>("usable");
        for (const char* good : {"none yet", "own"})
            QTest::newRow(good) << true;
        for (const char* bad : {"group", "others", "link", "dangling", "FIFO", "folder", "short", "long", "foreign"})
            QTest::newRow(bad) << false;
    }

    void KeyFile()
    {
        const QByteArray kind = QTest::currentDataTag();
        const QByteArray path = Path("tav3.key");
        const QString file = QFile::decodeName(kind == "link" ? Path("target") : path);
        if (kind == "FIFO")
            mkfifo(path.constData(), 0600);
        else if (kind == "folder")
            mkdir(path.constData(), 0700);
        else if (kind != "none yet" && kind != "dangling")
            WriteFile(file, QByteArray(kind == "short" ? 31 : kind == "long" ? 33 : 32, 'k'));
        if (kind == "link" || kind == "dangling")
            QCOMPARE(symlink(Path("target").constData(), path.constData()), 0);
        if (kind == "group" || kind == "others")
            QFile::setPermissions(file, QFile::ReadOwner | (kind == "group" ? QFile::ReadGroup : QFile::WriteOther));
        if (kind == "foreign" && chown(path.constData(), 12345, 12345) != 0)
            QSKIP("only root can give a file away");
        QFETCH(bool, usable);
        QCOMPARE(rdp_encrypt("pass") != nullptr, usable);
        // Neither a temporary file nor the target of a link was made.
        const auto all = QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot;
        QCOMPARE(QDir(m_folder->path()).entryList(all).size(), kind == "link" ? 2 : 1);
    }

    void KeyFileWithoutRuntimeFolder()
    {
        const QByteArray path = "/tmp/.tav3-" + QByteArray::number(geteuid()) + ".key";
        unlink(path.constData());
        qunsetenv("XDG_RUNTIME_DIR");
        const mode_t mask = umask(0);
        QVERIFY(rdp_encrypt("pass"));
        umask(mask);
        struct stat info { };
        QCOMPARE(lstat(path.constData(), &info), 0);
        QCOMPARE(info.st_mode, static_cast<mode_t>(S_IFREG | 0600));
        QCOMPARE(info.st_size, static_cast<off_t>(32));
        unlink(path.constData());
    }

    // Two processes that need the first key at the same time both get it, and it is the same one.
    void KeyFileOfTwoFirstUses()
    {
        for (int round = 0; round < 50; ++round) {
            int ends[2];
            char printed[200] = {};
            QCOMPARE(pipe(ends), 0);
            const pid_t child = fork();
            if (child == 0) {
                const char* sealed = rdp_encrypt("pass");
                _exit(sealed && write(ends[1], sealed, strlen(sealed)) > 0 ? 0 : 1);
            }
            const bool here = rdp_encrypt("pass");
            int status = 1;
            QCOMPARE(waitpid(child, &status, 0), child);
            QVERIFY(here && status == 0 && read(ends[0], printed, sizeof printed - 1) > 0 && rdp_decrypt(printed));
            close(ends[0]);
            close(ends[1]);
            unlink(Path("tav3.key").constData());
        }
    }

    void Window()
    {
        const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
        QWidget window;
        window.resize(200, 100);
        TavDesktop::InitWindowPosition(&window);
        QVERIFY((window.geometry().center() - area.center()).manhattanLength() <= 2);
        window.resize(area.size() * 2);
        TavDesktop::InitWindowPosition(&window);
        QVERIFY(area.contains(window.geometry()));
        TavDesktop::SetDefaultStyleSheet(&window);
        QVERIFY(window.styleSheet().contains(QLatin1Char('{')));
    }
};

QTEST_MAIN(TestTav3)
#include "tst_tav3.moc"
