// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "ldap/directoryanswer.h"

#include <QRegularExpression>

namespace {

constexpr quint64 SecondsPerDay = 86400;
// Directory times count 100 ns ticks since 1601-01-01 UTC (MS-DTYP, FILETIME); the seconds from there to 1970-01-01.
constexpr quint64 TicksPerSecond = 10000000;
constexpr quint64 EpochOffsetSeconds = 11644473600;
// In the year 2052. A password that never expires has a date far behind it.
constexpr quint64 LastExpiryDay = 30000;

// A refusal holds one; each of a flood would get a sentence. Kept are the last, as the last decides.
constexpr int MaxSubCodes = 1000;
constexpr int MaxComplaintChars = 80;
constexpr int MaxComplaintLines = 20; // warnings may stand before it

quint64 NumberBehind(QLatin1String name, QString line)
{
    return line.remove(name + QLatin1Char(':')).trimmed().toULongLong();
}

// The line that begins at `first`, as a whole: the client folds a long one at 78 columns and begins the rest with one
// blank (LDIF, RFC 2849).
QString Unfolded(const QStringList& lines, int first)
{
    QString line = lines.at(first);
    for (int i = first + 1; i < lines.size() && lines.at(i).startsWith(QLatin1Char(' ')); ++i)
        line += lines.at(i).midRef(1);
    return line;
}

} // namespace

// A time before 1970 wraps around to a huge number; intended.
quint64 EpochDays(quint64 ticks)
{
    return (ticks / TicksPerSecond - EpochOffsetSeconds) / SecondsPerDay;
}

NamingContext ParseNamingContext(const QStringList& lines)
{
    const QLatin1String name("namingContexts:");
    for (int i = 0; i < lines.size(); ++i) {
        if (!lines.at(i).startsWith(name))
            continue;
        const QString line = Unfolded(lines, i);
        if (!line.startsWith(name + QStringLiteral(" DC=")) || line.contains(QLatin1String("DnsZones")))
            continue;
        const QString baseDn = line.mid(name.size());
        QString domain = baseDn;
        domain.remove(QStringLiteral("DC=")).replace(QLatin1Char(','), QLatin1Char('.'));
        return {baseDn, domain};
    }
    return {};
}

PasswordDates ParsePasswordDates(const QStringList& lines, qint64 now)
{
    PasswordDates dates;
    dates.today = static_cast<quint64>(now) / SecondsPerDay;
    const QLatin1String lastSet("pwdLastSet");
    const QLatin1String expiry("msDS-UserPasswordExpiryTimeComputed");
    const QLatin1String maxAge("pwdMaxAge");
    for (const QString& line : lines) {
        if (line.startsWith(lastSet))
            dates.lastSetDays = EpochDays(NumberBehind(lastSet, line));
        else if (line.startsWith(expiry))
            dates.expiryDays = EpochDays(NumberBehind(expiry, line));
        else if (line.startsWith(maxAge))
            dates.maxAgeDays = NumberBehind(maxAge, line) / SecondsPerDay;
    }
    return dates;
}

qint64 PasswordDates::DaysSinceChange() const
{
    return static_cast<qint64>(today - lastSetDays);
}

qint64 PasswordDates::DaysToExpiry() const
{
    if (maxAgeDays != 0)
        return static_cast<qint64>(maxAgeDays) - DaysSinceChange();
    return static_cast<qint64>(expiryDays - today);
}

bool PasswordDates::IsExpiryKnown() const
{
    return maxAgeDays != 0 || (expiryDays != 0 && expiryDays <= LastExpiryDay);
}

QStringList ParseSubCodes(const QStringList& errorLines)
{
    if (errorLines.size() < 2 || !errorLines.first().contains(QLatin1String("ldap_bind: Invalid credentials (49)")))
        return {};
    QStringList codes;
    for (const QStringRef& part : errorLines.at(1).splitRef(QLatin1Char(','))) {
        const QStringRef piece = part.trimmed();
        const auto words = piece.split(QLatin1Char(' '));
        if (piece.startsWith(QLatin1String("data")) && words.size() > 1)
            codes += words.at(1).toString();
        if (codes.size() > MaxSubCodes)
            codes.removeFirst();
    }
    return codes;
}

QString ParseComplaint(const QStringList& errorLines)
{
    // "ldap_bind: Strong(er) authentication required (8)", "No such object (32)"
    static const QRegularExpression complaint(QStringLiteral("^(?:ldap\\w+(?:\\([^)]*\\))?: )?(\\S.*) \\(-?\\d+\\)$"));
    for (const QString& line : errorLines.mid(0, MaxComplaintLines)) {
        const QRegularExpressionMatch match = complaint.match(line.left(4 * MaxComplaintChars));
        if (match.hasMatch())
            return match.captured(1).simplified().left(MaxComplaintChars);
    }
    return {};
}
