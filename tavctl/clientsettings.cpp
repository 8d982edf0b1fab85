// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/clientsettings.h"

#include <QFile>
#include <array>
#include <ldap.h>
#include <utility>

namespace {

QString TextOption(int option)
{
    char* value = nullptr;
    ldap_get_option(nullptr, option, &value);
    QString text = QFile::decodeName(value);
    ldap_memfree(value);
    return text;
}

int NumberOption(int option)
{
    int value = 0;
    ldap_get_option(nullptr, option, &value);
    return value;
}

int Seconds(int option)
{
    timeval* limit = nullptr;
    ldap_get_option(nullptr, option, &limit);
    const auto seconds = limit ? static_cast<int>(limit->tv_sec) : 0;
    ldap_memfree(limit);
    return qMax(0, seconds); // -1: no limit
}

QStringList OtherSettings()
{
    QStringList set;
    const auto add = [&set](const char* name, const QString& value) {
        if (!value.isEmpty() && value != QLatin1String("0"))
            set += QLatin1String(name) + QLatin1Char(' ') + value;
    };
    for (const auto& [option, name] :
         std::array<std::pair<int, const char*>, 5>{{{LDAP_OPT_X_TLS_CACERTDIR, "TLS_CACERTDIR"},
                                                     {LDAP_OPT_X_TLS_CERTFILE, "TLS_CERT"},
                                                     {LDAP_OPT_X_TLS_KEYFILE, "TLS_KEY"},
                                                     {LDAP_OPT_X_TLS_CIPHER_SUITE, "TLS_CIPHER_SUITE"},
                                                     {LDAP_OPT_X_TLS_CRLFILE, "TLS_CRLFILE"}}})
        add(name, TextOption(option));
    for (const auto& [option, name] :
         std::array<std::pair<int, const char*>, 3>{{{LDAP_OPT_X_TLS_CRLCHECK, "TLS_CRLCHECK"},
                                                     {LDAP_OPT_SIZELIMIT, "SIZELIMIT"},
                                                     {LDAP_OPT_TIMELIMIT, "TIMELIMIT"}}})
        add(name, QString::number(NumberOption(option)));
    const int minimum = NumberOption(LDAP_OPT_X_TLS_PROTOCOL_MIN); // the two halves of 0x303 are those of "3.3"
    if (minimum != 0)
        add("TLS_PROTOCOL_MIN", QStringLiteral("%1.%2").arg(minimum >> 8).arg(minimum & 0xff));
    for (const auto& [option, name] : std::array<std::pair<int, const char*>, 2>{
             {{LDAP_OPT_NETWORK_TIMEOUT, "NETWORK_TIMEOUT"}, {LDAP_OPT_TIMEOUT, "TIMEOUT"}}})
        add(name, QString::number(Seconds(option)));
    return set;
}

QString NameOfRequirement(int value)
{
    switch (value) {
    case LDAP_OPT_X_TLS_NEVER:
        return QStringLiteral("never");
    case LDAP_OPT_X_TLS_ALLOW:
        return QStringLiteral("allow");
    case LDAP_OPT_X_TLS_TRY:
        return QStringLiteral("try");
    default:
        return QStringLiteral("demand");
    }
}

} // namespace

ClientSettings::ClientSettings()
    : requireCertificate(NameOfRequirement(NumberOption(LDAP_OPT_X_TLS_REQUIRE_CERT))),
      isCertificateDemanded(requireCertificate == QLatin1String("demand")
                            || requireCertificate == QLatin1String("try")),
      authorityFile(TextOption(LDAP_OPT_X_TLS_CACERTFILE)), others(OtherSettings())
{
}
