// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/blockingcheck.h"

#include "desktop/staleinput.h"

#include <QApplication>
#include <QX11Info>
#include <cstdlib>

namespace {

// The X server's time in ms, after all that was sent before; 0 on another platform.
quint32 ServerTime()
{
    return QX11Info::isPlatformX11() ? static_cast<quint32>(QX11Info::getTimestamp()) : 0;
}

} // namespace

void RunBlocking(const std::function<void()>& block)
{
    static auto* staleInput = new StaleInput(qApp); // made at the first use, child of the application
    block();
    const quint32 now = ServerTime();
    // The server went meanwhile. Qt ends the program at the next event, but by then a user would have been saved, and
    // the next start would hand over to whoever sits in front of it.
    if (now == 0 && QX11Info::isPlatformX11())
        exit(EXIT_FAILURE);
    staleInput->DropUntil(now);
}

bool RunBlockingCheck(const std::function<bool()>& check)
{
    bool result = false;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    ServerTime(); // the round trip shows the cursor before we block
    RunBlocking([&] {
        result = check();
        QApplication::restoreOverrideCursor();
    });
    return result;
}
