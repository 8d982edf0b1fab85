// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <sys/stat.h>

namespace {

const QString Program = QStringLiteral(BUILD_DIR "/bin/tavctl");
const QString SavedFile = QStringLiteral("/tmp/.user.1");
const QMap<QString, QString> Sound{
    {QStringLiteral("remote"),
     QStringLiteral("<enableremoteauth>true</enableremoteauth><remoteauthserver>dc1.x dc2.x</remoteauthserver>"
                    "<remoteauthtype>LDAPS</remoteauthtype><remoteauthdomain>x</remoteauthdomain>"
                    "<remoteauthport>636</remoteauthport><reqcert>on</reqcert>")},
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
    QProcess process;
    process.start(Program, words.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    process.write(input);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    const QString error = QString::fromUtf8(process.readAllStandardError());
    const QString status = ended ? QString::number(process.exitCode()) : QStringLiteral("does not end");
    return {QStringLiteral("%1 %2").arg(status, error.section(QLatin1Char(' '), 0, 1)).trimmed(),
            QString::fromUtf8(process.readAllStandardOutput())};
}

// In a cell "%e4" is a byte, and "x*9" nine times that.
QByteArray Bytes(const char* column)
{
    const QStringList parts = Text(column).split(QLatin1Char('*'));
    return QByteArray::fromPercentEncoding(parts.first().toUtf8()).repeated(qMax(1, parts.last().toInt()));
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
                       {QStringLiteral("-qec"), Program + QStringLiteral(" hash"), QStringLiteral("/dev/null")});
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

    void Check_data() { LoadTable("tavctl.tsv"); }

    void Check()
    {
        FakeTools tools;
        for (const QString& tool : Text("tools").split(QLatin1Char(' ')))
            tools.InstallScript(tool, {});
        for (const QString& file : {QStringLiteral("/tmp/.newuser"), QStringLiteral("/tmp/.newuser.1")}) {
            QFile::remove(file);
            if (Flag("hand-over"))
                WriteFile(file, {});
        }
        const QString xml
            = QStringLiteral("<config><user><system><systeminfo><uselegacyapplets>%1</uselegacyapplets></systeminfo>"
                             "<security>%2</security></system></user></config>");
        const QLatin1String legacy(Text("registry").isEmpty() ? "off" : "1");
        const QString path = m_folder.filePath(QStringLiteral("config.xml"));
        WriteFile(path, xml.arg(legacy, Text("xml") + Sound.value(Text("sound settings"))).toUtf8());
        chmod(QFile::encodeName(path).constData(), Text("mode").toUInt(nullptr, 8));
        WriteFile(m_folder.filePath(QStringLiteral("registry.reg")), Text("registry").toUtf8());
        const auto [ending, output] = Run(QStringLiteral("check"));
        for (const QString& part : Text("parts of the report").split(QLatin1Char('|')))
            QVERIFY2(output.contains(part), qPrintable(output));
        QCOMPARE(QString::number(output.count(QLatin1String("\n- "))), Text("findings"));
        QCOMPARE(ending == QLatin1String("0"), Text("findings") == QLatin1String("0"));
        QVERIFY(!output.contains(QRegularExpression(QStringLiteral("secret|\\$y\\$|tb1:"))));
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
