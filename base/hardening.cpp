// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "base/hardening.h"

#include <csignal>
#include <fcntl.h>
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

// In the place of a closed standard stream the next file or socket would stand, and every diagnostic be written to it.
void FillStandardStreams()
{
    int fd = 0;
    do
        fd = open("/dev/null", O_RDWR);
    while (0 <= fd && fd <= STDERR_FILENO);
    if (fd >= 0)
        close(fd);
}

} // namespace

bool HardenProcess()
{
    FillStandardStreams();
    ForbidCoreFiles();
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0); // can't fail for 0; undone by the kernel when a child calls exec
    // With SIGCHLD ignored, as a starter may leave it, no child's exit status could be read.
    std::ignore = signal(SIGCHLD, SIG_DFL);
    return geteuid() == getuid() && getegid() == getgid();
}
