// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"

#include "base/guardedfile.h"
#include "config/support.h"

#include <QDateTime>
#include <QFileInfo>
#include <QTextStream>
#include <tuple>
#include <unistd.h>

namespace {

constexpr qint64 LoginLogMaxBytes = 65536;
const QString SavedUserFile = QStringLiteral("/tmp/.user.1");
const QString Separator = QStringLiteral(",00,");

// A line that holds three enciphered fields is far shorter.
constexpr qint64 SavedUserMaxBytes = 65536;

// Writes the whole text or leaves the file empty: half a credential must not look like one.
void WriteWhole(QFile& file, const QString& text)
{
    const QByteArray bytes = text.toLatin1();
    const bool written = file.write(bytes) == bytes.size() && file.flush();
    // Past QFile, which would first try to write the rest. Nothing is left to do when this fails too.
    if (!written)
        std::ignore = ftruncate(file.handle(), 0);
    file.close();
}

} // namespace

void LoginCfg::SaveUserFiles(const QString& name, const QString& password, const QString& domain)
{
    const QString nameHash = Hashed(name);
    const QString passwordHash = Hashed(password);
    QFile hashed(QStringLiteral("/tmp/.user"));
    if (OpenGuarded(hashed, GuardedMode::Truncate))
        WriteWhole(hashed, QStringLiteral("$U") + nameHash + QStringLiteral("\n$P") + passwordHash + QLatin1Char('\n'));
    QFile enciphered(SavedUserFile);
    if (!OpenGuarded(enciphered, GuardedMode::Truncate))
        return;
    const QStringList fields{Enciphered(name), Enciphered(password), Enciphered(domain)};
    WriteWhole(enciphered, fields.join(Separator) + QLatin1Char('\n'));
}

QString LoginCfg::LoadSavedUserName() const
{
    if (!loggedIn)
        return {};
    const QString text = QString::fromLatin1(ReadGuarded(SavedUserFile, SavedUserMaxBytes));
    return Deciphered(text.split(Separator).first());
}

void LoginCfg::WriteLoginLog(const QString& text)
{
    QFile file(QStringLiteral("/tmp/config/files/QXlogin.log"));
    if (QFileInfo(file).size() > LoginLogMaxBytes || !OpenGuarded(file, GuardedMode::Append))
        return;
    QTextStream stream(&file);
    stream << QDateTime::currentDateTime().toString(Qt::TextDate) << "::" << text << "\n";
    stream.flush();
    file.close();
}
