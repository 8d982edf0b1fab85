// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include "tav3/crypt.h"
#include "tests/support/gatedriver.h"
#include "tests/support/testsupport.h"
#include "tests/support/xview.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>
#include <ctime>
#include <sys/stat.h>

// What a situation claims of the screen, the logs and the files. One object for each situation, made as that begins:
// what it remembers is that of the situation so far. None of it waits, except as it says.
class SituationChecks {
public:
    explicit SituationChecks(const QStringList& secrets) : m_secrets(secrets) { }

    static bool ShowsMessage() { return MessagePixels() > 0; }

    bool LooksIdle()
    {
        if (m_idlePointer.isEmpty())
            m_idlePointer = PointerPicture();
        return !ShowsMessage() && PointerPicture() == m_idlePointer;
    }

    bool LooksBusy() const { return MessagePixels(16) > 20 && PointerPicture() != m_idlePointer; }

    // Whether one of the logs has this text; "_" there counts as a blank.
    static bool IsLogged(const QString& text)
    {
        QString logs = DebugLog() + QString::fromUtf8(FileText(QStringLiteral("/tmp/AdPwdTest.log")));
        return logs.replace(QLatin1Char('_'), QLatin1Char(' ')).contains(text);
    }

    // Remembers the saved users.
    void BeforeStart()
    {
        for (const QString& path : SavedUserFiles)
            m_traitsBefore[path] = Traits(path);
    }

    // The name and the password that are to be saved.
    void Expect(const QStringList& user) { m_user = user; }

    // What became of the saved-user files, a letter each.
    QString Fates() const
    {
        QString fates;
        for (const QString& path : SavedUserFiles)
            fates += QLatin1Char(Fate(path));
        return fates;
    }

    // Of what planted links point to.
    bool IsVictimChanged() const { return Traits(Victim) != m_victim; }

    // The files that hold a secret, those of the running program too when it is not 0.
    QStringList Leaks(pid_t program) const
    {
        if (m_secrets.isEmpty())
            return {};
        QStringList files;
        for (const QString& folder : WritableFolders)
            files += FilesSince(m_beginning, folder);
        if (program != 0) {
            const QString process = QStringLiteral("/proc/%1/").arg(program);
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

private:
    // What tells a file from any other; empty when there is none.
    static QByteArray Traits(const QString& path)
    {
        struct stat info { };
        if (lstat(QFile::encodeName(path).constData(), &info) != 0)
            return {};
        return QByteArray::number(quint64(info.st_ino)) + ' ' + QByteArray::number(info.st_mode) + ' '
            + (S_ISREG(info.st_mode) ? FileText(path) : QByteArray());
    }

    static bool IsHashOf(const QString& hash, const QString& text)
    {
        return hash == QLatin1String(crypt_passwd(text.toLatin1().constData(), hash.toLatin1().constData()));
    }

    // Whether the file holds that user, a name and a password, as the program saves one.
    static bool Holds(const QString& path, const QStringList& user)
    {
        const QStringList saved = user + QStringList{QStringLiteral("example.org")};
        if (path.endsWith(QLatin1String(".1")))
            return Joined(SavedUser(path), '\0').toLatin1() == Joined(saved, '\0').toLatin1(); // its character set
        static const QRegularExpression hashes(QStringLiteral("^\\$U(\\$y\\$\\S{70})\n\\$P(\\$y\\$\\S{70})\n\\z"));
        const QRegularExpressionMatch match = hashes.match(QString::fromLatin1(FileText(path)));
        return match.hasMatch() && IsHashOf(match.captured(1), user.value(0))
            && IsHashOf(match.captured(2), user.value(1));
    }

    // Whether the ASCII text stands in the bytes, in Latin-1 or UTF-8, or in UTF-16, whose two byte orders have all but
    // the outer zero in common.
    static bool Contains(const QByteArray& bytes, const QString& text)
    {
        const QByteArray wide(reinterpret_cast<const char*>(text.utf16()), text.size() * 2 - 1);
        return bytes.contains(text.toLatin1()) || bytes.contains(wide);
    }

    // Whether this program itself has the file open: a test runner, and whoever keeps what that prints, leave it the
    // reports, which name the situations.
    static bool IsReport(const struct stat& file)
    {
        struct stat own { };
        for (const QString& descriptor : QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::Files)) {
            if (fstat(descriptor.toInt(), &own) == 0 && own.st_dev == file.st_dev && own.st_ino == file.st_ino)
                return true;
        }
        return false;
    }

    // The regular files below a folder that were written since then, but for reports.
    static QStringList FilesSince(time_t beginning, const QString& folder)
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

    // The dialog's message line has a colour of its own, which the default style sheet gives it.
    static qint64 MessagePixels(int tolerance = 0)
    {
        const QRegularExpression rule(QStringLiteral("#lblMessage[^{]*\\{ color: #([0-9a-f]{6})"));
        const QString sheet = QString::fromUtf8(FileText(QStringLiteral(PROJECT_DIR "/tav3/default.qss")));
        return CountPixels(rule.match(sheet).captured(1).toUInt(nullptr, 16), tolerance);
    }

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

    const QString Victim = QStringLiteral("/tmp/victim");
    const QStringList SavedUserFiles{QStringLiteral("/tmp/.user"), QStringLiteral("/tmp/.user.1"),
                                     QStringLiteral("/tmp/.newuser"), QStringLiteral("/tmp/.newuser.1")};
    const QStringList WritableFolders{QStringLiteral("/tmp"),           QStringLiteral("/run"),
                                      QStringLiteral("/dev/shm"),       QStringLiteral("/etc/samba"),
                                      QStringLiteral("/var/lib/samba"), QStringLiteral("/var/log/samba")};

    QStringList m_secrets;
    time_t m_beginning = time(nullptr);
    QByteArray m_victim = Traits(Victim);
    QStringList m_user;
    QMap<QString, QByteArray> m_traitsBefore;
    QByteArray m_idlePointer;
};
