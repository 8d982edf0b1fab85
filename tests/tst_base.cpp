// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "app/debuglog.h"
#include "base/childprocess.h"
#include "base/guardedfile.h"
#include "base/hardening.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"

#include <QDir>
#include <QTest>
#include <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString LogFile = QStringLiteral("/tmp/QormLoginDebug.log");
const QString Marker = QStringLiteral("/tmp/debug-login");
const QByteArray FirstLine = "Debug: \"/bin/gate\" (:0)\n";

bool Shell(const QString& command)
{
    return QProcess::execute(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command}) == 0;
}

// As a user who may run two processes only; the second stands for all the others that this user has.
int TryWithoutFork()
{
    const struct rlimit two {
        2, 2
    };
    if (qgetenv("GATE_SANDBOX") != "namespaces" || setrlimit(RLIMIT_NPROC, &two) != 0 || setuid(65534) != 0)
        return SkipCode;
    const pid_t bystander = fork();
    if (bystander == 0)
        pause();
    ChildOutput output;
    ChildProcess process(new QProcess);
    const bool ran = RunChild(*process, QStringLiteral("/bin/true"), {}, 1000, 1000, output);
    process.reset();
    const bool spared = waitpid(bystander, nullptr, WNOHANG) == 0;
    kill(bystander, SIGKILL);
    return ran || !spared;
}

int TryHardening()
{
    struct rlimit core = {1, RLIM_INFINITY};
    setrlimit(RLIMIT_CORE, &core);
    const bool hardened = HardenProcess() && getrlimit(RLIMIT_CORE, &core) == 0 && core.rlim_cur == 0;
    return !hardened || prctl(PR_GET_DUMPABLE) != 0;
}

} // namespace

class TestBase : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { AbortOnConnectWarnings(); }

    void GuardedFile_data() { LoadTable("base.tsv"); }

    void GuardedFile()
    {
        const bool readable = Flag("readable");
        const bool writable = Flag("writable");
        for (const GuardedMode mode : {GuardedMode::Read, GuardedMode::Append, GuardedMode::Truncate}) {
            const QTemporaryDir folder;
            if (!Shell(QStringLiteral("cd %1 && %2").arg(folder.path(), Text("prepare"))))
                QSKIP("needs the rights of root");
            const QString path = folder.filePath(QStringLiteral("file"));
            const QString other = folder.filePath(QStringLiteral("other"));
            const QByteArray before = readable ? FileText(path) : QByteArray();
            const QByteArray otherBefore = FileText(other);
            QFile file(path);
            QCOMPARE(OpenGuarded(file, mode), mode == GuardedMode::Read ? readable : writable);
            if (mode == GuardedMode::Read) {
                QCOMPARE(ReadGuarded(path, 3), before.left(3));
            } else if (writable) {
                QVERIFY(file.write("new") == 3 && file.flush());
                QCOMPARE(FileText(path), (mode == GuardedMode::Append ? before : QByteArray()) + "new");
                QCOMPARE(ModeOf(path), 0600U);
            }
            QCOMPARE(FileText(other), otherBefore);
        }
    }

    void Child_data() { LoadTable("base.tsv"); }

    void Child()
    {
        const QString output = Text("output"); // both channels, one behind the other; null: any
        const bool mayRun = Flag("ran") || output.isNull();
        ChildOutput result;
        ChildProcess process(new QProcess);
        pid_t id = 0;
        connect(process.get(), &QProcess::started, [&] { id = static_cast<pid_t>(process->processId()); });
        const QStringList arguments{QStringLiteral("-c"), Text("script")};
        QCOMPARE(RunChild(*process, Text("program"), arguments, 1000, mayRun ? 60000 : 1500, result), Flag("ran"));
        if (!output.isNull())
            QCOMPARE(result.standardOutput + result.standardError, output.toUtf8());
        process.reset();
        QVERIFY(id == 0 || kill(id, 0) == -1); // nothing is left of it
    }

    void FailedForkKillsNobody()
    {
        const int code = ForkedCode(TryWithoutFork);
        if (code == SkipCode)
            QSKIP("needs the rights of root, in a sandbox");
        QCOMPARE(code, 0);
    }

    void Hardening() { QCOMPARE(ForkedCode(TryHardening), 0); }

    void DebugLog()
    {
        QFile::remove(Marker);
        QFile::remove(LogFile);
        const auto installs = [] {
            TakeMessages();
            InstallDebugLog(QStringLiteral("/bin/gate"));
            const bool installed = qInstallMessageHandler(nullptr) == DebugMessageHandler;
            AbortOnConnectWarnings();
            return installed;
        };
        QVERIFY(!installs()); // not asked for
        QVERIFY(!QFile::exists(LogFile));
        WriteFile(Marker, {});
        QVERIFY(QDir().mkdir(LogFile));
        QVERIFY(installs()); // can't be opened: what follows is dropped
        QCOMPARE(TakeMessages(), QStringList(QStringLiteral("Failed to open log file for writing")));
        QVERIFY(QDir().rmdir(LogFile));
        for (int run = 1; run <= 2; ++run) { // each appends
            QVERIFY(installs());
            QCOMPARE(TakeMessages(), QStringList(QStringLiteral("logfile opened")));
            QCOMPARE(FileText(LogFile), FirstLine.repeated(run));
        }
    }

    void DebugLine_data() { LoadTable("base.tsv"); }

    void DebugLine()
    {
        const auto type = QtMsgType(Text("type").toInt());
        WriteFile(Marker, {});
        QFile::remove(LogFile);
        const int code = ForkedCode([type] {
            InstallDebugLog(QStringLiteral("/bin/gate"));
            DebugMessageHandler(type, QMessageLogContext("a.cpp", 7, "f", "default"), Text("message"));
            return 0;
        });
        QCOMPARE(code, type == QtFatalMsg ? -SIGABRT : 0);
        QTEST(QString::fromUtf8(FileText(LogFile).mid(FirstLine.size())), "line");
    }
};

QTEST_GUILESS_MAIN(TestBase)
#include "tst_base.moc"
