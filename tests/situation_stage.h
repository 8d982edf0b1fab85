// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/situation_table.h"
#include "tests/support/gatedriver.h"

#include <algorithm>
#include <sched.h>

// Where the situations of a table take place: its scripts, the terminal's tools, the X server, the domain controller.
class Stage {
public:
    explicit Stage(const SituationTable& table) : m_table(table) { }

    // False: the kernel does not grant the world that the table needs.
    bool Build()
    {
        if (m_table.needsWorld) {
            if (qgetenv("GATE_SANDBOX") != "namespaces" || unshare(CLONE_NEWNS) != 0 || !ShellIn({}, PrepareWorld))
                return false;
            m_folder = QStringLiteral("/run");
            m_toolFolder = QStringLiteral("/usr/bin");
        }
        if (!ShellIn(m_folder, QStringLiteral("mkdir do calls tools cores; mkfifo tell")))
            qFatal("%s can't be written", qPrintable(m_folder));
        qputenv("WORLD", m_folder.toLocal8Bit());
        const QString path = QStringLiteral("%1/tools:%2:%1/do").arg(m_folder, QString::fromLocal8Bit(qgetenv("PATH")));
        qputenv("PATH", path.toLocal8Bit());
        for (auto script = m_table.scripts.begin(); script != m_table.scripts.end(); ++script)
            WriteScript(Path("do/") + script.key(), script.value());
        if (m_table.needsDomain)
            domain = std::make_unique<DomainController>();
        return true;
    }

    // As before every situation.
    void Clean()
    {
        if (m_table.needsWorld)
            ShellIn({}, CleanWorld);
        ShellIn(m_folder, QStringLiteral("rm -f tools/* calls/* cores/* output"));
        CleanTerminal();
        for (const QString& tool : m_table.tools)
            InstallTool(tool);
        if (!desktop)
            desktop = std::make_unique<Desktop>();
    }

    // Runs a script, "NAME+ARGUMENT+ARGUMENT"; whether it succeeded.
    bool RunScript(const QString& text) const
    {
        const QStringList words = text.split(QLatin1Char('+'));
        return QProcess::execute(Path("do/") + words.first(), words.mid(1)) == 0;
    }

    // Makes a tool, "NAME=SCRIPT", that notes each call, briefly as a file may have to stay small, and then is the
    // script; of "NAME=FIRST/SECOND" the first for the directory's root entry.
    void InstallTool(const QString& text) const
    {
        const QString name = text.section(QLatin1Char('='), 0, 0);
        const QStringList scripts = text.section(QLatin1Char('='), 1).split(QLatin1Char('/'));
        const QString body = QStringLiteral("echo \"$$ $1 $2\" >> %1/calls/%2\n"
                                            "case \"$*\" in *namingContexts) exec %3 \"$@\" ;; esac\n"
                                            "exec %4 \"$@\"");
        WriteScript(m_toolFolder + QLatin1Char('/') + name,
                    body.arg(m_folder, name, scripts.first(), scripts.last()).toUtf8());
    }

    // The first two arguments of each call of a tool, in one text. The processes' numbers say which was started first:
    // nobody waits for one that reports an event, and under load a later one can be the first to note its call.
    QStringList Calls(const QString& tool) const
    {
        const QByteArray text = FileText(Path("calls/") + tool);
        QStringList calls = QString::fromUtf8(text).split(QLatin1Char('\n')).mid(0, text.count('\n'));
        const auto number = [](const QString& call) { return call.section(QLatin1Char(' '), 0, 0).toInt(); };
        std::sort(calls.begin(), calls.end(),
                  [number](const QString& a, const QString& b) { return number(a) < number(b); });
        for (QString& call : calls)
            call = call.section(QLatin1Char(' '), 1);
        return calls;
    }

    QString Path(const char* file) const { return m_folder + QLatin1Char('/') + QLatin1String(file); }

    std::unique_ptr<Desktop> desktop;
    std::unique_ptr<DomainController> domain;

private:
    // A world for this process alone, where /usr/bin can be written, and /tmp be filled up.
    const QString PrepareWorld = QStringLiteral("mkdir /run/upper /run/work && mount -t overlay overlay"
                                                " -o lowerdir=/usr/bin,upperdir=/run/upper,workdir=/run/work /usr/bin"
                                                " && mount -o remount,size=8m /tmp");
    const QString CleanWorld
        = QStringLiteral("while read -r _ f _; do case $f in /tmp/?* | /etc/samba/?*) umount \"$f\" ;; esac; done"
                         " < /proc/mounts; cd /usr/bin; rm -rf ldapsearch smbpasswd send_event.sh wshutdown"
                         " /tmp/.config /tmp/fill /etc/samba/smb.conf; printf victim > /tmp/victim");

    const SituationTable& m_table;
    QTemporaryDir m_temporary;
    QString m_folder = m_temporary.path(); // of the scripts, and what they leave
    QString m_toolFolder = m_folder + QStringLiteral("/tools");
};
