// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/blockingcheck.h"

#include "desktop/serverclock.h"
#include "desktop/singlepress.h"
#include "desktop/staleinput.h"

#include <QApplication>
#include <QX11Info>
#include <cstdlib>

void RunBlocking(const std::function<void()>& block)
{
    block();
    const quint32 now = ServerTime();
    // The server went meanwhile. Qt ends the program at the next event, but by then a user would have been saved, and
    // the next start would hand over to whoever sits in front of it.
    if (now == 0 && QX11Info::isPlatformX11())
        exit(EXIT_FAILURE);
    StaleInput::Instance()->DropUntil(now);
    SinglePress::HoldKeysDown(); // a key pressed meanwhile does not count, and neither do its repeats
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
