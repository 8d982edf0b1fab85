// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>

// From here on a connection that Qt can't make ends the test: string-based ones fail only at run time.
void AbortOnConnectWarnings();
// What was logged since the last call, one text a message; kept from AbortOnConnectWarnings on.
QStringList TakeMessages();

QByteArray FileText(const QString& path);
void WriteFile(const QString& path, const QByteArray& text);
void WriteScript(const QString& path, const QByteArray& body); // of sh
unsigned ModeOf(const QString& path);                          // the permission bits
// The text with "T" in the place of each time as the logs write it.
QString WithoutTimes(QString text);
QString Joined(const QStringList& texts, char separator = '|');
// The text with what `replacement` makes of N in the place of each "{N}".
QString Filled(QString text, const std::function<QByteArray(qint64)>& replacement);

// Runs a line of sh in a folder; whether it ended well.
bool ShellIn(const QString& folder, const QString& script);

// The exit code of `body` in a forked process; minus the number of the signal that ended it.
int ForkedCode(const std::function<int()>& body);

// The last tick of a day before (negative) or after today, as the directory prints it.
QByteArray DirectoryTime(qint64 daysFromToday);

// Stand-ins for command-line tools, in a folder at the head of PATH while this object lives.
class FakeTools {
public:
    FakeTools();
    ~FakeTools();

    // A tool that records its arguments, one line a call, and then is a shell script; "$here" is the folder.
    void InstallScript(const QString& name, const QByteArray& script);
    // A directory behind ldapsearch: its root entry, and what a bound search gets: an entry, or a complaint (status 49)
    // when it begins with "ldap_bind". Servers named "dead..." don't answer, those named "plain..." only without TLS.
    void InstallDirectory(const QByteArray& root, const QByteArray& answer);
    // One that accepts everybody; every password ends in three days.
    void InstallExpiringDirectory();
    // The argument lists of the calls so far, one text a call, the arguments joined with "|".
    QStringList Calls(const QString& name) const;
    QString Path(const QString& name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};
