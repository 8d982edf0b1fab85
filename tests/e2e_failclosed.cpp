// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// The built program in every mishap of tests/tables/failclosed.tsv: it opens for nobody without the password, never
// hangs, and leaves no half-written saved user that looks whole. The table's head explains its language.
#include "tav3/rdpcipher.h"
#include "tests/support/gatedriver.h"
#include "tests/support/testsupport.h"
#include "tests/support/xview.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <csignal>
#include <sched.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

const QString ScriptFolder = QStringLiteral("/run/do/");
const QString Victim = QStringLiteral("/tmp/victim"); // what planted links point to
const QStringList SavedUserFiles{QStringLiteral("/tmp/.user"), QStringLiteral("/tmp/.user.1"),
                                 QStringLiteral("/tmp/.newuser"), QStringLiteral("/tmp/.newuser.1")};
constexpr int DefaultLimitS = 10; // the machine may be busy

// A world for this process alone, where /usr/bin can be written, and /tmp be filled up.
const char Prepare[] = "mkdir -p /run/bin/upper /run/bin/work /run/do /run/calls && mkfifo /run/tell"
                       " && mount -t overlay overlay -o lowerdir=/usr/bin,upperdir=/run/bin/upper,workdir=/run/bin/work"
                       " /usr/bin && mount -o remount,size=8m /tmp";
const char Clean[] = "while read -r _ f _; do case $f in /tmp/?* | /etc/samba/?*) umount \"$f\" ;; esac; done"
                     " < /proc/mounts; cd /usr/bin; rm -rf ldapsearch smbpasswd send_event.sh wshutdown /run/calls/*"
                     " /tmp/.user* /tmp/.newuser* /tmp/.config /tmp/config /tmp/icons /tmp/debug-login /tmp/*.log"
                     " /tmp/.tav3* /tmp/fill /tmp/victim /etc/samba/smb.conf";

bool Shell(const char* command)
{
    return QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), QString::fromLatin1(command)}) == 0;
}

void WriteScript(const QString& path, const QString& body)
{
    QFile::remove(path);
    WriteFile(path, QStringLiteral("#!/bin/sh\n%1\n").arg(body).toUtf8());
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

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

int SignalNumber(const QString& name)
{
    for (int number = 1; number < NSIG; ++number) {
        const char* abbreviation = sigabbrev_np(number);
        if (abbreviation && name == QLatin1String(abbreviation))
            return number;
    }
    qFatal("no signal %s", qPrintable(name));
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

bool IsWhole(const QString& path, const QString& text)
{
    static const QRegularExpression hashes(QStringLiteral("^\\$U\\$y\\$\\S{70}\n\\$P\\$y\\$\\S{70}\n\\z"));
    if (!path.endsWith(QLatin1String(".1")))
        return hashes.match(text).hasMatch();
    QByteArrayList fields;
    for (const QString& field : text.chopped(1).split(QStringLiteral(",00,")))
        fields += rdp_decrypt(field.toLatin1().constData());
    return fields == QByteArrayList{"fine", "good1", "example.org"}
    || fields == QByteArrayList{"fine", "next2", "example.org"};
}

// The table's letter for what became of a saved-user file.
char Fate(const QString& path, const QMap<QString, QByteArray>& before)
{
    const QByteArray traits = Traits(path);
    if (traits.isEmpty())
        return '-';
    if (traits == before.value(path))
        return '=';
    if (before.values().contains(traits))
        return 'M';
    const QString text = QString::fromLatin1(FileText(path));
    if (ModeOf(path) != 0600 || QFileInfo(path).isSymLink())
        return 'X';
    if (!text.endsWith(QLatin1Char('\n')))
        return text.isEmpty() ? '0' : 'C';
    if (IsWhole(path, text))
        return 'W';
    return text == QLatin1String(",00,,00,\n") ? 'E' : 'X';
}

QStringList Parts(const QString& text)
{
    return text.split(QLatin1Char('+'));
}

QString Spaced(QString text)
{
    return text.replace(QLatin1Char('_'), QLatin1Char(' '));
}

bool RunScript(const QString& text, const QStringList& firstArguments = {})
{
    const QStringList words = Parts(text);
    return QProcess::execute(ScriptFolder + words.first(), firstArguments + words.mid(1)) == 0;
}

// A tool that notes each call and then is one of the table's scripts; of two, the first for the directory's root entry.
bool InstallTool(const QString& text)
{
    const QString name = text.section(QLatin1Char('='), 0, 0);
    const QStringList scripts = text.section(QLatin1Char('='), 1).split(QLatin1Char('/'));
    const QString body
        = QStringLiteral("echo >> /run/calls/%1\ncase \"$*\" in *namingContexts) exec %2 \"$@\" ;; esac\n"
                         "exec %3 \"$@\"");
    WriteScript(QStringLiteral("/usr/bin/") + name, body.arg(name, scripts.first(), scripts.last()));
    return true;
}

bool WasCalled(const QString& tool, int times)
{
    return FileText(QStringLiteral("/run/calls/") + tool).size() >= qMax(1, times);
}

} // namespace

class FailClosed : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (unshare(CLONE_NEWNS) != 0 || !Shell(Prepare))
            QSKIP("needs namespaces of its own");
        qputenv("PATH", qgetenv("PATH") + ":/run/do");
        ReadTable();
    }

    void init()
    {
        Shell(Clean);
        WriteFile(Victim, "victim");
        m_settings.clear();
        m_arguments.clear();
        m_wrapper.clear();
        m_damage.clear();
        m_lastSignal = 0;
        std::for_each(m_tools.begin(), m_tools.end(), InstallTool);
        if (!m_desktop)
            m_desktop = std::make_unique<Desktop>();
    }

    void cleanup() { m_gate.reset(); }

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
        m_limitMs = 1000 * (row.size() > 3 ? row.at(3).toInt() : DefaultLimitS);
        for (const QString& word : WordsOf(row.at(0)))
            QVERIFY2(Do(word.section(QLatin1Char(':'), 0, 0), word.section(QLatin1Char(':'), 1)), qPrintable(word));
        QCOMPARE(Ending(row.at(1)), row.at(1));
        QString fates;
        for (const QString& path : SavedUserFiles)
            fates += QLatin1Char(Fate(path, m_traitsBefore));
        QCOMPARE(fates, row.at(2));
        QCOMPARE(FileText(Victim), QByteArray("victim"));
        QCOMPARE(ModeOf(Victim), 0644U);
    }

private:
    void ReadTable()
    {
        const QString table = QString::fromUtf8(FileText(QStringLiteral(PROJECT_DIR "/tests/tables/failclosed.tsv")));
        for (const QString& line : table.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const QStringList cells = line.split(QLatin1Char('\t'));
            if (line.startsWith(QLatin1Char('$')))
                WriteScript(ScriptFolder + cells.at(0).mid(1), cells.at(1));
            else if (line.startsWith(QLatin1String("tool\t")))
                m_tools += cells.at(1);
            else if (cells.size() == 2)
                m_macros[cells.at(0)] = cells.at(1);
            else if (!line.startsWith(QLatin1Char('#')))
                for (const QString& row : Expanded(line))
                    m_rows += row.split(QLatin1Char('\t'));
        }
    }

    // The words of a text, those of its macros in their places.
    QStringList WordsOf(const QString& text) const
    {
        QStringList words;
        for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            words += word.startsWith(QLatin1Char('@')) ? WordsOf(m_macros.value(word)) : QStringList{word};
        return words;
    }

    // Notes what holds from the start of the program on, or takes the next step. False: it did not come to pass.
    bool Do(const QString& verb, const QString& text)
    {
        const auto step = m_steps.value(verb);
        if (step)
            return step(text);
        if (verb == QLatin1String("xml"))
            m_settings[text.section(QLatin1Char('='), 0, 0)] = Spaced(text.section(QLatin1Char('='), 1));
        else if (verb == QLatin1String("damage"))
            m_damage = text;
        else if (verb == QLatin1String("arg"))
            m_arguments += text;
        else if (verb == QLatin1String("under"))
            m_wrapper += Parts(text);
        else
            return false;
        return true;
    }

    bool Start()
    {
        m_configuration = std::make_unique<Configuration>(m_settings);
        if (!m_damage.isEmpty() && !RunScript(m_damage, {QFile::decodeName(qgetenv("TAV3_CONFIG_DIR"))}))
            return false;
        for (const QString& path : SavedUserFiles)
            m_traitsBefore[path] = Traits(path);
        m_gate = std::make_unique<Gate>(m_arguments, m_wrapper);
        return true;
    }

    // Leaves the program so many descriptors besides those that it has open.
    bool LimitDescriptors(rlim_t spare) const
    {
        const pid_t pid = m_gate->ProcessId();
        const QDir open(QStringLiteral("/proc/%1/fd").arg(pid), {}, QDir::NoSort, QDir::AllEntries | QDir::System);
        struct rlimit limit = {};
        prlimit(pid, RLIMIT_NOFILE, nullptr, &limit);
        limit.rlim_cur = open.count() - 2 + spare; // but "." and ".."
        return prlimit(pid, RLIMIT_NOFILE, &limit, nullptr) == 0;
    }

    bool Kill(int number)
    {
        m_lastSignal = number;
        return kill(m_gate->ProcessId(), number) == 0;
    }

    // How the program ended within the time limit, in the table's words.
    QString Ending(const QString& expected)
    {
        const int waitMs = expected == QLatin1String("asking") ? 0 : m_limitMs;
        const bool ended = Within(waitMs, [this] { return !m_gate->IsRunning(); });
        if (expected == QLatin1String("closed") && !(ended && (m_gate->Status() == 0 || m_gate->Status() == 8)))
            return expected;
        if (!ended)
            return QStringLiteral("asking");
        const int status = m_gate->Status();
        return m_lastSignal != 0 && status == 128 + m_lastSignal ? QStringLiteral("killed") : QString::number(status);
    }

    const QHash<QString, std::function<bool(const QString&)>> m_steps{
        {QStringLiteral("tool"), InstallTool},
        {QStringLiteral("do"), [](const QString& text) { return RunScript(text); }},
        {QStringLiteral("start"), [this](const QString&) { return Start(); }},
        {QStringLiteral("key"), [this](const QString& text) { return m_desktop->Keys(Parts(text)), true; }},
        {QStringLiteral("see"),
         [this](const QString& text) { return Within(m_limitMs, [&] { return FocusedTitle() == Spaced(text); }); }},
        {QStringLiteral("stays"),
         [](const QString& text) { return !Within(NeverMs, [&] { return FocusedTitle() != Spaced(text); }); }},
        {QStringLiteral("called"),
         [this](const QString& text) {
             return Within(m_limitMs, [&] { return WasCalled(Parts(text).first(), Parts(text).value(1).toInt()); });
         }},
        {QStringLiteral("close"),
         [this](const QString& text) { return AskToClose(m_desktop->Window(Spaced(text))), true; }},
        {QStringLiteral("x-gone"), [this](const QString&) { return m_desktop.reset(), true; }},
        {QStringLiteral("descriptors"), [this](const QString& text) { return LimitDescriptors(text.toUInt()); }},
        {QStringLiteral("kill"), [this](const QString& text) { return Kill(SignalNumber(text)); }},
    };
    QList<QStringList> m_rows;
    QStringList m_tools;
    QMap<QString, QString> m_macros;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Configuration> m_configuration;
    std::unique_ptr<Gate> m_gate;
    QMap<QString, QString> m_settings;
    QStringList m_arguments;
    QStringList m_wrapper;
    QString m_damage;
    QMap<QString, QByteArray> m_traitsBefore;
    int m_limitMs = 0;
    int m_lastSignal = 0;
};

QTEST_GUILESS_MAIN(FailClosed)
#include "e2e_failclosed.moc"
