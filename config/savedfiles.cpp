// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"

#include "base/guardedfile.h"
#include "config/support.h"

#include <QDateTime>
#include <QFileInfo>
#include <QTextStream>

namespace {

constexpr qint64 LoginLogMaxBytes = 65536;
const QString SavedUserFile = QStringLiteral("/tmp/.user.1");
const QString Separator = QStringLiteral(",00,");

// A line that holds three enciphered fields is far shorter.
constexpr qint64 SavedUserMaxBytes = 65536;

QString SavedName()
{
    const QString text = QString::fromLatin1(ReadGuarded(SavedUserFile, SavedUserMaxBytes));
    return Deciphered(text.split(Separator).first());
}

} // namespace

void LoginCfg::SaveUserFiles(const QString& name, const QString& password, const QString& domain)
{
    UserHashes hashes(name, password);
    SaveUserFiles(hashes, domain);
}

void LoginCfg::SaveUserFiles(UserHashes& user, const QString& domain)
{
    const QString lines
        = QStringLiteral("$U") + user.OfName() + QStringLiteral("\n$P") + user.OfPassword() + QLatin1Char('\n');
    const QStringList fields{Enciphered(user.Name()), Enciphered(user.Password()), Enciphered(domain)};
    if (SavedName() != user.Name())
        RemoveOwn(SavedUserFile); // should we end between the two, no file of another user stands beside the new one
    ReplaceGuarded(QStringLiteral("/tmp/.user"), lines.toLatin1());
    ReplaceGuarded(SavedUserFile, (fields.join(Separator) + QLatin1Char('\n')).toLatin1());
}

QString LoginCfg::LoadSavedUserName() const
{
    if (!loggedIn)
        return {};
    return SavedName();
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
