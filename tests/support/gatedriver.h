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

// For what must happen. On a busy machine a change of the password by the real smbpasswd took more than 10 s.
constexpr int WaitMs = 30000;
constexpr int NeverMs = 600; // for what must not

// Waits until `condition` holds; whether it does within the limit.
bool Within(int limitMs, const std::function<bool()>& condition);

// The words of a text, which stand between blanks.
QStringList Words(const char* text);

// Runs a command that must succeed, to its end.
void Run(const QString& program, const QStringList& arguments);

// Ends with its object.
class Service {
public:
    Service() = default;
    ~Service();
    QProcess process;
};

// An X server with nothing on it but what the test starts. A key that is held down repeats every 30 ms after
// 700 ms: sooner, and on a busy machine one that is only pressed could.
class Desktop {
public:
    Desktop();
    // Key presses without a pause between them, such as "Tab" or "alt+F4".
    void Keys(const QStringList& keys) const;
    // A text, and then such keys.
    void Type(const QString& text, const char* keys = "") const;

private:
    Service m_server;
};

// A configuration folder whose config.xml holds these keys of the security section; the gates started next read it.
class Configuration {
public:
    explicit Configuration(const QMap<QString, QString>& security);

private:
    QTemporaryDir m_folder;
};

// Removes what an earlier gate left: saved users, the key, logs and pictures.
void CleanTerminal();
// The lines of the debug log, which a file /tmp/debug-login switches on.
QString DebugLog();
// The fields of the saved user in /tmp/.user.1 or another such file.
QStringList SavedUser(const QString& path);

// One run of the program. A wrapper is a command that ends in running its arguments.
class Gate {
public:
    explicit Gate(const QStringList& arguments = {}, const QStringList& wrapper = {});
    ~Gate();

    bool EndsWithin(int limitMs) const;
    int Status() const; // when it has ended; as shells have it, 128 plus its number for a signal
    pid_t ProcessId() const { return static_cast<pid_t>(m_process.processId()); } // of the first of the wrappers

private:
    QProcess m_process;
};

// The demo's domain controller, answering at dc1.example.org; its users stand in lab/users.tsv.
class DomainController {
public:
    DomainController() { Tell(QStringLiteral("start"), {QStringLiteral(BUILD_DIR "/dc")}); }
    ~DomainController() { Tell(QStringLiteral("stop")); }
    // Runs lab/dc.
    void Tell(const QString& verb, const QStringList& arguments = {}) const;
};
