// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// The direct bind probe with the real ldapsearch, against the real domain controller.
#include "config/logincfg.h"
#include "tests/support/gatedriver.h"
#include "tests/support/table.h"

#include <QFile>
#include <QTest>

class Probe : public QObject {
    Q_OBJECT
private slots:
    void init() { CleanTerminal(); }

    void Answer_data() { LoadTable("probe.tsv"); }

    void Answer()
    {
        if (Flag("authority"))
            qputenv("LDAPTLS_CACERT", "/tmp/dc/private/tls/ca.pem");
        else
            qunsetenv("LDAPTLS_CACERT");
        LoginCfg cfg(true);
        cfg.remotePort = Text("port");
        cfg.remoteDomain = QStringLiteral("example.org");
        cfg.requireCert = Flag("certificate");
        const bool good = cfg.LdapSearchLoginToServer(Text("server"), Text("user"), Text("password"), Flag("tls"));
        QTEST(cfg.resultMessage, "code");
        QCOMPARE(good, Text("code").isEmpty());
        QCOMPARE(QFile::exists(QStringLiteral("/tmp/.user.1")), good);
    }

private:
    DomainController m_directory;
};

QTEST_GUILESS_MAIN(Probe)
#include "e2e_probe.moc"
