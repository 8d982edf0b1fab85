// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/nobusofourown.h"

#include <QAccessible>
#include <QFile>
#include <cstdlib>

namespace {

const char AddressVariable[] = "DBUS_SESSION_BUS_ADDRESS";

// The library looks here by itself when no address is set.
bool HasUserBus()
{
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    return !folder.isEmpty() && QFile::exists(QFile::decodeName(folder) + QStringLiteral("/bus"));
}

} // namespace

NoBusOfOurOwn::NoBusOfOurOwn()
{
    m_isSet = !getenv(AddressVariable) && !HasUserBus() && setenv(AddressVariable, "disabled:", 0) == 0;
}

NoBusOfOurOwn::~NoBusOfOurOwn()
{
    if (!m_isSet)
        return;
    QAccessible::isActive(); // the bridge asks for the bus at its first use; this is it
    unsetenv(AddressVariable);
}
