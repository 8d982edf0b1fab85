// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "base/hardening.h"

#include <csignal>
#include <tuple>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// The soft limit only: a child inherits it, but may raise it again.
void ForbidCoreFiles()
{
    struct rlimit core { };
    if (getrlimit(RLIMIT_CORE, &core) != 0)
        return;
    core.rlim_cur = 0;
    setrlimit(RLIMIT_CORE, &core); // a failure leaves the protection of PR_SET_DUMPABLE
}

} // namespace

bool HardenProcess()
{
    ForbidCoreFiles();
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0); // can't fail for 0; undone by the kernel when a child calls exec
    // With SIGCHLD ignored, as a starter may leave it, no child's exit status could be read.
    std::ignore = signal(SIGCHLD, SIG_DFL);
    return geteuid() == getuid() && getegid() == getgid();
}
