// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/serverreason.h"

#include "tavctl/clientsettings.h"
#include "tavctl/report.h"

#include <QDateTime>
#include <QFileInfo>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslSocket>
#include <algorithm>

namespace {

constexpr int ConnectTimeoutMs = 5000;
const QString LimitInSeconds = QString::number(ConnectTimeoutMs / 1000);

// An address of IPv6 stands in brackets in a configuration, as in a URI.
QString HostOf(QString server)
{
    return server.remove(QLatin1Char('[')).remove(QLatin1Char(']'));
}

QString Utc(const QDateTime& time)
{
    return time.toUTC().toString(Qt::ISODate);
}

QString NamesOf(const QSslCertificate& certificate)
{
    QStringList names = certificate.subjectAlternativeNames().values();
    if (names.isEmpty())
        names = certificate.subjectInfo(QSslCertificate::CommonName);
    std::sort(names.begin(), names.end());
    return names.join(QStringLiteral(", "));
}

bool IsOfAuthority(QSslError::SslError error)
{
    switch (error) {
    case QSslError::UnableToGetIssuerCertificate:
    case QSslError::UnableToGetLocalIssuerCertificate:
    case QSslError::UnableToVerifyFirstCertificate:
    case QSslError::SelfSignedCertificate:
    case QSslError::SelfSignedCertificateInChain:
    case QSslError::CertificateUntrusted:
        return true;
    default:
        return false;
    }
}

// The client, too, takes the authorities of its own settings and no others.
QSslConfiguration ConfigurationOf(const ClientSettings& settings)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(QSslCertificate::fromPath(settings.authorityFile));
    configuration.setPeerVerifyMode(QSslSocket::QueryPeer); // to learn of every error
    return configuration;
}

void FindHandshakeReason(const QString& server, quint16 port, const QSslSocket& socket, Report& report)
{
    const QString complaint = socket.errorString();
    const bool isSilent = socket.error() == QAbstractSocket::SocketTimeoutError;
    // A server without TLS hangs up, or answers with something that OpenSSL takes for a version.
    const bool isTls = socket.error() == QAbstractSocket::SslHandshakeFailedError
        && !complaint.contains(QLatin1String("wrong version number"));
    const QString number = QString::number(port);
    report.Find("port-silent", {server, number, LimitInSeconds}, isSilent);
    report.Find("old-protocol", {server, complaint}, isTls);
    report.Find("no-tls", {server, number, complaint}, !isTls && !isSilent);
}

void FindCertificateReason(const QString& server, const QSslError& error, const QSslCertificate& certificate,
                           const ClientSettings& settings, Report& report)
{
    const QString now = Utc(QDateTime::currentDateTime());
    const QString file = settings.authorityFile.isEmpty() ? QStringLiteral("any file (TLS_CACERT is not set)")
                                                          : settings.authorityFile;
    if (error.error() == QSslError::CertificateExpired)
        report.Find("certificate-expired", {server, Utc(certificate.expiryDate()), now});
    else if (error.error() == QSslError::CertificateNotYetValid)
        report.Find("certificate-not-yet-valid", {server, Utc(certificate.effectiveDate()), now});
    else if (error.error() == QSslError::HostNameMismatch)
        report.Find("certificate-name", {server, NamesOf(certificate)});
    else if (IsOfAuthority(error.error()))
        report.Find("certificate-unknown-authority", {server, certificate.issuerDisplayName(), file});
    else
        report.Find("certificate-refused", {server, error.errorString()});
}

// A wrong clock first, as it explains the others; then who signed, and for whom.
int RankOf(const QSslError& error)
{
    switch (error.error()) {
    case QSslError::CertificateExpired:
    case QSslError::CertificateNotYetValid:
        return 0;
    case QSslError::HostNameMismatch:
        return 2;
    default:
        return 1;
    }
}

} // namespace

bool FindNetworkReason(const QString& server, quint16 port, Report& report)
{
    QTcpSocket socket;
    socket.connectToHost(HostOf(server), port);
    if (socket.waitForConnected(ConnectTimeoutMs))
        return false;
    const QString number = QString::number(port);
    switch (socket.error()) {
    case QAbstractSocket::HostNotFoundError:
        report.Find("name-unknown", {server});
        break;
    case QAbstractSocket::ConnectionRefusedError:
        report.Find("port-refused", {server, number});
        break;
    case QAbstractSocket::SocketTimeoutError:
        report.Find("port-silent", {server, number, LimitInSeconds});
        break;
    default:
        report.Find("not-reachable", {server, socket.errorString()});
    }
    return true;
}

bool FindTlsReason(const QString& server, quint16 port, const QString& user, Report& report)
{
    const ClientSettings settings;
    if (!settings.authorityFile.isEmpty() && !QFileInfo(settings.authorityFile).isReadable()) {
        report.Find("authority-unreadable", {settings.authorityFile, user});
        return true;
    }
    QSslSocket socket;
    socket.setSslConfiguration(ConfigurationOf(settings));
    socket.connectToHostEncrypted(HostOf(server), port);
    const bool isEncrypted = socket.waitForEncrypted(ConnectTimeoutMs);
    const QList<QSslError> errors = socket.sslHandshakeErrors();
    if (!errors.isEmpty()) {
        const auto worst = std::min_element(
            errors.begin(), errors.end(), [](const QSslError& a, const QSslError& b) { return RankOf(a) < RankOf(b); });
        const bool isOfPeer = worst->certificate().isNull(); // else of one in its chain
        FindCertificateReason(server, *worst, isOfPeer ? socket.peerCertificate() : worst->certificate(), settings,
                              report);
    } else if (!isEncrypted) {
        FindHandshakeReason(server, port, socket, report);
    }
    return !errors.isEmpty() || !isEncrypted;
}

bool Listens(const QString& server, quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(HostOf(server), port);
    return socket.waitForConnected(ConnectTimeoutMs);
}
