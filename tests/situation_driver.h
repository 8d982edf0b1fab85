// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/situation_checks.h"
#include "tests/situation_stage.h"

#include <cstring>
#include <sys/resource.h>

// Plays one situation, by real keys, on a stage that has been cleaned; the program ends with the object.
class SituationDriver {
public:
    SituationDriver(Stage& stage, const QStringList& secrets, int limitS)
        : m_stage(stage), m_checks(secrets), m_limitMs(1000 * limitS)
    {
    }

    // What came of it, in the table's words: the status, a tab and the fates of the files; or what did not come to
    // pass.
    QString Play(const Situation& situation)
    {
        for (const QString& word : situation.steps) {
            m_taken += word;
            const auto step = m_steps.value(Before(QLatin1Char(':'), word).toLatin1());
            if (!step)
                return QStringLiteral("the language has no %1").arg(word);
            if (!step(After(QLatin1Char(':'), word)))
                return QStringLiteral("no %1; ").arg(word) + State();
        }
        return Outcome(situation.status);
    }

    // The steps so far, the last of them the one that failed, if any did.
    QStringList Taken() const { return m_taken; }

private:
    using Text = const QString&;

    static QStringList Parts(const QString& text) { return text.split(QLatin1Char('+')); }

    // "Tab+alt-F4" as xdotool wants it.
    static QStringList Keys(const QString& text)
    {
        return Parts(text).replaceInStrings(QStringLiteral("-"), QStringLiteral("+"));
    }

    static QString Spaced(QString text) { return text.replace(QLatin1Char('_'), QLatin1Char(' ')); }

    static QString Before(QChar mark, const QString& text) { return text.section(mark, 0, 0); }

    static QString After(QChar mark, const QString& text) { return text.section(mark, 1); }

    bool Eventually(const std::function<bool()>& condition) const { return Within(m_limitMs, condition); }

    QString Events() const { return Joined(m_stage.Calls(QStringLiteral("send_event.sh")), '+'); }

    QString Outcome(const QString& expectedStatus) const
    {
        QString outcome = Ending(expectedStatus) + QLatin1Char('\t'); // the files are only right after that
        outcome += m_checks.Fates();
        if (m_checks.IsVictimChanged())
            outcome += QStringLiteral(" and a change of what a link points to");
        const QStringList leaks = m_checks.Leaks(Program());
        return leaks.isEmpty() ? outcome : outcome + QStringLiteral(" and a secret in ") + leaks.join(QLatin1Char(' '));
    }

    QString State() const
    {
        return QStringLiteral("%1 %2, \"%3\" has the keyboard, events: %4, secrets are in: %5")
            .arg(Ending(QStringLiteral("asking")), m_checks.Fates(), m_stage.desktop ? FocusedTitle() : QString(),
                 Events(), m_checks.Leaks(Program()).join(QLatin1Char('+')));
    }

    // How the program ended within the time limit, in the table's words.
    QString Ending(const QString& expected) const
    {
        if (!m_gate)
            return QStringLiteral("not started");
        const bool ended = m_gate->EndsWithin(expected == QLatin1String("asking") ? 0 : m_limitMs);
        if (expected == QLatin1String("closed") && !(ended && (m_gate->Status() == 0 || m_gate->Status() == 8)))
            return expected;
        if (!ended)
            return QStringLiteral("asking");
        const int status = m_gate->Status();
        const bool killed = !m_lastSignal.isEmpty() && m_lastSignal == QLatin1String(sigabbrev_np(status - 128));
        return killed ? QStringLiteral("killed") : QString::number(status);
    }

    // 0 when it does not run.
    pid_t Program() const { return m_gate && !m_gate->EndsWithin(0) ? m_gate->ProcessId() : 0; }

    void Start()
    {
        m_gate.reset();
        m_lastSignal.clear();
        m_configuration = std::make_unique<Configuration>(m_start.settings);
        m_checks.BeforeStart();
        m_gate = std::make_unique<Gate>(m_start.arguments, m_start.wrapper);
    }

    bool ManageWindows()
    {
        m_windowManager.process.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
        return Eventually([] { return ShellIn({}, QStringLiteral("xdotool get_num_desktops")); });
    }

    // Leaves the program so many descriptors besides those that it has open, whatever numbers these have.
    bool LimitDescriptors(unsigned spare) const
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

    bool Sees(const QString& title) const
    {
        return Eventually([&] { return FocusedTitle() == Spaced(title); });
    }

    // A name and a password, in which "%20" is a blank; they are then to be saved.
    QStringList User(const QString& text)
    {
        const QStringList user = Parts(QString::fromUtf8(QByteArray::fromPercentEncoding(text.toUtf8())));
        m_checks.Expect(user);
        return user;
    }

    bool SignIn(const QString& text)
    {
        const QStringList user = User(text);
        if (!Sees(QStringLiteral("User Authentication")))
            return false;
        m_stage.desktop->Type(user.at(0), "Tab");
        m_stage.desktop->Type(user.at(1), "Return");
        return true;
    }

    // As SignIn(), by way of two files that scripts can read.
    bool Paste(const QString& text)
    {
        const QStringList user = User(text);
        WriteFile(m_stage.Path("user"), user.at(0).toUtf8());
        WriteFile(m_stage.Path("password"), user.at(1).toUtf8());
        return Sees(QStringLiteral("User Authentication")) && m_stage.RunScript(QStringLiteral("paste_user"))
            && m_stage.RunScript(QStringLiteral("paste_password"));
    }

    // "TOOL" or "TOOL+TIMES".
    bool WasCalled(const QStringList& call) const
    {
        return Eventually([&] { return m_stage.Calls(call.first()).size() >= qMax(1, call.value(1).toInt()); });
    }

    // Each step by its verb; it gets what stands behind that. False: it did not come to pass.
    const QMap<QByteArray, std::function<bool(Text)>> m_steps{
        // What the next start finds
        {"xml",
         [this](Text text) {
             m_start.settings[Before(QLatin1Char('='), text)] = Spaced(After(QLatin1Char('='), text));
             return true;
         }},
        {"under", [this](Text text) { return m_start.wrapper += Parts(text), true; }},
        {"arg", [this](Text text) { return m_start.arguments += text, true; }},
        // What happens around the program
        {"tool", [this](Text text) { return m_stage.InstallTool(text), true; }},
        {"do", [this](Text text) { return m_stage.RunScript(text); }},
        {"until", [this](Text text) { return Eventually([&] { return m_stage.RunScript(text); }); }},
        {"dc", [this](Text text) { return m_stage.domain->Tell(Parts(text).first(), Parts(text).mid(1)), true; }},
        {"wm", [this](Text) { return ManageWindows(); }},
        {"start", [this](Text) { return Start(), true; }},
        {"kill", [this](Text text) { return Kill(text); }},
        {"x-gone", [this](Text) { return m_stage.desktop.reset(), true; }},
        {"descriptors", [this](Text text) { return LimitDescriptors(text.toUInt()); }},
        // What the user does
        {"key", [this](Text text) { return m_stage.desktop->Keys(Keys(text)), true; }},
        {"type", [this](Text text) { return m_stage.desktop->Type(Spaced(text)), true; }},
        {"sign-in", [this](Text text) { return SignIn(text); }},
        {"paste", [this](Text text) { return Paste(text); }},
        {"close", [this](Text text) { return Sees(text) && (CloseFocused(), true); }},
        // What is to be seen
        {"see", [this](Text text) { return Sees(text); }},
        {"stays", [](Text text) { return !Within(NeverMs, [&] { return FocusedTitle() != Spaced(text); }); }},
        {"busy", [this](Text) { return Eventually([&] { return m_checks.LooksBusy(); }); }},
        {"idle", [this](Text) { return Eventually([&] { return m_checks.LooksIdle(); }); }},
        // What is to be found
        {"called", [this](Text text) { return WasCalled(Parts(text)); }},
        {"events", [this](Text text) { return Eventually([&] { return Events() == Spaced(text); }); }},
        {"logs", [this](Text text) { return Eventually([&] { return SituationChecks::IsLogged(Spaced(text)); }); }},
        {"saves", [this](Text text) { return User(text), true; }},
        {"files", [this](Text text) { return m_checks.Fates() == text; }},
        {"leaks", [this](Text text) { return m_checks.Leaks(Program()).join(QLatin1Char('+')) == text; }},
        {"ends", [this](Text text) { return Ending(text) == text; }},
    };

    Stage& m_stage;
    SituationChecks m_checks;
    int m_limitMs;
    QStringList m_taken;
    struct {
        QMap<QString, QString> settings;
        QStringList arguments;
        QStringList wrapper;
    } m_start; // what the next start of the program is to find
    QString m_lastSignal;
    Service m_windowManager;
    std::unique_ptr<Configuration> m_configuration;
    std::unique_ptr<Gate> m_gate;
};
