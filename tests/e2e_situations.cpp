// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// The built program in every situation of the table that TABLE names; tests/tables/situations.tsv explains their
// language.
#include "tav3/crypt.h"
#include "tests/support/gatedriver.h"
#include "tests/support/testsupport.h"
#include "tests/support/xview.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>
#include <cstring>
#include <sched.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

const QString Victim = QStringLiteral("/tmp/victim"); // what planted links point to
const QStringList SavedUserFiles{QStringLiteral("/tmp/.user"), QStringLiteral("/tmp/.user.1"),
                                 QStringLiteral("/tmp/.newuser"), QStringLiteral("/tmp/.newuser.1")};
const QStringList WritableFolders{QStringLiteral("/tmp"),           QStringLiteral("/run"),
                                  QStringLiteral("/dev/shm"),       QStringLiteral("/etc/samba"),
                                  QStringLiteral("/var/lib/samba"), QStringLiteral("/var/log/samba")};
#ifdef __SANITIZE_ADDRESS__
constexpr bool IsSanitized = true;
#else
constexpr bool IsSanitized = false;
#endif
constexpr int DefaultLimitS = IsSanitized ? 30 : 10; // the machine may be busy

// A world for this process alone, where /usr/bin can be written, and /tmp be filled up.
const QString PrepareWorld = QStringLiteral("mkdir /run/upper /run/work && mount -t overlay overlay"
                                            " -o lowerdir=/usr/bin,upperdir=/run/upper,workdir=/run/work /usr/bin"
                                            " && mount -o remount,size=8m /tmp");
const QString CleanWorld
    = QStringLiteral("while read -r _ f _; do case $f in /tmp/?* | /etc/samba/?*) umount \"$f\" ;; esac; done"
                     " < /proc/mounts; cd /usr/bin; rm -rf ldapsearch smbpasswd send_event.sh wshutdown"
                     " /tmp/.config /tmp/fill /etc/samba/smb.conf; printf victim > /tmp/victim");

// The lines that `text` stands for: each "{a,b}" in it is one of its choices.
QStringList Expanded(const QString& text)
{
    static const QRegularExpression group(QStringLiteral("\\{([^{}]*)\\}"));
    const QRegularExpressionMatch match = group.match(text);
    if (!match.hasMatch())
        return {text};
    QStringList all;
    for (const QString& choice : match.captured(1).split(QLatin1Char(',')))
        all += Expanded(QString(text).replace(match.capturedStart(), match.capturedLength(), choice));
    return all;
}

QStringList Parts(const QString& text)
{
    return text.split(QLatin1Char('+'));
}

// A name and a password, in which "%20" is a blank.
QStringList UserOf(const QString& text)
{
    return Parts(QString::fromUtf8(QByteArray::fromPercentEncoding(text.toUtf8())));
}

// "Tab+alt-F4" as xdotool wants it.
QStringList Keys(const QString& text)
{
    return Parts(text).replaceInStrings(QStringLiteral("-"), QStringLiteral("+"));
}

QString Spaced(QString text)
{
    return text.replace(QLatin1Char('_'), QLatin1Char(' '));
}

QString Before(QChar mark, const QString& text)
{
    return text.section(mark, 0, 0);
}

QString After(QChar mark, const QString& text)
{
    return text.section(mark, 1);
}

// What tells a file from any other; empty when there is none.
QByteArray Traits(const QString& path)
{
    struct stat info { };
    if (lstat(QFile::encodeName(path).constData(), &info) != 0)
        return {};
    return QByteArray::number(quint64(info.st_ino)) + ' ' + QByteArray::number(info.st_mode) + ' '
        + (S_ISREG(info.st_mode) ? FileText(path) : QByteArray());
}

bool IsHashOf(const QString& hash, const QString& text)
{
    return hash == QLatin1String(crypt_passwd(text.toLatin1().constData(), hash.toLatin1().constData()));
}

// Whether the file holds that user, a name and a password, as the program saves one.
bool Holds(const QString& path, const QStringList& user)
{
    const QStringList saved = user + QStringList{QStringLiteral("example.org")};
    if (path.endsWith(QLatin1String(".1")))
        return Joined(SavedUser(path), '\0').toLatin1() == Joined(saved, '\0').toLatin1(); // its character set
    static const QRegularExpression hashes(QStringLiteral("^\\$U(\\$y\\$\\S{70})\n\\$P(\\$y\\$\\S{70})\n\\z"));
    const QRegularExpressionMatch match = hashes.match(QString::fromLatin1(FileText(path)));
    return match.hasMatch() && IsHashOf(match.captured(1), user.value(0)) && IsHashOf(match.captured(2), user.value(1));
}

// Whether the ASCII text stands in the bytes, in Latin-1 or UTF-8, or in UTF-16, whose two byte orders have all but the
// outer zero in common.
bool Contains(const QByteArray& bytes, const QString& text)
{
    const QByteArray wide(reinterpret_cast<const char*>(text.utf16()), text.size() * 2 - 1);
    return bytes.contains(text.toLatin1()) || bytes.contains(wide);
}

// Whether this program itself has the file open: a test runner, and whoever keeps what that prints, leave it the
// reports, which name the situations.
bool IsReport(const struct stat& file)
{
    struct stat own { };
    for (const QString& descriptor : QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::Files)) {
        if (fstat(descriptor.toInt(), &own) == 0 && own.st_dev == file.st_dev && own.st_ino == file.st_ino)
            return true;
    }
    return false;
}

// The regular files below a folder that were written since then, but for reports.
QStringList FilesSince(time_t beginning, const QString& folder)
{
    QStringList files;
    QDirIterator entries(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    struct stat info { };
    while (entries.hasNext())
        if (stat(QFile::encodeName(entries.next()).constData(), &info) == 0 && S_ISREG(info.st_mode)
            && info.st_mtime >= beginning && !IsReport(info))
            files += entries.filePath();
    return files;
}

} // namespace

class Situations : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        const QString tables = QStringLiteral(PROJECT_DIR "/tests/tables/%1.tsv");
        const QString table = QString::fromUtf8(FileText(tables.arg(QString::fromLocal8Bit(qgetenv("TABLE")))));
        if (table.contains(QLatin1String("\nworld\n"))) {
            if (qgetenv("GATE_SANDBOX") != "namespaces" || unshare(CLONE_NEWNS) != 0 || !ShellIn({}, PrepareWorld))
                QSKIP("needs namespaces of its own");
            m_folder = QStringLiteral("/run");
            m_toolFolder = QStringLiteral("/usr/bin");
        }
        QVERIFY(ShellIn(m_folder, QStringLiteral("mkdir do calls tools cores; mkfifo tell")));
        qputenv("WORLD", m_folder.toLocal8Bit());
        const QString path = QStringLiteral("%1/tools:%2:%1/do").arg(m_folder, QString::fromLocal8Bit(qgetenv("PATH")));
        qputenv("PATH", path.toLocal8Bit());
        Read(QString::fromUtf8(FileText(tables.arg(QStringLiteral("situations")))));
        Read(table);
    }

    void init()
    {
        if (HasWorld())
            ShellIn({}, CleanWorld);
        ShellIn(m_folder, QStringLiteral("rm -f tools/* calls/* cores/* output"));
        CleanTerminal();
        m_beginning = time(nullptr);
        m_start = {};
        m_user.clear();
        m_idlePointer.clear();
        m_ringPixels = -1;
        for (const QString& tool : m_tools)
            InstallTool(tool);
        if (!m_desktop)
            m_desktop = std::make_unique<Desktop>();
    }

    void cleanup()
    {
        m_gate.reset();
        m_windowManager.reset();
        // No key of the next situation goes to a window that the X server has yet to take away.
        if (m_desktop)
            Within(WaitMs, [] { return FocusedTitle().isEmpty(); });
    }

    void Situation_data()
    {
        QTest::addColumn<QStringList>("row");
        const QByteArrayList shard = qgetenv("SHARD").split('/'); // "1/4": the second quarter
        for (int i = shard.first().toInt(); i < m_rows.size(); i += qMax(1, shard.last().toInt()))
            QTest::newRow(qPrintable(m_rows.at(i).at(0))) << m_rows.at(i);
    }

    void Situation()
    {
        QFETCH(QStringList, row);
        static const QRegularExpression scarce(QStringLiteral("descriptors:|--as="));
        if (IsSanitized && row.at(0).contains(scarce))
            QSKIP("the sanitizers need descriptors and memory of their own");
        m_limitMs = 1000 * (row.size() > 3 ? row.at(3).toInt() : DefaultLimitS);
        const QString expected = row.at(1) + QLatin1Char('\t') + row.at(2);
        QCOMPARE(Play(WordsOf(row.at(0)), row.at(1)), expected);
    }

private:
    void Read(const QString& table)
    {
        for (const QString& line : table.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const QStringList cells = line.split(QLatin1Char('\t'));
            if (line.startsWith(QLatin1Char('$')))
                WriteScript(Script(cells.at(0).mid(1)), cells.at(1).toUtf8());
            else if (line == QLatin1String("domain"))
                m_domain = std::make_unique<DomainController>();
            else if (cells.at(0) == QLatin1String("tool"))
                m_tools += cells.at(1);
            else if (cells.at(0) == QLatin1String("secret"))
                m_secrets += cells.at(1);
            else if (cells.size() == 2)
                m_macros[cells.at(0)] = cells.at(1);
            else if (cells.size() > 2 && !line.startsWith(QLatin1Char('#')))
                for (const QString& row : Expanded(line))
                    m_rows += row.split(QLatin1Char('\t'));
        }
    }

    // The words of a text, those of its macros in their places.
    QStringList WordsOf(const QString& text) const
    {
        QStringList words;
        for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            words += m_macros.contains(word) ? WordsOf(m_macros.value(word)) : QStringList{word};
        return words;
    }

    // What came of it, in the table's words: the status and the fates of the files, or what did not come to pass.
    QString Play(const QStringList& words, const QString& expectedStatus)
    {
        const QByteArray victim = Traits(Victim);
        for (const QString& word : words) {
            const auto step = m_steps.value(Before(QLatin1Char(':'), word).toLatin1());
            if (!step || !step(After(QLatin1Char(':'), word)))
                return QStringLiteral("no %1; %2 %3, \"%4\" has the keyboard, secrets are in: %5")
                    .arg(word, m_gate ? Ending(QStringLiteral("asking")) : QString(), Fates(),
                         m_desktop ? FocusedTitle() : QString(), Leaks().join(QLatin1Char('+')));
        }
        QString outcome = Ending(expectedStatus) + QLatin1Char('\t'); // the files are only right after that
        outcome += Fates();
        if (Traits(Victim) != victim)
            outcome += QStringLiteral(" and a change of what a link points to");
        const QStringList leaks = Leaks();
        return leaks.isEmpty() ? outcome : outcome + QStringLiteral(" and a secret in ") + leaks.join(QLatin1Char(' '));
    }

    bool HasWorld() const { return m_folder == QLatin1String("/run"); }

    QString Script(const QString& name) const { return m_folder + QStringLiteral("/do/") + name; }

    bool RunScript(const QString& text, const QStringList& firstArguments = {}) const
    {
        const QStringList words = Parts(text);
        return QProcess::execute(Script(words.first()), firstArguments + words.mid(1)) == 0;
    }

    // A tool that notes each call, briefly as a file may have to stay small, and then is one of the table's scripts; of
    // two, the first for the directory's root entry.
    bool InstallTool(const QString& text) const
    {
        const QString name = Before(QLatin1Char('='), text);
        const QStringList scripts = After(QLatin1Char('='), text).split(QLatin1Char('/'));
        const QString body
            = QStringLiteral("echo \"$1 $2\" >> %1/calls/%2\ncase \"$*\" in *namingContexts) exec %3 \"$@\" ;; esac\n"
                             "exec %4 \"$@\"");
        WriteScript(m_toolFolder + QLatin1Char('/') + name,
                    body.arg(m_folder, name, scripts.first(), scripts.last()).toUtf8());
        return true;
    }

    // The first two arguments of each call of a tool, in one text.
    QStringList Calls(const QString& tool) const
    {
        const QByteArray text = FileText(m_folder + QStringLiteral("/calls/") + tool);
        return QString::fromUtf8(text).split(QLatin1Char('\n')).mid(0, text.count('\n'));
    }

    QString Events() const { return Calls(QStringLiteral("send_event.sh")).join(QLatin1Char('+')); }

    bool Start()
    {
        m_gate.reset();
        m_lastSignal.clear();
        m_configuration = std::make_unique<Configuration>(m_start.settings);
        if (!m_start.damage.isEmpty() && !RunScript(m_start.damage, {QFile::decodeName(qgetenv("TAV3_CONFIG_DIR"))}))
            return false;
        for (const QString& path : SavedUserFiles)
            m_traitsBefore[path] = Traits(path);
        m_gate = std::make_unique<Gate>(m_start.arguments, m_start.wrapper);
        return true;
    }

    bool Eventually(const std::function<bool()>& condition) const { return Within(m_limitMs, condition); }

    bool Sees(const QString& title) const
    {
        return Eventually([&] { return FocusedTitle() == Spaced(title); });
    }

    bool SignIn(const QString& text)
    {
        m_user = UserOf(text);
        if (!Sees(QStringLiteral("User Authentication")))
            return false;
        m_desktop->Type(m_user.at(0), "Tab");
        m_desktop->Type(m_user.at(1), "Return");
        return true;
    }

    // As SignIn(), by way of two files that scripts can read.
    bool Paste(const QString& text)
    {
        m_user = UserOf(text);
        WriteFile(m_folder + QStringLiteral("/user"), m_user.at(0).toUtf8());
        WriteFile(m_folder + QStringLiteral("/password"), m_user.at(1).toUtf8());
        return Sees(QStringLiteral("User Authentication")) && RunScript(QStringLiteral("paste_user"))
            && RunScript(QStringLiteral("paste_password"));
    }

    // The dialog's message line has a colour of its own, which the default style sheet gives it.
    static qint64 MessagePixels(int tolerance = 0)
    {
        const QRegularExpression rule(QStringLiteral("#lblMessage[^{]*\\{ color: #([0-9a-f]{6})"));
        const QString sheet = QString::fromUtf8(FileText(QStringLiteral(PROJECT_DIR "/tav3/default.qss")));
        return CountPixels(rule.match(sheet).captured(1).toUInt(nullptr, 16), tolerance);
    }

    // The ring around what has the focus, in the accent colour of the default style sheet, as does the default button.
    // The first time it is remembered, after what a slow machine may still paint.
    bool HasRing()
    {
        const auto pixels = [] { return CountPixels(0xb54708); };
        if (m_ringPixels < 0) {
            QTest::qWait(NeverMs);
            m_ringPixels = pixels();
        }
        return Eventually([&] { return pixels() == m_ringPixels; });
    }

    bool LooksIdle()
    {
        if (m_idlePointer.isEmpty())
            m_idlePointer = PointerPicture();
        return MessagePixels() == 0 && PointerPicture() == m_idlePointer;
    }

    bool LooksBusy() const { return MessagePixels(16) > 20 && PointerPicture() != m_idlePointer; }

    bool ManageWindows()
    {
        m_windowManager = std::make_unique<Service>();
        m_windowManager->process.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
        return Eventually([] { return ShellIn({}, QStringLiteral("xdotool get_num_desktops")); });
    }

    // Leaves the program so many descriptors besides those that it has open, whatever numbers these have.
    bool LimitDescriptors(rlim_t spare) const
    {
        const QString descriptor = QStringLiteral("/proc/%1/fd/%2").arg(m_gate->ProcessId());
        struct rlimit limit = {};
        prlimit(m_gate->ProcessId(), RLIMIT_NOFILE, nullptr, &limit);
        for (limit.rlim_cur = 0; spare > 0; ++limit.rlim_cur)
            spare -= QFileInfo(descriptor.arg(limit.rlim_cur)).isSymLink() ? 0 : 1;
        return prlimit(m_gate->ProcessId(), RLIMIT_NOFILE, &limit, nullptr) == 0;
    }

    bool Kill(const QString& signal)
    {
        m_lastSignal = signal;
        return ShellIn({}, QStringLiteral("kill -%1 %2").arg(signal).arg(m_gate->ProcessId()));
    }

    // How the program ended within the time limit, in the table's words.
    QString Ending(const QString& expected) const
    {
        const bool ended = m_gate->EndsWithin(expected == QLatin1String("asking") ? 0 : m_limitMs);
        if (expected == QLatin1String("closed") && !(ended && (m_gate->Status() == 0 || m_gate->Status() == 8)))
            return expected;
        if (!ended)
            return QStringLiteral("asking");
        const int status = m_gate->Status();
        const bool killed = !m_lastSignal.isEmpty() && m_lastSignal == QLatin1String(sigabbrev_np(status - 128));
        return killed ? QStringLiteral("killed") : QString::number(status);
    }

    // The table's letter for what became of a saved-user file.
    char Fate(const QString& path) const
    {
        const QByteArray traits = Traits(path);
        if (traits.isEmpty())
            return '-';
        if (traits == m_traitsBefore.value(path))
            return '=';
        if (m_traitsBefore.values().contains(traits))
            return 'M';
        const QByteArray text = FileText(path);
        if (ModeOf(path) != 0600 || QFileInfo(path).isSymLink())
            return 'X';
        if (!text.endsWith('\n'))
            return text.isEmpty() ? '0' : 'C';
        if (Holds(path, m_user))
            return 'W';
        return text == ",00,,00,\n" ? 'E' : 'X';
    }

    QString Fates() const
    {
        QString fates;
        for (const QString& path : SavedUserFiles)
            fates += QLatin1Char(Fate(path));
        return fates;
    }

    // The files of this situation that hold a secret: in the folders that can be written, and of the running program.
    QStringList Leaks() const
    {
        if (m_secrets.isEmpty())
            return {};
        QStringList files;
        for (const QString& folder : WritableFolders)
            files += FilesSince(m_beginning, folder);
        if (m_gate && !m_gate->EndsWithin(0)) {
            const QString process = QStringLiteral("/proc/%1/").arg(m_gate->ProcessId());
            files += FilesSince(m_beginning, process + QStringLiteral("fd"));
            for (const char* file : {"environ", "cmdline", "comm", "status"})
                files += process + QLatin1String(file);
        }
        QStringList leaks;
        for (const QString& file : files)
            for (const QString& secret : m_secrets)
                if (Contains(FileText(file), secret))
                    leaks += file;
        return leaks;
    }

    // Whether the last line of the log that tells of an attempt's end has this sentence, code and success.
    static bool WasOutcome(const QString& text)
    {
        const QString line = DebugLog().section(QStringLiteral("Debug: Error Message "), -1);
        return line.startsWith(text + QStringLiteral(" (:0)"));
    }

    static bool IsLogged(const QString& text)
    {
        return Spaced(DebugLog() + QString::fromUtf8(FileText(QStringLiteral("/tmp/AdPwdTest.log")))).contains(text);
    }

    bool WasCalled(const QString& tool, int times) const
    {
        return Eventually([&] { return Calls(tool).size() >= qMax(1, times); });
    }

    // Each step by its verb; it gets what stands behind that. False: it did not come to pass.
    using Text = const QString&;
    const QMap<QByteArray, std::function<bool(Text)>> m_steps{
        {"xml",
         [this](Text text) {
             m_start.settings[Before(QLatin1Char('='), text)] = Spaced(After(QLatin1Char('='), text));
             return true;
         }},
        {"damage", [this](Text text) { return m_start.damage = text, true; }},
        {"under", [this](Text text) { return m_start.wrapper += Parts(text), true; }},
        {"arg", [this](Text text) { return m_start.arguments += text, true; }},
        {"tool", [this](Text text) { return InstallTool(text); }},
        {"do", [this](Text text) { return RunScript(text); }},
        {"until", [this](Text text) { return Eventually([&] { return RunScript(text); }); }},
        {"dc", [this](Text text) { return m_domain->Tell(Parts(text).first(), Parts(text).mid(1)), true; }},
        {"wm", [this](Text) { return ManageWindows(); }},
        {"start", [this](Text) { return Start(); }},
        {"key", [this](Text text) { return m_desktop->Keys(Keys(text)), true; }},
        {"type", [this](Text text) { return m_desktop->Type(Spaced(text)), true; }},
        {"sign-in", [this](Text text) { return SignIn(text); }},
        {"paste", [this](Text text) { return Paste(text); }},
        {"saves", [this](Text text) { return m_user = UserOf(text), true; }},
        {"see", [this](Text text) { return Sees(text); }},
        {"quiet", [this](Text) { return Eventually([] { return MessagePixels() == 0; }); }},
        {"ring", [this](Text) { return HasRing(); }},
        {"busy", [this](Text) { return Eventually([&] { return LooksBusy(); }); }},
        {"idle", [this](Text) { return Eventually([&] { return LooksIdle(); }); }},
        {"stays", [](Text text) { return !Within(NeverMs, [&] { return FocusedTitle() != Spaced(text); }); }},
        {"close", [this](Text text) { return Sees(text) && (CloseFocused(), true); }},
        {"called", [this](Text text) { return WasCalled(Parts(text).first(), Parts(text).value(1).toInt()); }},
        {"events", [this](Text text) { return Eventually([&] { return Events() == Spaced(text); }); }},
        {"outcome", [this](Text text) { return Eventually([&] { return WasOutcome(Spaced(text)); }); }},
        {"logs", [this](Text text) { return Eventually([&] { return IsLogged(Spaced(text)); }); }},
        {"leaks", [this](Text text) { return Leaks().join(QLatin1Char('+')) == text; }},
        {"ends", [this](Text text) { return Ending(text) == text; }},
        {"files", [this](Text text) { return Fates() == text; }},
        {"kill", [this](Text text) { return Kill(text); }},
        {"x-gone", [this](Text) { return m_desktop.reset(), true; }},
        {"descriptors", [this](Text text) { return LimitDescriptors(text.toUInt()); }},
    };
    QList<QStringList> m_rows;
    QMap<QString, QString> m_macros;
    QStringList m_tools;
    QStringList m_secrets;
    QTemporaryDir m_temporary;
    QString m_folder = m_temporary.path(); // of the scripts, and what they leave
    QString m_toolFolder = m_folder + QStringLiteral("/tools");

    std::unique_ptr<DomainController> m_domain;
    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Service> m_windowManager;
    std::unique_ptr<Configuration> m_configuration;
    std::unique_ptr<Gate> m_gate;
    struct {
        QMap<QString, QString> settings;
        QStringList arguments;
        QStringList wrapper;
        QString damage;
    } m_start;          // what the next start of the program is to find
    QStringList m_user; // the name and password to be found in the saved files
    QMap<QString, QByteArray> m_traitsBefore;
    QByteArray m_idlePointer;
    qint64 m_ringPixels = -1;
    time_t m_beginning = 0;
    int m_limitMs = 0;
    QString m_lastSignal;
};

QTEST_GUILESS_MAIN(Situations)
#include "e2e_situations.moc"
