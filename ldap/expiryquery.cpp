// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ldap/ldaphandler.h"

#include "ldap/directoryanswer.h"

#include <QDateTime>
#include <QDebug>

namespace {

// Days left before anything has been computed: far beyond every warning.
constexpr qint64 UnknownDaysToExpiry = 30000;

} // namespace

quint64 LdapHandler::FileTimeToEpochDays(quint64 ticks)
{
    return EpochDays(ticks);
}

QString LdapHandler::QueryNamingContext()
{
    if (s_debugEnabled)
        qDebug() << "LdapHandler::CheckPassword" << m_uri;
    const QStringList arguments = s_ldapSearchArgs + QStringList(m_uri) + s_namingContextArgs;
    const NamingContext context
        = ParseNamingContext(RunCommand(s_ldapSearchProgram, arguments, QStringLiteral("Build URI")));
    if (!context.baseDn.isEmpty())
        m_baseDn = context.baseDn;
    return context.domain;
}

QString LdapHandler::FindNamingContext()
{
    if (m_useConfiguredProtocol) {
        m_uri = BuildUri(m_useLdaps);
    } else {
        m_uri = BuildUri(true);
        if (QueryNamingContext().isEmpty())
            m_uri = BuildUri(false);
    }
    m_domainName = QueryNamingContext(); // a second query when the probe found a server; intended
    if (m_domainName.isEmpty()) {
        m_messages = QStringList(QStringLiteral("It looks like there are issues with the server you provided"));
        m_messages += m_errorLines;
        m_uri.clear();
    }
    return m_uri;
}

QStringList LdapHandler::BindArguments() const
{
    QStringList arguments = s_ldapSearchArgs;
    arguments << m_uri;
    arguments << QStringLiteral("-D") << QStringLiteral("%1@%2").arg(s_userName, m_domainName);
    arguments << QStringLiteral("-w") << s_password;
    arguments << QStringLiteral("-b") << m_baseDn;
    arguments << QStringLiteral("(sAMAccountName=%1)").arg(s_userName);
    arguments << QStringLiteral("dn") << QStringLiteral("pwdLastSet");
    arguments << QStringLiteral("msDS-UserPasswordExpiryTimeComputed") << QStringLiteral("pwdMaxAge");
    arguments << QStringLiteral("pwdPolicySubentry");
    return arguments;
}

bool LdapHandler::CheckPassword()
{
    if (s_debugEnabled)
        qDebug() << "LdapHandler::CheckPassword";
    m_accountLocked = false;
    m_daysToExpiry = UnknownDaysToExpiry;
    m_mustChange = false;
    m_lastError.clear();
    m_lastCode.clear();
    m_complaint.clear();
    m_messages.clear();
    m_uri = FindNamingContext();
    if (m_uri.isEmpty()) {
        m_lastError = QStringLiteral(QT_TRANSLATE_NOOP("LoginCfg", "Could not contact LDAP server"));
        m_lastCode = ServerUnreachable;
        return false;
    }
    const QStringList lines = RunCommand(s_ldapSearchProgram, BindArguments(), QStringLiteral("Check Password"));
    const PasswordDates dates = ParsePasswordDates(lines, QDateTime::currentSecsSinceEpoch());
    if (s_debugEnabled) {
        qDebug() << lines;
        qDebug() << dates.today << dates.lastSetDays << dates.expiryDays << dates.maxAgeDays;
    }
    m_messages.clear();
    const bool bound = lines.size() >= 3;
    if (!bound)
        ReportRefusedBind();
    if (CountsAsEmpty(s_password) && m_lastCode.isEmpty())
        ReportCode(InvalidCredentials); // whatever the directory makes of a bind without a password
    if (!bound || !m_lastCode.isEmpty()) {
        // A client that never ended left the error lines of the one before it.
        m_complaint = lines.isEmpty() ? QString() : ParseComplaint(m_errorLines);
        return false;
    }
    ReportExpiry(dates);
    return true;
}

void LdapHandler::ReportRefusedBind()
{
    m_messages += QStringLiteral("It looks like there are issues with you credentials"); // worded so
    m_messages += m_errorLines;
    for (const QString& code : ParseSubCodes(m_errorLines)) {
        ReportCode(code);
        m_accountLocked = code == QLatin1String("775");
        m_mustChange = code == QLatin1String("532") || code == QLatin1String("773");
    }
}

void LdapHandler::ReportCode(const QString& code)
{
    m_lastCode = code;
    m_lastError = ErrorMessage(code);
    m_messages += m_lastError;
}

void LdapHandler::ReportExpiry(const PasswordDates& dates)
{
    const qint64 sinceChange = dates.DaysSinceChange();
    m_messages += QStringLiteral("You last changed your password ")
        + (sinceChange != 0 ? QStringLiteral("%1 days ago").arg(sinceChange) : QStringLiteral("today"));
    if (!dates.IsExpiryKnown())
        m_messages += QStringLiteral("We could not determine when your password will expire");
    m_daysToExpiry = dates.DaysToExpiry();
    m_messages
        += QStringLiteral("Your password will expire in ") + QString::number(m_daysToExpiry) + QStringLiteral(" days");
}
