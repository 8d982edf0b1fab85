// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

// From here on a connection that Qt can't make ends the test: string-based ones fail only at run time.
void AbortOnConnectWarnings();

QByteArray FileText(const QString& path);
void WriteFile(const QString& path, const QByteArray& text);

// Stand-ins for command-line tools, in a folder at the head of PATH while this object lives.
class FakeTools {
public:
    FakeTools();
    ~FakeTools();

    // A tool that records its arguments (one line a call), prints and ends so.
    void Install(const QString& name, const QByteArray& output, const QByteArray& error = {}, int status = 0);
    // A tool with a shell script of its own; "$here" is the folder.
    void InstallScript(const QString& name, const QByteArray& script);
    void Remove(const QString& name);
    // The argument lists of the calls so far, one text a call, the arguments joined with "|".
    QStringList Calls(const QString& name) const;
    QString Path(const QString& name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
    QByteArray m_path;
};
