// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "base/hardening.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

bool HardenProcess()
{
    struct rlimit core { };
    if (getrlimit(RLIMIT_CORE, &core) == 0) {
        core.rlim_cur = 0;             // the soft limit only: a child may raise it again
        setrlimit(RLIMIT_CORE, &core); // a failure leaves the protection below
    }
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0); // undone by the kernel when a child calls exec
    return geteuid() == getuid() && getegid() == getgid();
}
