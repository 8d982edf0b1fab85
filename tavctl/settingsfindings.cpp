// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/findings.h"

#include "config/support.h"
#include "tav3/stringblur.h"
#include "tavctl/clientsettings.h"
#include "tavctl/report.h"
#include "tavctl/terminalconfig.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace {

void FindInPassword(const QString& name, const QString& stored, Report& report)
{
    // A whole hash is as long as the hash that any other input has with its salt.
    const bool isHash = !stored.isEmpty() && HashedWith(QString(), stored.toLatin1()).size() == stored.size();
    const bool isObscured = !TavStringBlur::Decode(stored).isNull();
    // Thirteen letters of plain text can't be told from a hash of the oldest method.
    const bool isOldHash = isHash && !stored.startsWith(QLatin1Char('$'));
    report.Find("password-not-stored", {name}, stored.isEmpty());
    report.Find("password-unusable", {name}, !stored.isEmpty() && !isHash && !isObscured);
    report.Find("password-old-hash", {name}, isOldHash);
}

void FindInServers(const TerminalConfig& terminal, Report& report)
{
    const LoginCfg& cfg = terminal.cfg;
    const QString key = terminal.Key("remoteauthserver", "ConfigServer");
    const bool isNamed = !cfg.remoteServer.trimmed().isEmpty();
    const QRegularExpression noHost(QStringLiteral("[/,;]|^[^\\[].*:")); // "[::1]" is one
    report.Find("no-server", {key}, !isNamed);
    report.Find("registry-server-missing", {key}, !isNamed && terminal.registryStore);
    report.Find("registry-server", {key}, isNamed && terminal.registryStore);
    report.Find("not-a-host-name", {key}, cfg.remoteServer.contains(noHost) || cfg.backupServer.contains(noHost));
}

void FindInKind(const TerminalConfig& terminal, Report& report)
{
    const QString key = terminal.Key("remoteauthtype", "ServerType");
    const QString& type = terminal.cfg.serverType;
    const bool isLikeLdap = type.startsWith(QLatin1String("LDAP"));
    const bool isLdap = type == QLatin1String("LDAP");
    report.Find("server-type", {key}, !isLikeLdap);
    report.Find("almost-ldaps", {key}, isLikeLdap && !isLdap && !terminal.UsesTls());
    report.Find("plain-ldap", {key}, isLdap);
}

// The direct bind probe alone goes by these.
void FindInBindProbe(const TerminalConfig& terminal, Report& report)
{
    const LoginCfg& cfg = terminal.cfg;
    const QLatin1String port(terminal.UsesTls() ? "636" : "389");
    const QString reqcert = QStringLiteral("reqcert");
    report.Find("probe-port", {QStringLiteral("remoteauthport")}, cfg.remotePort != port);
    report.Find("reqcert-off", {reqcert}, terminal.UsesTls() && !cfg.requireCert);
    report.Find("reqcert-without-tls", {reqcert}, !terminal.UsesTls() && cfg.requireCert);
}

} // namespace

void FindInPasswords(const TerminalConfig& terminal, Report& report)
{
    const LoginCfg& cfg = terminal.cfg;
    report.Find("no-authentication", {}, !cfg.authEnabled && !cfg.needAuthentication);
    report.Find("setup-only", {}, !cfg.authEnabled && cfg.needAuthentication);
    // With local authentication, "x" asks for the terminal password too.
    if (cfg.needAuthentication || cfg.localAuthEnabled)
        FindInPassword(QStringLiteral("the terminal password"), cfg.terminalPassword, report);
    if (cfg.localAuthEnabled)
        FindInPassword(QStringLiteral("the local password"), cfg.localAuthPassword, report);
}

void FindInDirectory(const TerminalConfig& terminal, Report& report)
{
    if (!terminal.UsesDirectory())
        return;
    FindInServers(terminal, report);
    FindInKind(terminal, report);
    report.Find("no-domain", {terminal.Key("remoteauthdomain", "BaseDN")}, terminal.cfg.remoteDomain.isEmpty());
    if (!terminal.registryStore)
        FindInBindProbe(terminal, report);
    if (terminal.UsesTls())
        FindInClientSettings(terminal.user, report);
}

void FindInClientSettings(const QString& user, Report& report)
{
    const ClientSettings settings;
    report.Find("certificate-not-demanded", {settings.requireCertificate}, !settings.isCertificateDemanded);
    const bool isUnreadable = !settings.authorityFile.isEmpty() && !QFileInfo(settings.authorityFile).isReadable();
    report.Find("authority-unreadable", {settings.authorityFile, user}, settings.isCertificateDemanded && isUnreadable);
}
