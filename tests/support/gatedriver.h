// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <functional>
#include <memory>

// Runs the built program as its terminal does: on an X server of its own, with a written configuration, by real keys.
// Whoever waits here polls with a limit.

constexpr int WaitMs = 15000; // for what must happen; the machine may be busy
constexpr int NeverMs = 600;  // for what must not

// Waits until `condition` holds; whether it does within the limit.
bool Within(int limitMs, const std::function<bool()>& condition);

// The words of a text, which stand between blanks.
QStringList Words(const char* text);

// Ends with its object.
class Service {
public:
    Service() = default;
    ~Service();
    QProcess process;
};

// An X server with nothing on it but what the test starts. A key that is held down repeats every 30 ms after 200 ms.
class Desktop {
public:
    Desktop();
    void StartWindowManager();
    void StopWindowManager() { m_windowManager.reset(); }

    // Key presses without a pause between them: "Tab alt+F4".
    void Keys(const char* keys) const { Keys(Words(keys)); }
    void Keys(const QStringList& keys) const;
    // A text, and then such keys.
    void Type(const QString& text, const char* keys = "") const;
    // In the remote-login dialog, as soon as it is there, with the focus in the user name.
    void SignIn(const QString& user, const QString& password) const;
    void HoldDown(const char* key) const;
    void Release(const char* key) const;
    // The visible window of that title, 0 for none.
    unsigned long Window(const QString& title) const;
    // Of all titles and none, tooltips included.
    int WindowCount() const;
    bool Shows(const QString& title) const;
    bool Hides(const QString& title) const;
    // Whether a box of that title comes, and goes on Return.
    bool Confirms(const QString& title) const;

private:
    Service m_server;
    std::unique_ptr<Service> m_windowManager;
};

// A configuration folder whose config.xml holds these keys of the security section; the gates started next read it.
class Configuration {
public:
    explicit Configuration(const QMap<QString, QString>& security);

private:
    QTemporaryDir m_folder;
};

// Removes what an earlier gate left, saved users and logs, and switches the debug log on.
void CleanTerminal();

// One run of the program. A wrapper is a command that ends in running its arguments.
class Gate {
public:
    explicit Gate(const QStringList& arguments = {}, const QStringList& wrapper = {},
                  const QString& program = QStringLiteral(BUILD_DIR "/bin/qorm-login"));
    ~Gate();

    // The exit status as shells have it, 128 plus its number for a signal; -1 when the program does not end.
    int Status();
    pid_t ProcessId() const { return static_cast<pid_t>(m_process.processId()); } // of the first of the wrappers
    bool IsRunning() const { return m_process.state() == QProcess::Running; }
    // Whether a line with `text` comes into the debug log, at least `times` times since CleanTerminal.
    static bool Logs(const QString& text, int times = 1, int limitMs = WaitMs);
    // The debug log and the audit file since CleanTerminal.
    static QByteArray Logged();
    // The last line that tells of an attempt's end: its sentence, code and success.
    static QString LastOutcome();

private:
    QProcess m_process;
};

// The demo's domain controller, answering at dc1.example.org; its users stand in lab/users.tsv.
class DomainController {
public:
    DomainController();
    ~DomainController();
    void SetState(const QString& user, const QString& state) const;
    void SetPassword(const QString& user, const QString& password) const;
    static QMap<QString, QString> Settings(); // of a terminal of that domain
    QString CertificateFile() const;
};
