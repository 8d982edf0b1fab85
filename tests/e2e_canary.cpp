// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// Passwords that stand nowhere else go through every flow against the real domain controller. Then whatever was written
// is searched for them.
#include "tav3/stringblur.h"
#include "tests/support/gatedriver.h"
#include "tests/support/testsupport.h"

#include <QDirIterator>
#include <QTest>
#include <QTextCodec>
#include <csignal>
#include <sys/stat.h>

namespace {

const QString Mark = QStringLiteral("Canary"); // begins each of them
const QString Output = QStringLiteral("/tmp/output");
const QString CoreFolder = QStringLiteral("/tmp/cores");
const QStringList Writable{QStringLiteral("/tmp"),           QStringLiteral("/run"),
                           QStringLiteral("/dev/shm"),       QStringLiteral("/etc/samba"),
                           QStringLiteral("/var/lib/samba"), QStringLiteral("/var/log/samba")};

// A core file may be written in the folder, and all that the program says goes to a file.
QStringList Wrapper()
{
    const QString script = QStringLiteral("cd %1; ulimit -c unlimited; exec \"$@\" >> %2 2>&1").arg(CoreFolder, Output);
    return {QStringLiteral("sh"), QStringLiteral("-c"), script, QStringLiteral("sh")};
}

bool HoldsCanary(const QByteArray& bytes)
{
    for (const char* encoding : {"UTF-8", "UTF-16LE", "UTF-16BE"}) // of ASCII, the first is Latin-1 too
        if (bytes.contains(
                QTextCodec::codecForName(encoding)->makeEncoder(QTextCodec::IgnoreHeader)->fromUnicode(Mark)))
            return true;
    return false;
}

// The regular files that hold a canary: in the folders that can be written, and behind the descriptors of a process.
QStringList Leaks(pid_t process = 0)
{
    QStringList folders = Writable;
    if (process != 0)
        folders += QStringLiteral("/proc/%1/fd").arg(process);
    QStringList leaks;
    for (const QString& folder : folders) {
        QDirIterator entries(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            const QString path = entries.next();
            struct stat info { };
            if (stat(QFile::encodeName(path).constData(), &info) == 0 && S_ISREG(info.st_mode)
                && HoldsCanary(FileText(path)))
                leaks += path;
        }
    }
    for (const char* file : {"environ", "cmdline", "comm", "status"})
        if (process != 0 && HoldsCanary(FileText(QStringLiteral("/proc/%1/%2").arg(process).arg(QLatin1String(file)))))
            leaks += QLatin1String(file);
    return leaks;
}

} // namespace

class Canary : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QDir().mkpath(CoreFolder);
        QDir().mkpath(QStringLiteral("/tmp/config/files"));
        CleanTerminal();
        m_events.InstallScript(QStringLiteral("send_event.sh"), "env >> /tmp/environment\n");
        m_server.SetPassword(QStringLiteral("zoe"), QStringLiteral("Canary-zoe-1"));
        m_server.SetPassword(QStringLiteral("must-change"), QStringLiteral("Canary-old-2"));
        m_server.SetState(QStringLiteral("must-change"), QStringLiteral("must-change"));
    }

    // A search that finds nothing is only worth something if it can find.
    void SearchFinds()
    {
        const QString path = QStringLiteral("/tmp/planted");
        for (const char* encoding : {"UTF-8", "UTF-16LE"}) {
            WriteFile(path, QTextCodec::codecForName(encoding)->fromUnicode(QStringLiteral("a Canary")));
            QCOMPARE(Leaks(), QStringList(path));
        }
        QFile::remove(path);
    }

    void RefusedThenGood()
    {
        Gate gate({}, Wrapper());
        SignIn("zoe", "Canary-wrong-3");
        QVERIFY(m_desktop.Confirms(QStringLiteral("Authentication Error")));
        QCOMPARE(Leaks(gate.ProcessId()), QStringList());
        m_desktop.Type(QStringLiteral("Canary-zoe-1"), "Return");
        QCOMPARE(gate.Status(), 0);
        QCOMPARE(Leaks(), QStringList());
    }

    void Change()
    {
        Gate gate({}, Wrapper());
        SignIn("must-change", "Canary-old-2");
        ChangeTo("canaryCanary"); // too simple for the domain
        QVERIFY(m_desktop.Confirms(QStringLiteral("Authentication Error")));
        m_desktop.Keys("Return");
        ChangeTo("Canary-new-4");
        QVERIFY(m_desktop.Confirms(QStringLiteral("Password Changed")));
        QCOMPARE(Leaks(gate.ProcessId()), QStringList());
        m_desktop.Type(QStringLiteral("Canary-new-4"), "Return");
        QCOMPARE(gate.Status(), 0);
        QCOMPARE(Leaks(), QStringList());
    }

    void Crash()
    {
        const QStringList crash{QStringLiteral("-c"), QStringLiteral("kill -SEGV $$")};
        Gate other(crash, Wrapper(), QStringLiteral("sh"));
        QCOMPARE(other.Status(), 128 + SIGSEGV);
        if (QDir(CoreFolder).isEmpty())
            QSKIP("the kernel writes no core files here");
        QVERIFY(QDir(CoreFolder).removeRecursively() && QDir().mkpath(CoreFolder));
        Gate gate({}, Wrapper());
        SignIn("zoe", "Canary-crash-7");
        QVERIFY(m_desktop.Shows(QStringLiteral("Authentication Error")));
        kill(gate.ProcessId(), SIGSEGV);
        QCOMPARE(gate.Status(), 128 + SIGSEGV);
        QVERIFY(QDir(CoreFolder).isEmpty());
        QCOMPARE(Leaks(), QStringList());
    }

    void Local()
    {
        const Configuration configuration(
            {{QStringLiteral("enablelocalauth"), QStringLiteral("true")},
             {QStringLiteral("localauthpass"), TavStringBlur::Encode(QStringLiteral("Canary 5"))}});
        Gate gate({}, Wrapper());
        QVERIFY(m_desktop.Shows(QStringLiteral("Login")));
        m_desktop.Type(QStringLiteral("Canary 6"), "Return");
        QVERIFY(m_desktop.Confirms(QStringLiteral("Login Error")));
        QCOMPARE(Leaks(gate.ProcessId()), QStringList());
        m_desktop.Type(QStringLiteral("Canary 5"), "Return");
        QCOMPARE(gate.Status(), 0);
        QCOMPARE(Leaks(), QStringList());
    }

    // Whatever was to be searched is there.
    void cleanupTestCase()
    {
        for (const QString& path : {Output, QStringLiteral("/tmp/environment"),
                                    QStringLiteral("/tmp/QormLoginDebug.log"), QStringLiteral("/tmp/AdPwdTest.log"),
                                    QStringLiteral("/tmp/.user.1"), QStringLiteral("/tmp/config/files/QXlogin.log")})
            QVERIFY2(!FileText(path).isEmpty(), qPrintable(path));
    }

private:
    void SignIn(const char* user, const char* password)
    {
        m_desktop.SignIn(QLatin1String(user), QLatin1String(password));
    }

    void ChangeTo(const char* password)
    {
        QVERIFY(m_desktop.Shows(QStringLiteral("Password Change/Reset")));
        m_desktop.Type(QLatin1String(password), "Tab");
        m_desktop.Type(QLatin1String(password), "Tab space");
    }

    Desktop m_desktop;
    DomainController m_server;
    FakeTools m_events;
    Configuration m_configuration{DomainController::Settings()};
};

QTEST_GUILESS_MAIN(Canary)
#include "e2e_canary.moc"
