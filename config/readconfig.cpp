// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/logincfg.h"

#include "tav3/regini.h"
#include "tav3/xmlconfig.h"

#include <QDebug>
#include <unistd.h>

namespace {

const QString SystemInfo = QStringLiteral("user/system/systeminfo");
const QString Security = QStringLiteral("user/system/security");
constexpr unsigned ReadAccess = 0x20019; // KEY_READ of the registry

bool Flag(const TavXmlConfig& xml, const char* key)
{
    return xml.GetBoolValue(Security, QLatin1String(key));
}

QString Text(const TavXmlConfig& xml, const char* key)
{
    return xml.GetConfig(Security, QLatin1String(key), false, QString(), false);
}

} // namespace

LoginCfg::LoginCfg(bool terminalPasswordModeFlag)
{
    qDebug() << "LoginCfg()";
    ReadConfig();
    terminalPasswordMode = terminalPasswordModeFlag;
}

bool LoginCfg::ReadConfig()
{
    const TavXmlConfig xml;
    const QString legacyKey = QStringLiteral("uselegacyapplets");
    const bool legacy = xml.GetBoolValue(SystemInfo, legacyKey);
    qDebug() << xml.GetConfig(SystemInfo, legacyKey, false, QString(), false) << legacy;
    if (legacy)
        ReadRegistryStore();
    else
        ReadXmlStore(xml);
    SplitServers();
    authEnabled = localAuthEnabled || remoteAuthEnabled;
    resultMessage.clear();
    return needAuthentication;
}

// The key "enablecontrolledpanel" of this section belongs to another program.
void LoginCfg::ReadXmlStore(const TavXmlConfig& xml)
{
    needAuthentication = Flag(xml, "enableterminalpass");
    terminalPassword = Text(xml, "terminalpass");
    localAuthEnabled = Flag(xml, "enablelocalauth");
    localAuthPassword = Text(xml, "localauthpass");
    remoteServer = Text(xml, "remoteauthserver");
    remoteAuthEnabled = Flag(xml, "enableremoteauth");
    serverType = Text(xml, "remoteauthtype");
    remoteDomain = Text(xml, "remoteauthdomain");
    requireCert = Flag(xml, "reqcert");
    remotePort = Text(xml, "remoteauthport"); // an absent key empties it; intended
}

void LoginCfg::ReadRegistryStore()
{
    TavRegIni store;
    if (store.OpenKey(QStringLiteral("HKEY_LOCAL_MACHINE"), QStringLiteral("Software\\Tessaloquin\\Qorm"), ReadAccess))
        return;
    needAuthentication = store.GetBoolean(QStringLiteral("NeedAuthentication"), false);
    terminalPassword = store.GetSz(QStringLiteral("Password"), QString());
    localAuthPassword = store.GetSz(QStringLiteral("LocalUserPasswd"), QString());
    localAuthEnabled = !localAuthPassword.isEmpty();
    remoteServer = store.GetSz(QStringLiteral("ConfigServer"), QString());
    serverType = store.GetSz(QStringLiteral("ServerType"), QString());
    remoteDomain = store.GetSz(QStringLiteral("BaseDN"), QString());
    remoteAuthEnabled = remoteServer.isEmpty(); // inverted in this store, as its terminals expect
    store.CloseKey();
}

// "first second further" names the server and its backup.
void LoginCfg::SplitServers()
{
    backupServer.clear();
    QStringList servers = remoteServer.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (QString& server : servers)
        server = server.trimmed();
    if (servers.isEmpty())
        return;
    remoteServer = servers.first();
    if (servers.size() > 1)
        backupServer = servers.at(1);
}

bool LoginCfg::IsLoggedIn()
{
    if (access("/tmp/.config/.loggedin", F_OK) == 0 && access("/tmp/.user.1", F_OK) == 0)
        loggedIn = true;
    return loggedIn;
}
