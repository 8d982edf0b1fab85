// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/findings.h"

#include "config/support.h"
#include "tav3/regini.h"
#include "tav3/stringblur.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QVector>
#include <cstdlib>

namespace {

const QString SystemInfo = QStringLiteral("user/system/systeminfo");
const QString Security = QStringLiteral("user/system/security");

struct Finding {
    bool applies;
    QString subject;
    const char* rest; // of the sentence
};
using Findings = QVector<Finding>;

bool HasRegistrySection()
{
    const QString path = QStringLiteral("Software\\Tessaloquin\\Qorm");
    return TavRegIni().OpenKey(QStringLiteral("HKEY_LOCAL_MACHINE"), path, 0x20019) == 0; // KEY_READ
}

bool IsObscured(const QString& stored)
{
    return !TavStringBlur::Decode(stored).isNull();
}

Findings StoreFindings(const TerminalConfig& terminal)
{
    const QFileInfo file(terminal.path);
    const QFileInfo folder(terminal.folder);
    const bool isFound = terminal.registryStore ? HasRegistrySection() : file.exists();
    const bool isWritable = file.permission(QFile::WriteOther) || folder.permission(QFile::WriteOther);
    const bool isReadable = file.permission(QFile::ReadOther) && folder.permission(QFile::ExeOther);
    const bool isObscured = IsObscured(terminal.cfg.terminalPassword) || IsObscured(terminal.cfg.localAuthPassword);
    return {{!isFound, terminal.path, "is missing, out of reach or without the gate's section: nothing is protected"},
            {isWritable, terminal.path, "can be changed or replaced by every user"},
            {isReadable && isObscured, terminal.path,
             "can be read by every user, who can undo the obscured password in it"}};
}

// A misspelled switch counts as off, which can leave a terminal open.
Findings SwitchFindings(const TavXmlConfig& xml)
{
    const QRegularExpression switchWord(QStringLiteral("^(true|yes|on|1|false|no|off|0|)$"),
                                        QRegularExpression::CaseInsensitiveOption);
    Findings findings;
    for (const char* key :
         {"uselegacyapplets", "enableterminalpass", "enablelocalauth", "enableremoteauth", "reqcert"}) {
        const QString name = QLatin1String(key);
        const QString& section = findings.isEmpty() ? SystemInfo : Security; // the first key alone is there
        const bool isClear = xml.GetConfig(section, name, false, QString(), false).contains(switchWord);
        findings.append({!isClear, name, "in config.xml is neither true nor false, and counts as false"});
    }
    return findings;
}

Findings PasswordFindings(bool isAskedFor, const QString& name, const QString& stored)
{
    // A whole hash is as long as the hash that any other input has with its salt.
    const bool isHash = !stored.isEmpty() && HashedWith(QString(), stored.toLatin1()).size() == stored.size();
    const bool isUnknown = !stored.isEmpty() && !isHash && !IsObscured(stored);
    // Thirteen letters of plain text can't be told from a hash of the oldest method.
    const bool isOldHash = isHash && !stored.startsWith(QLatin1Char('$'));
    return {{isAskedFor && stored.isEmpty(), name, "is asked for, but not stored: any input opens the local window"},
            {isAskedFor && isUnknown, name,
             "is stored neither obscured nor as a whole hash: no input opens the local window"},
            {isAskedFor && isOldHash, name,
             "is stored in plain text, which no input matches, or as a hash of an old, weak method"}};
}

Findings ServerFindings(const LoginCfg& cfg, const QString& key, bool registryStore)
{
    const bool isNamed = !cfg.remoteServer.trimmed().isEmpty();
    const QRegularExpression noHost(QStringLiteral("[/,;]|^[^\\[].*:")); // "[::1]" is one
    const bool isHost = !cfg.remoteServer.contains(noHost) && !cfg.backupServer.contains(noHost);
    return {{!isNamed, key, "names no server: no remote login can succeed"},
            {!isNamed && registryStore, key, "names no server, which in this store switches remote authentication on"},
            {isNamed && registryStore, key,
             "names a server, which in this store switches remote authentication off (except for \"force\")"},
            {!isHost, key, "takes host names with blanks between, no scheme and no port"}};
}

Findings DirectoryFindings(const TerminalConfig& terminal)
{
    const LoginCfg& cfg = terminal.cfg;
    const QString type = terminal.Key("remoteauthtype", "ServerType");
    const bool isXml = !terminal.registryStore;
    const bool isLdaps = cfg.serverType == QLatin1String("LDAPS");
    const bool isLdap = cfg.serverType == QLatin1String("LDAP");
    const bool isLikeLdap = cfg.serverType.startsWith(QLatin1String("LDAP"));
    const QLatin1String port(isLdaps ? "636" : "389");
    return {{!isLikeLdap, type, "is neither LDAP nor LDAPS: every remote login is refused"},
            {isLikeLdap && !isLdap && !isLdaps, type,
             "is neither LDAP nor LDAPS, and counts as LDAP: passwords travel unencrypted"},
            {cfg.remoteDomain.isEmpty(), terminal.Key("remoteauthdomain", "BaseDN"),
             "is empty: a saved user has no domain"},
            {isXml && cfg.remotePort != port, QStringLiteral("remoteauthport"),
             "is missing or not the port that a login uses all the same: 636 for LDAPS, else 389"},
            {isXml && isLdaps && !cfg.requireCert, QStringLiteral("reqcert"),
             "is off, but a login checks the server's certificate all the same, as the system's ldap.conf says"},
            {isXml && !isLdaps && cfg.requireCert, QStringLiteral("reqcert"),
             "is on, but only LDAPS has a certificate: passwords travel unencrypted"}};
}

Findings ToolFindings(bool usesDirectory)
{
    const auto isMissing = [](const QString& tool) { return QStandardPaths::findExecutable(tool).isEmpty(); };
    Findings findings{{usesDirectory, QStringLiteral("ldapsearch"), "is missing: no remote login can succeed"},
                      {usesDirectory, QStringLiteral("/usr/bin/smbpasswd"), "is missing: no password can be changed"},
                      {usesDirectory, QStringLiteral("wshutdown"), "is missing: Escape in the remote dialog is dead"},
                      {true, QStringLiteral("send_event.sh"), "is missing: no login is reported"}};
    for (Finding& finding : findings)
        finding.applies = finding.applies && isMissing(finding.subject);
    return findings;
}

} // namespace

TerminalConfig::TerminalConfig()
{
    const char* variable = secure_getenv("TAV3_CONFIG_DIR");
    folder = variable && *variable ? QFile::decodeName(variable) : QStringLiteral("/etc/tav3");
    registryStore = xml.GetBoolValue(SystemInfo, QStringLiteral("uselegacyapplets"));
    path = folder + QLatin1Char('/') + Key("config.xml", "registry.reg");
}

QString TerminalConfig::Key(const char* xmlKey, const char* registryName) const
{
    return QLatin1String(registryStore ? registryName : xmlKey);
}

QStringList FindingsIn(const TerminalConfig& terminal)
{
    const LoginCfg& cfg = terminal.cfg;
    Findings findings = StoreFindings(terminal) + SwitchFindings(terminal.xml);
    // With local authentication, "x" asks for the terminal password too.
    findings += PasswordFindings(cfg.needAuthentication || cfg.localAuthEnabled,
                                 QStringLiteral("the terminal password"), cfg.terminalPassword);
    findings += PasswordFindings(cfg.localAuthEnabled, QStringLiteral("the local password"), cfg.localAuthPassword);
    // "force" asks a named server even when remote authentication is off. In the registry-style store it is on without
    // one, which matters only when there is no local password either.
    const bool usesDirectory
        = !cfg.remoteServer.isEmpty() || cfg.RemoteAuthOnly() || (cfg.remoteAuthEnabled && !terminal.registryStore);
    if (usesDirectory) {
        const QString key = terminal.Key("remoteauthserver", "ConfigServer");
        findings += ServerFindings(cfg, key, terminal.registryStore) + DirectoryFindings(terminal);
    }
    findings += ToolFindings(usesDirectory);
    QStringList sentences;
    for (const Finding& finding : qAsConst(findings)) {
        if (finding.applies)
            sentences += finding.subject + QLatin1Char(' ') + QLatin1String(finding.rest);
    }
    return sentences;
}
