// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/terminalconfig.h"

#include <QFile>
#include <cstdlib>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

TerminalConfig::TerminalConfig() : user(UserName(geteuid()))
{
    const char* variable = secure_getenv("TAV3_CONFIG_DIR");
    folder = variable && *variable ? QFile::decodeName(variable) : QStringLiteral("/etc/tav3");
    registryStore = xml.GetBoolValue(QStringLiteral("user/system/systeminfo"), QStringLiteral("uselegacyapplets"));
    path = folder + QLatin1Char('/') + Key("config.xml", "registry.reg");
}

QString TerminalConfig::Key(const char* xmlKey, const char* registryName) const
{
    return QLatin1String(registryStore ? registryName : xmlKey);
}

// "force" asks a named server even when remote authentication is off. In the registry-style store it is on without one,
// which matters only when there is no local password either.
bool TerminalConfig::UsesDirectory() const
{
    return !cfg.remoteServer.isEmpty() || cfg.RemoteAuthOnly() || (cfg.remoteAuthEnabled && !registryStore);
}

const char* BecomeUser(const QString& name)
{
    if (name.isEmpty())
        return nullptr;
    const passwd* entry = getpwnam(QFile::encodeName(name).constData());
    if (!entry)
        return "there is no such user";
    if (entry->pw_uid == geteuid())
        return nullptr;
    if (geteuid() != 0)
        return "only root can look with the rights of another user";
    if (initgroups(entry->pw_name, entry->pw_gid) != 0 || setgid(entry->pw_gid) != 0 || setuid(entry->pw_uid) != 0)
        return "the rights of this user can't be taken";
    for (const auto& [variable, value] :
         {std::pair("HOME", entry->pw_dir), std::pair("USER", entry->pw_name), std::pair("LOGNAME", entry->pw_name)})
        setenv(variable, value, 1);
    return nullptr;
}

QString UserName(unsigned id)
{
    const passwd* entry = getpwuid(id);
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString::number(id);
}
