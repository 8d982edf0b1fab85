// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class Report;

// Looks for itself why a server that ldapsearch could not reach can't be reached. Each finds at most one reason, and
// returns whether it did.

bool FindNetworkReason(const QString& server, quint16 port, Report& report);
bool FindTlsReason(const QString& server, quint16 port, const QString& user, Report& report);

// Whether something listens there.
bool Listens(const QString& server, quint16 port);
