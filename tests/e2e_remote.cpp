// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// The remote-login dialog of the built program, by real keys, against the real domain controller.
#include "tav3/crypt.h"
#include "tav3/rdpcipher.h"
#include "tests/support/gatedriver.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"
#include "tests/support/xview.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <numeric>
#include <sys/stat.h>

namespace {

const QString Dialog = QStringLiteral("User Authentication");
const QString ErrorBox = QStringLiteral("Authentication Error");
const QString EventScript = QStringLiteral("send_event.sh");
const QString Password = QStringLiteral("Lantern-2026");
const char ToLogout[] = "Tab Tab Tab space"; // from the password past Unlock and Change User
const QString Attempt = QStringLiteral("on_pushButton_clicked");

// As a session that `user` has opened leaves it.
void LogIn(const char* user)
{
    QDir().mkpath(QStringLiteral("/tmp/.config"));
    WriteFile(QStringLiteral("/tmp/.config/.loggedin"), {});
    WriteFile(QStringLiteral("/tmp/.user.1"), QByteArray(rdp_encrypt(user)) + ",00,a,00,b\n");
}

bool IsHashOf(const QByteArray& line, const QByteArray& prefix, const QString& text)
{
    const QByteArray hash = line.mid(prefix.size());
    return line.startsWith(prefix) && hash == crypt_passwd(text.toLatin1().constData(), hash.constData());
}

// Whether the two files `path` and `path`.1 hold this user, and nobody else can read them.
bool HoldsUser(const QString& path, const QString& user)
{
    for (const QString& file : {path, path + QStringLiteral(".1")}) {
        struct stat info { };
        if (stat(QFile::encodeName(file).constData(), &info) != 0 || (info.st_mode & 0777) != 0600)
            return false;
    }
    QByteArrayList fields;
    for (const QString& field :
         QString::fromLatin1(FileText(path + QStringLiteral(".1")).chopped(1)).split(QStringLiteral(",00,")))
        fields += QByteArray(rdp_decrypt(field.toLatin1().constData()));
    const QByteArrayList lines = FileText(path).split('\n');
    return fields == QByteArrayList{user.toLatin1(), Password.toLatin1(), "example.org"} && lines.size() == 3
        && IsHashOf(lines.at(0), "$U", user) && IsHashOf(lines.at(1), "$P", Password) && lines.at(2).isEmpty();
}

// A directory that answers a sign-in only when it is told to.
class SlowDirectory {
public:
    SlowDirectory()
    {
        mkfifo(QFile::encodeName(m_tools.Path(QStringLiteral("verdict"))).constData(), 0600);
        m_tools.InstallScript(QStringLiteral("ldapsearch"), R"(case "$*" in
            *namingContexts*) echo 'namingContexts: DC=example,DC=org' ;;
            *) read -r verdict < "$here/verdict"
               case $verdict in
               good) printf 'dn: CN=fine\npwdLastSet: 0\n\n' ;;
               *) printf 'ldap_bind: Invalid credentials (49)\n\tadditional info: error, data 52e, v1\n' >&2 ;;
               esac ;;
            esac
            )");
    }
    bool IsAsked()
    {
        return Within(WaitMs, [this] { return m_tools.Calls(QStringLiteral("ldapsearch")).size() == 2; });
    }
    void Answer(const char* verdict) { WriteFile(m_tools.Path(QStringLiteral("verdict")), verdict); }

private:
    FakeTools m_tools;
};

// How many pixels have exactly the colour that the default style sheet gives to the message line.
int MessagePixels()
{
    const QRegularExpression rule(QStringLiteral("#lblMessage[^{]*\\{ color: (#[0-9a-f]{6})"));
    const QString sheet = QString::fromUtf8(FileText(QStringLiteral(PROJECT_DIR "/tav3/default.qss")));
    const QRgb colour = QColor(rule.match(sheet).captured(1)).rgb();
    const QImage screen = ScreenPixels();
    const auto* first = reinterpret_cast<const QRgb*>(screen.constBits());
    return int(std::count_if(first, first + screen.width() * screen.height(),
                             [colour](QRgb pixel) { return (pixel | 0xff000000) == colour; }));
}

int ChangedPixels(const QImage& before)
{
    const QImage now = ScreenPixels();
    const auto* pixels = reinterpret_cast<const QRgb*>(before.constBits());
    return std::inner_product(pixels, pixels + before.width() * before.height(),
                              reinterpret_cast<const QRgb*>(now.constBits()), 0, std::plus<>(), std::not_equal_to<>());
}

} // namespace

class RemoteGate : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        CleanTerminal();
        m_events = std::make_unique<FakeTools>();
        m_events->InstallScript(EventScript, {});
        qunsetenv("LDAPTLS_CACERT");
        m_configuration = std::make_unique<Configuration>(DomainController::Settings());
    }

    void cleanup()
    {
        m_events.reset();
        m_desktop.StopWindowManager();
    }

    void GoodLogin_data() { LoadTable("remote.tsv"); }

    // Typing works at once, and again after the box of a refused attempt.
    void GoodLogin()
    {
        if (Flag("window manager"))
            m_desktop.StartWindowManager();
        Configure(Text("server"), Text("kind"));
        qputenv("LDAPTLS_CACERT", QFile::encodeName(m_server.CertificateFile()));
        Gate gate;
        m_desktop.SignIn(QStringLiteral("nobody"), Password);
        QVERIFY(m_desktop.Confirms(ErrorBox));
        m_desktop.Keys("shift+Tab");
        m_desktop.SignIn(Text("user"), Password);
        QCOMPARE(gate.Status(), 0);
        QVERIFY(HoldsUser(QStringLiteral("/tmp/.user"), Text("user")));
        QStringList expected;
        for (const QString& event : Text("events").split(QLatin1Char(' ')))
            expected += event + QLatin1Char('|') + Text("user");
        QTRY_COMPARE(m_events->Calls(EventScript).mid(expected.size()), expected);
    }

    void Refusal_data() { LoadTable("remote.tsv"); }

    void Refusal()
    {
        Configure(Text("server"), Text("kind"));
        Gate gate;
        m_desktop.SignIn(Text("user"), Text("password"));
        QVERIFY(m_desktop.Shows(ErrorBox));
        QCOMPARE(Gate::LastOutcome(), Text("outcome"));
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/.user")));
    }

    void ThirdRefusalInUnlockMode()
    {
        LogIn("nobody");
        Gate gate;
        QVERIFY(m_desktop.Shows(Dialog));
        for (int attempt = 0; attempt < 3; ++attempt) {
            QVERIFY(gate.IsRunning());
            m_desktop.Type(Password, "Return");
            QVERIFY(m_desktop.Confirms(ErrorBox));
        }
        QCOMPARE(gate.Status(), 6);
        QVERIFY(Gate::Logs(QStringLiteral("Too many log in failures"), 1, 0));
    }

    void Unlock()
    {
        LogIn("fine");
        Gate gate;
        QVERIFY(m_desktop.Shows(Dialog));
        m_desktop.Type(Password, "Return");
        QCOMPARE(gate.Status(), 0);
        QVERIFY(HoldsUser(QStringLiteral("/tmp/.user"), QStringLiteral("fine")));
    }

    void Logout()
    {
        LogIn("fine");
        Gate gate;
        QVERIFY(m_desktop.Shows(Dialog));
        m_desktop.Keys(ToLogout);
        QCOMPARE(gate.Status(), 7);
    }

    void ChangeUserAndHandOver()
    {
        LogIn("fine");
        {
            Gate gate;
            QVERIFY(m_desktop.Shows(Dialog));
            m_desktop.Keys("Tab Tab space Escape Tab Tab space"); // there, back in unlock mode, and there again
            m_desktop.SignIn(QStringLiteral("zoe"), Password);
            QCOMPARE(gate.Status(), 8);
        }
        QVERIFY(HoldsUser(QStringLiteral("/tmp/.newuser"), QStringLiteral("zoe")));
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/.user")));
        Gate next({QStringLiteral("--force")});
        QCOMPARE(next.Status(), 0);
        QVERIFY(HoldsUser(QStringLiteral("/tmp/.user"), QStringLiteral("zoe")));
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/.newuser.1")));
    }

    void BusyWhileTheCheckBlocks()
    {
        SlowDirectory directory;
        Gate gate;
        QVERIFY(m_desktop.Shows(Dialog));
        const QByteArray pointer = PointerPicture();
        m_desktop.Type(QStringLiteral("fine"), "Tab");
        QCOMPARE(MessagePixels(), 0);
        m_desktop.Type(Password, "Return");
        QVERIFY(directory.IsAsked());
        QVERIFY(MessagePixels() > 20);
        const QByteArray busy = PointerPicture();
        QVERIFY(busy != pointer);
        m_desktop.Keys("Return Return");
        directory.Answer("bad\n");
        QVERIFY(m_desktop.Shows(ErrorBox));
        QVERIFY(Within(WaitMs, [&] { return PointerPicture() != busy; }));
        QVERIFY(!Within(NeverMs, [&] { return m_desktop.Window(ErrorBox) == 0 || Gate::Logs(Attempt, 2, 0); }));
    }

    void NothingTypedMeanwhileCounts()
    {
        SlowDirectory directory;
        LogIn("fine");
        Gate gate;
        QVERIFY(m_desktop.Shows(Dialog));
        m_desktop.Type(Password, "Return");
        QVERIFY(directory.IsAsked());
        m_desktop.Keys(ToLogout);
        directory.Answer("good\n");
        QCOMPARE(gate.Status(), 0);
    }

    void HeldReturnIsOneAttempt()
    {
        Gate gate;
        QVERIFY(m_desktop.Shows(Dialog));
        m_desktop.Type(QStringLiteral("nobody"));
        m_desktop.HoldDown("Return");
        const bool boxStays = m_desktop.Shows(ErrorBox)
            && !Within(NeverMs * 2, [&] { return m_desktop.Window(ErrorBox) == 0 || Gate::Logs(Attempt, 2, 0); });
        m_desktop.Release("Return");
        QVERIFY(boxStays);
    }

    void ShutdownPrompt()
    {
        mkfifo(QFile::encodeName(m_events->Path(QStringLiteral("end"))).constData(), 0600);
        m_events->InstallScript(QStringLiteral("wshutdown"), "read -r end < \"$here/end\"\n");
        Gate gate;
        QVERIFY(m_desktop.Shows(Dialog));
        m_desktop.Type(QStringLiteral("fine"), "Tab Escape");
        QVERIFY(m_desktop.Hides(Dialog));
        WriteFile(m_events->Path(QStringLiteral("end")), "now\n");
        QVERIFY(m_desktop.Shows(Dialog));
        m_desktop.Type(Password, "Return");
        QCOMPARE(gate.Status(), 0);
    }

    void CapsLock()
    {
        Gate gate;
        QVERIFY(m_desktop.Shows(Dialog));
        const int windows = m_desktop.WindowCount();
        const QImage before = ScreenPixels();
        m_desktop.Keys("Caps_Lock");
        const bool sign = Within(WaitMs, [&] { return ChangedPixels(before) > 100; }); // a text cursor has fewer
        const bool early = Within(NeverMs * 2, [&] { return m_desktop.WindowCount() != windows; });
        m_desktop.Keys("Tab");
        const bool tooltip = Within(WaitMs, [&] { return m_desktop.WindowCount() == windows + 1; });
        m_desktop.Keys("Caps_Lock");
        QVERIFY(sign);
        QVERIFY2(!early, "a tooltip while the user name has the focus");
        QVERIFY(tooltip);
        QVERIFY(Within(WaitMs, [&] { return m_desktop.WindowCount() == windows; }));
    }

private:
    void Configure(const QString& servers, const QString& kind)
    {
        QMap<QString, QString> settings = DomainController::Settings();
        settings[QStringLiteral("remoteauthserver")] = servers;
        settings[QStringLiteral("remoteauthtype")] = kind;
        m_configuration = std::make_unique<Configuration>(settings);
    }

    Desktop m_desktop;
    DomainController m_server;
    std::unique_ptr<FakeTools> m_events;
    std::unique_ptr<Configuration> m_configuration;
};

QTEST_GUILESS_MAIN(RemoteGate)
#include "e2e_remote.moc"
