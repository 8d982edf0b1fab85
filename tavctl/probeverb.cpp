// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/verbs.h"

#include "base/childprocess.h"
#include "ldap/directoryanswer.h"
#include "ldap/ldaphandler.h"
#include "tavctl/clientsettings.h"
#include "tavctl/report.h"
#include "tavctl/serverreason.h"
#include "tavctl/terminalconfig.h"

#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <cstdlib>

namespace {

constexpr qint64 MaxClockSeconds = 300; // what a domain allows (Kerberos, RFC 4120)
constexpr quint16 SmbPort = 445;
constexpr int ToolTimeoutMs = 10000;
const QString SmbConf = QStringLiteral("/etc/samba/smb.conf");

struct Server {
    QString name;
    bool usesTls;
    quint16 Port() const { return usesTls ? 636 : 389; }
};

// What ldapsearch made of the question.
struct Answer {
    QStringList lines;  // empty: it did not end in time
    QStringList errors; // of its standard error
    // Numbers below zero are the client's own (ldap.h); others come from the directory.
    bool IsOfDirectory() const
    {
        static const QRegularExpression ownNumber(QStringLiteral("\\(-\\d+\\)$"));
        return !lines.isEmpty() && errors.filter(ownNumber).isEmpty();
    }
    QString Complaint() const
    {
        QStringList words = errors;
        words.removeAll(QString());
        return words.join(QStringLiteral("; ")).simplified();
    }
};

// The gate's own question, and the time of the directory with it.
Answer Ask(const Server& server, QString& uri)
{
    LdapHandler* handler = LdapHandler::GetInstance(server.name, QString(), QString());
    handler->m_errorLines.clear();
    uri = handler->BuildUri(server.usesTls);
    const QStringList arguments = LdapHandler::s_ldapSearchArgs + QStringList(uri) + LdapHandler::s_namingContextArgs
        + QStringList(QStringLiteral("currentTime"));
    const QStringList lines = handler->RunCommand(LdapHandler::s_ldapSearchProgram, arguments, {});
    return {lines, handler->m_errorLines};
}

void FindClientReason(const Server& server, const Answer& answer, Report& report)
{
    const QStringList settings = ClientSettings().others;
    report.Find("client-settings", {server.name, settings.join(QStringLiteral(", ")), answer.Complaint()},
                !settings.isEmpty());
    report.Find("client-silent", {server.name}, settings.isEmpty() && answer.lines.isEmpty());
    report.Find("client-fails", {server.name, answer.Complaint()}, settings.isEmpty() && !answer.lines.isEmpty());
}

void FindReason(const Server& server, const Answer& answer, const QString& user, Report& report)
{
    if (answer.IsOfDirectory()) {
        const bool hasEntry = answer.lines.first().startsWith(QLatin1String("dn:"));
        report.Find("no-naming-context", {server.name}, hasEntry);
        report.Find("root-entry", {server.name, answer.Complaint()}, !hasEntry);
        return;
    }
    if (FindNetworkReason(server.name, server.Port(), report))
        return;
    if (!server.usesTls || !FindTlsReason(server.name, server.Port(), user, report))
        FindClientReason(server, answer, report);
}

void FindIfClockIsOff(const Server& server, const QStringList& lines, Report& report)
{
    const QString format = QStringLiteral("yyyyMMddHHmmss"); // of generalized time, "20261125070339.0Z"
    const QString name = QStringLiteral("currentTime: ");
    const QString text
        = lines.filter(QRegularExpression(QLatin1Char('^') + name)).value(0).mid(name.size(), format.size());
    QDateTime theirs = QDateTime::fromString(text, format);
    theirs.setTimeSpec(Qt::UTC);
    const QDateTime ours = QDateTime::currentDateTimeUtc();
    report.Find("clock", {server.name, ours.toString(Qt::ISODate), theirs.toString(Qt::ISODate)},
                theirs.isValid() && qAbs(theirs.secsTo(ours)) > MaxClockSeconds);
}

void ProbeServer(const Server& server, const QString& user, Report& report)
{
    QString uri;
    const Answer answer = Ask(server, uri);
    const QString domain = ParseNamingContext(answer.lines).domain.trimmed();
    if (domain.isEmpty()) {
        report.AddFact(server.name, uri + QStringLiteral(" does not answer as the gate needs it"));
        FindReason(server, answer, user, report);
        return;
    }
    report.AddFact(server.name, uri + QStringLiteral(" answers for the domain ") + domain);
    FindIfClockIsOff(server, answer.lines, report);
    report.Find("password-port", {server.name}, !Listens(server.name, SmbPort));
}

// What smbpasswd will read before it changes a password.
void FindInSmbConf(Report& report)
{
    const QString tool = QStringLiteral("testparm");
    if (!QFile::exists(SmbConf) || QStandardPaths::findExecutable(tool).isEmpty())
        return;
    const ChildProcess process(new QProcess);
    ChildOutput output;
    const QStringList arguments{QStringLiteral("-s"), QStringLiteral("--parameter-name=unix charset"), SmbConf};
    if (!RunChild(*process, tool, arguments, 0, ToolTimeoutMs, output))
        return;
    for (const QString& line : TextOf(output.standardError).split(QLatin1Char('\n'))) {
        const bool isRemark = line.startsWith(QLatin1String("Unknown parameter"))
            || line.startsWith(QLatin1String("Ignoring badly formed line"));
        report.Find("smb-conf-remark", {line.trimmed()}, isRemark);
    }
    // The gate gives passwords in Latin-1.
    static const QRegularExpression fitting(QStringLiteral("^(ISO.?8859-1|LATIN.?1|CP1252|)$"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QString charset = TextOf(output.standardOutput).trimmed();
    report.Find("smb-conf-charset", {charset}, !charset.contains(fitting));
}

QStringList ServersOf(const LoginCfg& cfg, const QString& wanted)
{
    QStringList names{cfg.remoteServer.trimmed(), cfg.backupServer};
    if (!wanted.isEmpty())
        names = QStringList(wanted);
    names.removeAll(QString());
    return names;
}

} // namespace

int ProbeDirectory(const Request& request)
{
    const TerminalConfig terminal;
    const QString& type = terminal.cfg.serverType;
    // A terminal without a configuration yet will be given LDAPS.
    const bool usesTls = terminal.UsesTls() || type.isEmpty();
    const QStringList servers = ServersOf(terminal.cfg, request.operand);
    const bool isClientMissing = QStandardPaths::findExecutable(LdapHandler::s_ldapSearchProgram).isEmpty();
    LdapHandler::s_logFile.clear(); // the audit file is the gate's
    Report report("probe");
    AddReader(request, terminal.user, report);
    report.Find("no-server", {terminal.Key("remoteauthserver", "ConfigServer")}, servers.isEmpty());
    report.Find("client-missing", {}, isClientMissing);
    if (!isClientMissing) {
        for (const QString& name : servers)
            ProbeServer({name, usesTls}, terminal.user, report);
    }
    const ClientSettings settings;
    report.Find("certificate-not-demanded", {settings.requireCertificate}, usesTls && !settings.isCertificateDemanded);
    report.Find("plain-ldap", {terminal.Key("remoteauthtype", "ServerType")}, !usesTls);
    FindInSmbConf(report);
    report.Print(request.asJson);
    return report.Status(request.isStrict);
}
