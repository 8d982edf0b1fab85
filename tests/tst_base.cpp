// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "app/debuglog.h"
#include "base/guardedfile.h"
#include "base/hardening.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"

#include <QTest>
#include <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace {

bool Write(const QString& path, char mode, const QByteArray& bytes)
{
    if (mode == 'r')
        return ReplaceGuarded(path, bytes);
    QFile file(path);
    return OpenGuarded(file, mode == 'a' ? GuardedMode::Append : GuardedMode::Truncate) && file.write(bytes) > 0;
}

} // namespace

class TestBase : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { AbortOnConnectWarnings(); }

    void GuardedFile_data() { LoadTable("base.tsv"); }

    // "append", "truncate" and "replace" are what stands in the file after "new" was written so.
    void GuardedFile()
    {
        for (const char* mode : {"append", "truncate", "replace"}) {
            const QTemporaryDir folder;
            if (!ShellIn(folder.path(), Text("prepare")))
                QSKIP("needs the rights of root");
            const QString path = folder.filePath(QStringLiteral("file"));
            QCOMPARE(ReadGuarded(path, 3), Text("read").toUtf8());
            const bool written = Write(path, *mode, "new");
            QCOMPARE(written ? FileText(path) : "refused", Text(mode).toUtf8());
            QVERIFY(!written || ModeOf(path) == 0600);
            QVERIFY(ShellIn(folder.path(), QStringLiteral("! ls file.*"))); // nothing temporary is left
            QCOMPARE(FileText(folder.filePath(QStringLiteral("other"))), Text("other").toUtf8());
        }
    }

    void Hardening()
    {
        const int code = ForkedCode([] {
            struct rlimit core = {1, RLIM_INFINITY};
            setrlimit(RLIMIT_CORE, &core);
            const bool hardened = HardenProcess() && prctl(PR_GET_DUMPABLE) == 0;
            return hardened && getrlimit(RLIMIT_CORE, &core) == 0 && core.rlim_cur == 0 ? 0 : 1;
        });
        QCOMPARE(code, 0);
    }

    void DebugLog_data() { LoadTable("base.tsv"); }

    // "told" is what goes to standard error at the start.
    void DebugLog()
    {
        QVERIFY(ShellIn(QStringLiteral("/tmp"),
                        QStringLiteral("rm -rf debug-login QormLoginDebug.log; ") + Text("prepare")));
        const auto type = QtMsgType(Text("type").toInt());
        const int code = ForkedCode([type] {
            InstallDebugLog(QStringLiteral("/bin/gate"));
            const bool told = Joined(TakeMessages()) == Text("told");
            const QtMessageHandler installed = qInstallMessageHandler(nullptr);
            installed(type, QMessageLogContext("a.cpp", 7, "f", "default"), Text("message"));
            return told ? 0 : 1;
        });
        QCOMPARE(code, type == QtFatalMsg ? -SIGABRT : 0);
        QTEST(QString::fromUtf8(FileText(QStringLiteral("/tmp/QormLoginDebug.log"))), "log");
    }
};

QTEST_GUILESS_MAIN(TestBase)
#include "tst_base.moc"
