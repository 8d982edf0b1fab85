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

// Writes the whole text or leaves the file empty: half a credential must not look like one.
void WriteWhole(const QString& path, const QString& text)
{
    QFile file(path);
    if (!OpenGuarded(file, GuardedMode::Truncate))
        return;
    const QByteArray bytes = text.toLatin1();
    if (file.write(bytes) != bytes.size() || !file.flush())
        file.resize(0); // nothing more can be done when this fails too
    file.close();
}

} // namespace

void LoginCfg::SaveUserFiles(const QString& name, const QString& password, const QString& domain)
{
    const QString nameHash = Hashed(name);
    const QString passwordHash = Hashed(password);
    WriteWhole(QStringLiteral("/tmp/.user"),
               QStringLiteral("$U") + nameHash + QStringLiteral("\n$P") + passwordHash + QStringLiteral("\n"));
    const QStringList fields{Enciphered(name), Enciphered(password), Enciphered(domain)};
    WriteWhole(SavedUserFile, fields.join(Separator) + QStringLiteral("\n"));
}

QString LoginCfg::LoadSavedUserName() const
{
    if (!loggedIn)
        return {};
    QFile file(SavedUserFile);
    if (!OpenGuarded(file, GuardedMode::Read))
        return {};
    const QString text = QString::fromLatin1(file.readAll());
    file.close();
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
