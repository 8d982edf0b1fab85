// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT

// soak COUNT STEP
// Signs in COUNT times through the one LdapHandler of the process, every second time with a wrong password (by way of
// the stand-in for the directory client). After each STEP logins prints their number, the resident KiB and the open
// descriptors. Fails at the first login that ends otherwise than it should.
#include "config/logincfg.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

long ResidentKiB()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLong() * sysconf(_SC_PAGESIZE) / 1024;
}

uint Descriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return EXIT_FAILURE;
    QApplication app(argc, argv);
    LoginCfg cfg(true);
    const int step = atoi(argv[2]);
    for (int login = 1; login <= atoi(argv[1]); ++login) {
        const bool good = login % 2 == 0;
        const QString password = good ? QStringLiteral("secret1") : QStringLiteral("wrong");
        if (cfg.CheckRemoteLogin(QStringLiteral("user1"), password) != good)
            return EXIT_FAILURE;
        if (login % step == 0)
            printf("%d %ld %u\n", login, ResidentKiB(), Descriptors());
    }
    return EXIT_SUCCESS;
}
