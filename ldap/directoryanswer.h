// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

// Reading of what ldapsearch prints, line by line. Nothing here fails: what is missing or malformed reads as empty or
// 0.

struct NamingContext {
    QString baseDn; // begins with the blank that stood behind the colon; the directory takes it
    QString domain; // the same in dotted form, the blank included
};

// The first naming context of a domain in the root entry; both texts are empty when there is none.
NamingContext ParseNamingContext(const QStringList& lines);

// Whole days since 1970-01-01 UTC, 0 for an attribute that the directory did not send.
struct PasswordDates {
    quint64 today = 0;
    quint64 lastSetDays = 0;
    quint64 expiryDays = 0;
    quint64 maxAgeDays = 0; // how long a password lasts, no date

    qint64 DaysSinceChange() const;
    qint64 DaysToExpiry() const; // negative when it is over
    bool IsExpiryKnown() const;  // otherwise DaysToExpiry is a number far off
};

// The dates in a user's entry; `now` is in seconds since 1970-01-01 UTC.
PasswordDates ParsePasswordDates(const QStringList& lines, qint64 now);

// Whole days since 1970-01-01 UTC of a directory time, a count of 100 ns ticks since 1601-01-01 UTC.
quint64 EpochDays(quint64 ticks);

// The sub-codes in the complaint about a refused bind, in their order, the last 1,000; an empty one counts too.
QStringList ParseSubCodes(const QStringList& errorLines);

// What the client itself says about a refusal, without the call's name and number, on one line of at most 80
// characters; empty when it said nothing of the kind.
QString ParseComplaint(const QStringList& errorLines);
