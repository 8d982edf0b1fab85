// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ldap/ldaphandler.h"

#include <QDateTime>
#include <QDebug>

// Whole days since 1970-01-01 UTC, 0 for an attribute that the directory did not send.
struct PasswordDates {
    quint64 today = 0;
    quint64 lastSetDays = 0;
    quint64 expiryDays = 0;
    quint64 maxAgeDays = 0;
};

namespace {

constexpr quint64 SecondsPerDay = 86400;
// Directory times count 100 ns ticks since 1601-01-01 UTC (MS-DTYP, FILETIME); the seconds from there to 1970-01-01.
constexpr quint64 TicksPerSecond = 10000000;
constexpr quint64 EpochOffsetSeconds = 11644473600;
// Days left before anything has been computed: far beyond every warning.
constexpr qint64 UnknownDaysToExpiry = 30000;

// A time before 1970 wraps around to a huge number; intended.
quint64 FileTimeToEpochDays(quint64 ticks)
{
    return (ticks / TicksPerSecond - EpochOffsetSeconds) / SecondsPerDay;
}

quint64 NumberBehind(QLatin1String name, QString line)
{
    return line.remove(name + QLatin1Char(':')).trimmed().toULongLong();
}

PasswordDates ParseDates(const QStringList& lines)
{
    PasswordDates dates;
    dates.today = static_cast<quint64>(QDateTime::currentSecsSinceEpoch()) / SecondsPerDay;
    const QLatin1String lastSet("pwdLastSet");
    const QLatin1String expiry("msDS-UserPasswordExpiryTimeComputed");
    const QLatin1String maxAge("pwdMaxAge");
    for (const QString& line : lines) {
        if (line.startsWith(lastSet))
            dates.lastSetDays = FileTimeToEpochDays(NumberBehind(lastSet, line));
        else if (line.startsWith(expiry))
            dates.expiryDays = FileTimeToEpochDays(NumberBehind(expiry, line));
        else if (line.startsWith(maxAge))
            dates.maxAgeDays = NumberBehind(maxAge, line) / SecondsPerDay;
    }
    return dates;
}

// The client folds a long line at 78 columns and begins the rest with one blank (LDIF, RFC 2849).
QStringList Unfold(const QStringList& lines)
{
    QStringList whole;
    for (const QString& line : lines) {
        if (line.startsWith(QLatin1Char(' ')) && !whole.isEmpty())
            whole.last() += line.midRef(1);
        else
            whole += line;
    }
    return whole;
}

} // namespace

QString LdapHandler::QueryNamingContext()
{
    if (s_debugEnabled)
        qDebug() << "LdapHandler::CheckPassword" << m_uri;
    const QStringList arguments = s_ldapSearchArgs + QStringList(m_uri) + s_namingContextArgs;
    const QStringList lines = Unfold(RunCommand(s_ldapSearchProgram, arguments, QStringLiteral("Build URI")));
    for (const QString& line : lines) {
        if (!line.startsWith(QLatin1String("namingContexts: DC=")) || line.contains(QLatin1String("DnsZones")))
            continue;
        m_baseDn = line;
        m_baseDn.remove(QStringLiteral("namingContexts:")); // the blank behind the colon stays; the directory takes it
        QString components = m_baseDn;
        return components.remove(QStringLiteral("DC=")).split(QLatin1Char(',')).join(QLatin1Char('.'));
    }
    return {};
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
    m_uri = FindNamingContext();
    if (m_uri.isEmpty()) {
        m_lastError = QStringLiteral("Could not contact LDAP server");
        m_lastCode = QStringLiteral("9999");
        return false;
    }
    const QStringList lines = RunCommand(s_ldapSearchProgram, BindArguments(), QStringLiteral("Check Password"));
    const PasswordDates dates = ParseDates(lines);
    if (s_debugEnabled) {
        qDebug() << lines;
        qDebug() << dates.today << dates.lastSetDays << dates.expiryDays << dates.maxAgeDays;
    }
    m_messages.clear();
    if (lines.size() < 3)
        return ReportRefusedBind();
    if (s_password.isEmpty()) {
        // A simple bind without a password proves nothing, though a directory may allow it (RFC 4513, 5.1.2).
        m_lastCode = QStringLiteral("52e");
        m_lastError = ErrorMessage(m_lastCode);
        m_messages += m_lastError;
        return false;
    }
    ReportExpiry(dates);
    return true;
}

// Always false, the result of a check whose bind was refused.
bool LdapHandler::ReportRefusedBind()
{
    m_messages += QStringLiteral("It looks like there are issues with you credentials"); // worded so
    m_messages += m_errorLines;
    if (m_errorLines.size() < 2 || !m_errorLines.first().contains(QLatin1String("ldap_bind: Invalid credentials (49)")))
        return false;
    for (const QString& part : m_errorLines.at(1).split(QLatin1Char(','))) {
        const QString piece = part.trimmed();
        const QStringList words = piece.split(QLatin1Char(' '));
        if (!piece.startsWith(QLatin1String("data")) || words.size() < 2)
            continue;
        m_lastCode = words.at(1);
        m_lastError = ErrorMessage(m_lastCode);
        m_messages += m_lastError;
        m_accountLocked = m_lastCode == QLatin1String("775");
        m_mustChange = m_lastCode == QLatin1String("532") || m_lastCode == QLatin1String("773");
    }
    return false;
}

void LdapHandler::ReportExpiry(const PasswordDates& dates)
{
    const auto sinceChange = static_cast<qint64>(dates.today - dates.lastSetDays);
    m_messages += QStringLiteral("You last changed your password ")
        + (sinceChange != 0 ? QStringLiteral("%1 days ago").arg(sinceChange) : QStringLiteral("today"));
    qint64 remaining = 0;
    if (dates.maxAgeDays != 0) {
        remaining = static_cast<qint64>(dates.maxAgeDays) - sinceChange;
    } else {
        remaining = static_cast<qint64>(dates.expiryDays - dates.today);
        if (dates.expiryDays - 1 > 29999) // unsigned: 0 counts as unknown too
            m_messages += QStringLiteral("We could not determine when your password will expire");
    }
    m_daysToExpiry = remaining;
    m_messages
        += QStringLiteral("Your password will expire in ") + QString::number(remaining) + QStringLiteral(" days");
}
