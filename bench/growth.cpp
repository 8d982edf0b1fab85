// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT

// growth SUBJECT COUNT
// Does one job of the gate with so much work, and prints its ms and by how many KiB the peak memory grew meanwhile.
//   answer   a check of a user whose entry has COUNT lines (by way of the stand-in for the directory client)
//   keys     reading the configuration
//   starts   COUNT starts in the start log
//   audit    COUNT entries in the audit file
#include "config/logincfg.h"
#include "ldap/ldaphandler.h"

#include <QElapsedTimer>
#include <QFile>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// Not getrusage(), which begins with what the caller had before it started this program.
long PeakKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray all = status.readAll();
    return atol(all.constData() + all.indexOf("VmHWM:") + strlen("VmHWM:"));
}

bool Work(const char* subject, int count)
{
    if (strcmp(subject, "answer") == 0)
        return LdapHandler::GetInstance(QStringLiteral("127.0.0.1"), QStringLiteral("user1"), QStringLiteral("secret1"))
            ->CheckPassword();
    LoginCfg cfg(true);
    if (strcmp(subject, "keys") == 0)
        return cfg.RemoteAuthOnly();
    for (int i = 0; i < count; ++i) {
        if (strcmp(subject, "starts") == 0)
            cfg.WriteLoginLog(QStringLiteral("/usr/bin/qorm-login,setup"));
        else
            LdapHandler::WriteLog(QStringLiteral("Change Password"), QStringLiteral("Success"));
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return EXIT_FAILURE;
    const long before = PeakKiB();
    QElapsedTimer timer;
    timer.start();
    const bool good = Work(argv[1], atoi(argv[2]));
    printf("%.3f %ld\n", static_cast<double>(timer.nsecsElapsed()) / 1e6, PeakKiB() - before);
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
