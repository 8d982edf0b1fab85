// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"
#include "tavctl/report.h"
#include "tests/support/table.h"
#include "tests/support/tavctlrun.h"
#include "tests/support/testsupport.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString SavedFile = QStringLiteral("/tmp/.user.1");
const QMap<QString, QString> Sound{
    {QStringLiteral("remote"),
     QStringLiteral("<enableremoteauth>true</enableremoteauth><remoteauthserver>dc1.x dc2.x</remoteauthserver>"
                    "<remoteauthtype>LDAPS</remoteauthtype><remoteauthdomain>x</remoteauthdomain>"
                    "<remoteauthport>636</remoteauthport><reqcert>on</reqcert>")},
    {QStringLiteral("directory"),
     QStringLiteral("<remoteauthserver>dc1.x</remoteauthserver><remoteauthtype>LDAPS</remoteauthtype>"
                    "<remoteauthdomain>x</remoteauthdomain><remoteauthport>636</remoteauthport>"
                    "<reqcert>on</reqcert>")},
    {QStringLiteral("local"),
     QStringLiteral("<enablelocalauth>on</enablelocalauth><enableterminalpass>on</enableterminalpass>"
                    "<localauthpass>%1</localauthpass><terminalpass>%1</terminalpass>")
         .arg(QStringLiteral("$y$j9T$RMbVWb3.4s7wYIKsWaSib0$5UII5Rfv3vkumkYkSgYGydHy2qPJyuCkfEznUyp.pR1"))}};

struct Result {
    QString ending; // the status and the first two words of what it complains of
    QString output;
};

Result Run(const QString& words, const QByteArray& input = {})
{
    const auto [status, output, error] = RunTavctl(words.split(QLatin1Char(' '), Qt::SkipEmptyParts), input);
    return {QStringLiteral("%1 %2").arg(status).arg(error.section(QLatin1Char(' '), 0, 1)).trimmed(), output};
}

// In a cell "%e4" is a byte, and "x*9" nine times that.
QByteArray Bytes(const char* column)
{
    const QStringList parts = Text(column).split(QLatin1Char('*'));
    return QByteArray::fromPercentEncoding(parts.first().toUtf8()).repeated(qMax(1, parts.last().toInt()));
}

const QString AllTools = QStringLiteral("ldapsearch send_event.sh wshutdown");

// Tools that do nothing, for every user.
void InstallTools(FakeTools& tools, const QString& names)
{
    for (const QString& name : names.split(QLatin1Char(' ')))
        tools.InstallScript(name, {});
    QVERIFY(ShellIn(tools.Path({}), QStringLiteral("chmod -R a+rX .")));
}

// The settings without those that a row has, as of two keys the first counts.
QString Without(const QString& keys, QString settings)
{
    static const QRegularExpression key(QStringLiteral("<(\\w+)>"));
    for (auto match = key.globalMatch(keys); match.hasNext();)
        settings.remove(QRegularExpression(QStringLiteral("<%1>.*?</%1>").arg(match.next().captured(1))));
    return settings;
}

bool Opens(const QString& stored, const QString& password)
{
    LoginCfg cfg(true);
    cfg.terminalPassword = stored;
    return !stored.isEmpty() && cfg.CheckLocalPassword(password) && !cfg.CheckLocalPassword(password.chopped(1));
}

} // namespace

class TestTavctl : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        qputenv("TAV3_CONFIG_DIR", QFile::encodeName(m_folder.path()));
        chmod(QFile::encodeName(m_folder.path()).constData(), 0755);
        QVERIFY(QDir().mkpath(QStringLiteral("/tmp/config/files")));
    }

    void Password_data() { LoadTable("tavctl.tsv"); }

    void Password()
    {
        const auto [ending, output] = Run(Text("words"), Bytes("input"));
        QCOMPARE(ending, Text("ending"));
        QCOMPARE(Opens(output.trimmed(), QString::fromUtf8(Bytes("password"))), ending.startsWith(QLatin1Char('0')));
        QCOMPARE(output.isEmpty(), Text("password").isEmpty());
    }

    void Told_data() { LoadTable("tavctl.tsv"); }

    void Told()
    {
        const auto [ending, output] = Run(Text("words"));
        QCOMPARE(ending, QStringLiteral("0"));
        QVERIFY2(output.startsWith(Text("begin")), qPrintable(output));
    }

    void Terminal_data() { LoadTable("tavctl.tsv"); }

    void Terminal()
    {
        QProcess terminal;
        terminal.start(QStringLiteral("script"),
                       {QStringLiteral("-qec"), TavctlProgram + QStringLiteral(" hash"), QStringLiteral("/dev/null")});
        QByteArray shown;
        for (const auto& [prompt, column] :
             {std::pair("Password: ", "typed"), std::pair("Password again: ", "again")}) {
            QTRY_VERIFY((shown += terminal.readAll()).endsWith(prompt));
            terminal.write(Text(column).toUtf8() + '\n');
        }
        QVERIFY(terminal.waitForFinished());
        shown += terminal.readAll();
        QVERIFY2(!shown.contains("secret"), shown.constData());
        QCOMPARE(terminal.exitCode(), Flag("same") ? 0 : 1);
        const auto hash = QRegularExpression(QStringLiteral("\\$\\S+")).match(QString::fromUtf8(shown));
        QCOMPARE(Opens(hash.captured(), Text("typed")), Flag("same"));
    }

    // The one of the manual, which a release compares with it: no error and no warning.
    void SampleConfiguration()
    {
        FakeTools tools;
        InstallTools(tools, AllTools);
        WriteFile(m_folder.filePath(QStringLiteral("config.xml")),
                  FileText(QStringLiteral(PROJECT_DIR "/terminal/config.xml.example")));
        const auto [ending, output] = Run(QStringLiteral("check --strict"));
        QVERIFY2(ending == QLatin1String("0"), qPrintable(output));
    }

    // With its code, its grade, and the words between the places of its arguments.
    void EveryFindingStandsInTheManual()
    {
        const QString manual = QString::fromUtf8(FileText(QStringLiteral(PROJECT_DIR "/docs/man/tavctl.1")))
                                   .replace(QStringLiteral("\\(dq"), QStringLiteral("\""))
                                   .replace(QStringLiteral("\\[rs]"), QStringLiteral("\\"));
        for (const Wording& wording : Wordings()) {
            const QString entry = manual.section(QStringLiteral("\n.B %1\n").arg(QLatin1String(wording.code)), 1)
                                      .section(QStringLiteral("\n.TP"), 0, 0)
                                      .simplified();
            const char* const grades[] = {"Error", "Warning", "Note"};
            QVERIFY2(entry.startsWith(QLatin1String(grades[static_cast<int>(wording.grade)])), wording.code);
            const QString sentence = QString::fromUtf8(wording.sentence);
            for (const QString& words : sentence.split(QRegularExpression(QStringLiteral("%\\d"))))
                QVERIFY2(entry.contains(words.simplified()), wording.code);
        }
    }

    void Check_data() { LoadTable("tavctl.tsv"); }

    void Check()
    {
        FakeTools tools;
        InstallTools(tools, Text("tools"));
        for (const QString& file : {QStringLiteral("/tmp/.newuser"), QStringLiteral("/tmp/.newuser.1")}) {
            QFile::remove(file);
            if (Flag("hand-over") || (Text("hand-over") == QLatin1String("half") && !file.endsWith(QLatin1Char('1'))))
                WriteFile(file, {});
        }
        const QString xml
            = QStringLiteral("<config><user><system><systeminfo><uselegacyapplets>%1</uselegacyapplets></systeminfo>"
                             "<security>%2</security></system></user></config>");
        const QLatin1String legacy(Text("registry").isEmpty() ? "off" : "1");
        const QString path = m_folder.filePath(QStringLiteral("config.xml"));
        WriteFile(path,
                  xml.arg(legacy, Text("xml") + Without(Text("xml"), Sound.value(Text("sound settings")))).toUtf8());
        chmod(QFile::encodeName(path).constData(), Text("mode").toUInt(nullptr, 8));
        WriteFile(m_folder.filePath(QStringLiteral("registry.reg")), Text("registry").toUtf8());
        const auto [ending, output] = Run(QStringLiteral("check"));
        for (const QString& part : Text("parts of the report").split(QLatin1Char('|')))
            QVERIFY2(output.contains(part), qPrintable(output));
        QCOMPARE(CodesIn(output), Text("findings"));
        QCOMPARE(ending == QLatin1String("0"), !output.contains(QLatin1String("\n- error: ")));
        QVERIFY(!output.contains(QRegularExpression(QStringLiteral("secret|\\$y\\$|tb1:"))));
    }

    void Form_data() { LoadTable("tavctl.tsv"); }

    // Files as a whole. "{S" and "S}" stand for the sections on the way and back, "{L}" for the settings of a
    // directory.
    void Form()
    {
        FakeTools tools;
        InstallTools(tools, AllTools);
        const QString path = m_folder.filePath(QStringLiteral("config.xml"));
        QString xml = Text("file");
        xml.replace(QLatin1String("{S"), QLatin1String("<config><user><system><security>"))
            .replace(QLatin1String("S}"), QLatin1String("</security></system></user></config>"))
            .replace(QLatin1String("{L}"), Sound.value(QStringLiteral("directory")));
        QFile::remove(path);
        if (!Text("file").isNull())
            WriteFile(path, xml.toUtf8());
        const auto [ending, output] = Run(QStringLiteral("check"));
        QVERIFY2(output.contains(Text("part of the report")), qPrintable(output));
        QCOMPARE(CodesIn(output), Text("findings"));
        QCOMPARE(ending == QLatin1String("0"), !output.contains(QLatin1String("\n- error: ")));
        const bool isStrictlyGood = Run(QStringLiteral("check --strict")).ending == QLatin1String("0");
        QCOMPARE(isStrictlyGood, !output.contains(QRegularExpression(QStringLiteral("- (error|warning): "))));
    }

    // What root sees, and what it sees with the rights of another user.
    void OfAnotherUser_data() { LoadTable("tavctl.tsv"); }

    void OfAnotherUser()
    {
        FakeTools tools;
        InstallTools(tools, AllTools);
        WriteFile(m_folder.filePath(QStringLiteral("config.xml")),
                  "<config><user><system><security>" + Sound.value(QStringLiteral("remote")).toUtf8()
                      + "</security></system></user></config>");
        if (!ShellIn(m_folder.path(), QStringLiteral("setpriv --reuid nobody --clear-groups true")))
            QSKIP("only root can take the rights of another user");
        QVERIFY(ShellIn(m_folder.path(), Text("prepare")));
        const auto [ending, output] = Run(QStringLiteral("check ") + Text("words"));
        QVERIFY(ShellIn(
            m_folder.path(),
            QStringLiteral("rm -f /tmp/.user.1 && chown 0:0 . config.xml && chmod 755 . && chmod 644 config.xml")));
        QVERIFY2(output.startsWith(Text("first line")), qPrintable(output));
        QCOMPARE(CodesIn(output), Text("findings"));
        QCOMPARE(ending, Text("ending"));
    }

    // The form is for other programs, and documented.
    void Json()
    {
        FakeTools tools;
        InstallTools(tools, AllTools);
        WriteFile(m_folder.filePath(QStringLiteral("config.xml")), "<config/>");
        const QJsonObject report
            = QJsonDocument::fromJson(Run(QStringLiteral("check --json")).output.toUtf8()).object();
        QCOMPARE(report.keys(),
                 QStringList({QStringLiteral("facts"), QStringLiteral("findings"), QStringLiteral("format"),
                              QStringLiteral("verb"), QStringLiteral("version")}));
        QCOMPARE(report[QStringLiteral("format")].toInt(), 1);
        QVERIFY(report[QStringLiteral("facts")].toObject().contains(QStringLiteral("no argument")));
        const QJsonObject first = report[QStringLiteral("findings")].toArray().first().toObject();
        QCOMPARE(first[QStringLiteral("grade")].toString(), QStringLiteral("error"));
        QCOMPARE(first[QStringLiteral("code")].toString(), QStringLiteral("section-missing"));
        QVERIFY(first[QStringLiteral("sentence")].toString().contains(QLatin1String("user/system/security")));
    }

    void Directory_data() { LoadTable("tavctl.tsv"); }

    // A directory that answers oddly, by a stand-in; nothing listens behind its name.
    void Directory()
    {
        FakeTools tools;
        tools.InstallScript(QStringLiteral("ldapsearch"), Text("client").toUtf8());
        WriteFile(m_folder.filePath(QStringLiteral("config.xml")),
                  "<config><user><system><security>" + Text("xml").toUtf8()
                      + "<remoteauthserver>127.0.0.1</remoteauthserver></security></system></user></config>");
        const auto [ending, output] = Run(Text("words"), "secret\n");
        QVERIFY2(output.contains(Text("part of the report")), qPrintable(output));
        QCOMPARE(CodesIn(output), Text("findings"));
        QCOMPARE(ending, Text("ending"));
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/AdPwdTest.log")));
        QVERIFY(!output.contains(QLatin1String("secret")));
    }

    void Completion_data() { LoadTable("tavctl.tsv"); }

    void Completion()
    {
        QProcess bash;
        bash.start(QStringLiteral("bash"),
                   {QStringLiteral("-c"),
                    QStringLiteral(". " PROJECT_DIR "/tavctl/tavctl.bash; COMP_WORDS=(%1 '%2'); "
                                   "COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tavctl; echo \"${COMPREPLY[*]}\"")
                        .arg(Text("words"), Text("begun"))});
        QVERIFY(bash.waitForFinished());
        QCOMPARE(QString::fromUtf8(bash.readAllStandardOutput()).trimmed(), Text("choice"));
    }

    void SavedUser_data() { LoadTable("tavctl.tsv"); }

    void SavedUser()
    {
        const QString moved = m_folder.filePath(QString::fromLatin1(QTest::currentDataTag()));
        QFile::remove(SavedFile);
        LoginCfg(true).SaveUserFiles(QStringLiteral("jörg"), QStringLiteral("pä,ss"), QStringLiteral("example.org"));
        QFile::resize(SavedFile, QFileInfo(SavedFile).size() * Text("per cent").toInt() / 100);
        QVERIFY(Text("found") == QLatin1String("file") || QFile::rename(SavedFile, moved));
        QVERIFY(Text("found") != QLatin1String("link") || QFile::link(moved, SavedFile));
        const auto [ending, output] = Run(Text("words"));
        QCOMPARE(ending, Text("ending"));
        QCOMPARE(output, Text("output"));
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(TestTavctl)
#include "tst_tavctl.moc"
