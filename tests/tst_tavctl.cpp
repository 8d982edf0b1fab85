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

namespace {

const QString SavedFile = QStringLiteral("/tmp/.user.1");
const QMap<QString, QString> Sound{
    {QStringLiteral("sample"), // of the manual, which a release compares with it
     QString::fromUtf8(FileText(QStringLiteral(PROJECT_DIR "/terminal/config.xml.example")))},
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

// The tools of a terminal, which do nothing, for every user.
void InstallTools(FakeTools& tools)
{
    for (const char* name : {"ldapsearch", "send_event.sh", "wshutdown"})
        tools.InstallScript(QLatin1String(name), {});
    QVERIFY(ShellIn(tools.Path({}), QStringLiteral("chmod -R a+rX .")));
}

// The settings without those that a file has, as of two keys the first counts.
QString Without(const QString& file, QString settings)
{
    static const QRegularExpression key(QStringLiteral("<(\\w+)>"));
    for (auto match = key.globalMatch(file); match.hasNext();)
        settings.remove(QRegularExpression(QStringLiteral("<%1>.*?</%1>").arg(match.next().captured(1))));
    return settings;
}

// "{S" and "S}" stand for the sections on the way and back, "{NAME}" for sound settings, "{sample}" for a whole file.
QByteArray FileFrom(const QString& cell)
{
    QString file = cell;
    file.replace(QLatin1String("{S"), QLatin1String("<config><user><system><security>"))
        .replace(QLatin1String("S}"), QLatin1String("</security></system></user></config>"));
    for (auto sound = Sound.begin(); sound != Sound.end(); ++sound)
        file.replace(QLatin1Char('{') + sound.key() + QLatin1Char('}'), Without(cell, sound.value()));
    return file.toUtf8();
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
        qputenv("LDAPTLS_CACERT", QFile::encodeName(m_folder.filePath(QStringLiteral("ca.pem"))));
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

    // Root can also look with the rights of another user.
    void Check()
    {
        FakeTools tools;
        InstallTools(tools);
        const QString folder = m_folder.path();
        if (!Text("words").isEmpty() && !ShellIn(folder, QStringLiteral("setpriv --reuid nobody --clear-groups true")))
            QSKIP("only root can take the rights of another user");
        ShellIn(folder,
                QStringLiteral("rm -f * && cd /tmp && rm -f .newuser .newuser.1 .user .user.1 .tav3-65534.key "
                               "AdPwdTest.log QormLoginDebug.log config/files/QXlogin.log"));
        if (!Text("file").isNull())
            WriteFile(m_folder.filePath(QStringLiteral("config.xml")), FileFrom(Text("file")));
        WriteFile(m_folder.filePath(QStringLiteral("registry.reg")), Text("registry").toUtf8());
        QVERIFY(ShellIn(folder, QStringLiteral("touch ca.pem; chmod 644 *\n") + Text("prepare")));
        const auto [ending, output] = Run(QStringLiteral("check ") + Text("words"));
        const auto strict = Run(QStringLiteral("check --strict ") + Text("words")).ending;
        ShellIn(folder, QStringLiteral("chown \"$(id -u)\" . && chmod 755 ."));
        for (const QString& part : Text("parts of the report").split(QLatin1Char('|')))
            QVERIFY2(output.contains(part), qPrintable(output));
        QCOMPARE(CodesIn(output), Text("findings"));
        const bool hasError = output.contains(QLatin1String("\n- error: "));
        QCOMPARE(ending == QLatin1String("0"), !hasError);
        QCOMPARE(strict == QLatin1String("0"), !hasError && !output.contains(QLatin1String("\n- warning: ")));
        QVERIFY(!output.contains(QRegularExpression(QStringLiteral("secret|\\$y\\$|tb1:"))));
    }

    // The form is for other programs, and documented. Of a terminal without a tool, whose client takes any certificate.
    void Json()
    {
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", "/nowhere");
        qputenv("LDAPTLS_REQCERT", "never");
        WriteFile(m_folder.filePath(QStringLiteral("config.xml")), FileFrom(QStringLiteral("{S{remote}S}")));
        const QJsonObject report
            = QJsonDocument::fromJson(Run(QStringLiteral("check --json")).output.toUtf8()).object();
        qputenv("PATH", path);
        qunsetenv("LDAPTLS_REQCERT");
        QCOMPARE(Joined(report.keys(), ' '), QStringLiteral("facts findings format verb version"));
        QCOMPARE(report[QStringLiteral("format")].toInt(), 1);
        QVERIFY(report[QStringLiteral("facts")].toObject().contains(QStringLiteral("no argument")));
        QStringList findings;
        for (const QJsonValue& finding : report[QStringLiteral("findings")].toArray())
            findings += Joined(
                {finding[QStringLiteral("grade")].toString(), finding[QStringLiteral("code")].toString()}, ':');
        QCOMPARE(Joined(findings),
                 QStringLiteral("error:client-missing|warning:certificate-not-demanded|note:wshutdown-missing|"
                                "note:event-script-missing"));
        const QJsonValue second = report[QStringLiteral("findings")].toArray().at(1);
        QVERIFY(second[QStringLiteral("sentence")].toString().contains(QLatin1String("TLS_REQCERT is never")));
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
