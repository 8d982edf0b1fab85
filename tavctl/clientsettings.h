// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

// What ldap.conf, .ldaprc and the environment set for ldapsearch, as its own library reads them for this user.
struct ClientSettings {
    ClientSettings();

    QString requireCertificate; // the value of TLS_REQCERT
    bool isCertificateDemanded; // whether a certificate that does not verify ends the connection
    QString authorityFile;      // TLS_CACERT; empty when it is not set
    QStringList others;         // "NAME value" of each that can keep a directory from answering
};
