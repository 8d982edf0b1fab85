// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// What no table of situations tells of the remote-login dialog: pixels, the pointer, keys that are held, and user names
// and passwords, pasted in, that mean something to a shell, a filter, an option's parser or a reader of the log.
#include "tests/support/gatedriver.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"
#include "tests/support/xview.h"

#include <QRegularExpression>
#include <QTest>
#include <algorithm>
#include <numeric>

namespace {

const QString Dialog = QStringLiteral("User Authentication");
const QString ErrorBox = QStringLiteral("Authentication Error");
const char RecordArguments[] = "printf '%s\\0' \"$@\" >> \"$0.arguments\"\n";

// How many pixels have exactly the colour that the default style sheet gives to the message line.
qint64 MessagePixels()
{
    const QRegularExpression rule(QStringLiteral("#lblMessage[^{]*\\{ color: #([0-9a-f]{6})"));
    const QString sheet = QString::fromUtf8(FileText(QStringLiteral(PROJECT_DIR "/tav3/default.qss")));
    const std::vector<quint32> screen = ScreenPixels();
    return std::count(screen.begin(), screen.end(), rule.match(sheet).captured(1).toUInt(nullptr, 16));
}

int ChangedPixels(const std::vector<quint32>& before)
{
    return std::inner_product(before.begin(), before.end(), ScreenPixels().begin(), 0, std::plus<>(),
                              std::not_equal_to<>());
}

// Of all windows that can be seen, tooltips included.
int WindowCount()
{
    QProcess search;
    search.start(QStringLiteral("xdotool"), Words("search --onlyvisible --name .*"));
    search.waitForFinished(WaitMs);
    return search.readAllStandardOutput().count('\n');
}

bool IsSecondAttempt()
{
    return DebugLog().count(QStringLiteral("on_pushButton_clicked")) > 1;
}

// The arguments of the calls so far, one after the other.
QStringList Arguments(const FakeTools& tools, const char* tool)
{
    const QByteArray text = FileText(tools.Path(QLatin1String(tool)) + QStringLiteral(".arguments"));
    return QString::fromUtf8(text.constData(), text.size()).split(QChar(0));
}

// As the terminal's Latin-1 files keep it.
QString Kept(const QString& text)
{
    return QString::fromLatin1(text.toLatin1());
}

} // namespace

class DialogTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        CleanTerminal();
        WriteFile(QStringLiteral("/tmp/debug-login"), {});
        m_tools = std::make_unique<FakeTools>();
        m_gate = std::make_unique<Gate>();
        QVERIFY(m_desktop.Shows(Dialog));
    }

    void cleanup()
    {
        m_gate.reset();
        m_tools.reset();
    }

    void BusyWhileTheCheckBlocks()
    {
        const QString answer = m_tools->Path(QStringLiteral("answer"));
        Run(QStringLiteral("mkfifo"), {answer});
        m_tools->InstallScript(QStringLiteral("ldapsearch"),
                               "case \"$*\" in *namingContexts) echo 'namingContexts: DC=example,DC=org' ;;"
                               " *) read -r line < \"$here/answer\"; exit 1 ;; esac\n");
        const QByteArray pointer = PointerPicture();
        m_desktop.Type(QStringLiteral("fine"), "Tab");
        QCOMPARE(MessagePixels(), 0);
        m_desktop.Type(QStringLiteral("Lantern-2026"), "Return");
        QVERIFY(Within(WaitMs, [this] { return m_tools->Calls(QStringLiteral("ldapsearch")).size() == 2; }));
        QVERIFY(MessagePixels() > 20);
        const QByteArray busy = PointerPicture();
        QVERIFY(busy != pointer);
        m_desktop.Keys("Return Return");
        WriteFile(answer, "now\n");
        QVERIFY(m_desktop.Shows(ErrorBox));
        QVERIFY(Within(WaitMs, [&] { return PointerPicture() != busy; }));
        QVERIFY(!Within(NeverMs, [] { return FocusedTitle() != ErrorBox || IsSecondAttempt(); }));
    }

    void HeldReturnIsOneAttempt()
    {
        m_desktop.Type(QStringLiteral("nobody"));
        Run(QStringLiteral("xdotool"), Words("keydown Return"));
        const bool boxStays = m_desktop.Shows(ErrorBox)
            && !Within(NeverMs * 2, [] { return FocusedTitle() != ErrorBox || IsSecondAttempt(); });
        Run(QStringLiteral("xdotool"), Words("keyup Return"));
        QVERIFY(boxStays);
    }

    void CapsLock()
    {
        const int windows = WindowCount();
        const std::vector<quint32> before = ScreenPixels();
        m_desktop.Keys("Caps_Lock");
        const bool sign = Within(WaitMs, [&] { return ChangedPixels(before) > 100; }); // a text cursor has fewer
        const bool early = Within(NeverMs * 2, [&] { return WindowCount() != windows; });
        m_desktop.Keys("Tab");
        const bool tooltip = Within(WaitMs, [&] { return WindowCount() == windows + 1; });
        m_desktop.Keys("Caps_Lock");
        QVERIFY(sign);
        QVERIFY2(!early, "a tooltip while the user name has the focus");
        QVERIFY(tooltip);
        QVERIFY(Within(WaitMs, [&] { return WindowCount() == windows; }));
    }

    void ArgumentsStayWhole_data() { LoadTable("dialog.tsv"); }

    void ArgumentsStayWhole()
    {
        const QString user = Text("user");
        const QString password = Text("password");
        m_tools->InstallScript(
            QStringLiteral("ldapsearch"),
            QByteArray(RecordArguments)
                + "echo 'namingContexts: DC=example,DC=org'; echo 'dn: CN=a'; echo 'pwdLastSet: 1'\n");
        m_tools->InstallScript(QStringLiteral("send_event.sh"), RecordArguments);
        Paste(user, "Tab");
        Paste(password, "Return");
        QCOMPARE(m_gate->Status(), 0);
        const QStringList bind{QStringLiteral("-D"),
                               user + QStringLiteral("@ example.org"),
                               QStringLiteral("-w"),
                               password,
                               QStringLiteral("-b"),
                               QStringLiteral(" DC=example,DC=org"),
                               QStringLiteral("(sAMAccountName=%1)").arg(user)};
        const QStringList search = Arguments(*m_tools, "ldapsearch").mid(7 + 4); // of the second call, after the server
        QCOMPARE(search.mid(0, bind.size()), bind);
        QCOMPARE(search.size(), bind.size() + 5 + 1);
        const QStringList event{QStringLiteral("sec01"), user, QString()};
        QTRY_COMPARE(Arguments(*m_tools, "send_event.sh"), event);
        const QStringList saved{Kept(user), Kept(password), QStringLiteral("example.org")};
        QCOMPARE(SavedUser(QStringLiteral("/tmp/.user.1")), saved);
        // One line of the log for each message.
        QCOMPARE(DebugLog().count(QStringLiteral("CheckRemoteLogin returned  true (:0)\n")), 1);
        for (const QString& line : DebugLog().split(QLatin1Char('\n')))
            QVERIFY2(line.isEmpty() || line.endsWith(QLatin1String(" (:0)")), qPrintable(line));
    }

private:
    void Paste(const QString& text, const char* keys)
    {
        QProcess clipboard;
        clipboard.start(QStringLiteral("xclip"), Words("-selection clipboard"));
        clipboard.write(text.toUtf8());
        clipboard.closeWriteChannel();
        QVERIFY(clipboard.waitForFinished(WaitMs));
        m_desktop.Keys("ctrl+v");
        m_desktop.Keys(keys);
    }

    Desktop m_desktop;
    Configuration m_configuration{DomainController::Settings()};
    std::unique_ptr<FakeTools> m_tools;
    std::unique_ptr<Gate> m_gate;
};

QTEST_GUILESS_MAIN(DialogTest)
#include "e2e_dialog.moc"
