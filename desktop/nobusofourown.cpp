// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/nobusofourown.h"

#include <QAccessible>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char AddressVariable[] = "DBUS_SESSION_BUS_ADDRESS";

// The library looks here by itself when no address is set.
bool HasUserBus()
{
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    struct stat info { };
    return !folder.isEmpty() && stat((folder + "/bus").constData(), &info) == 0 && S_ISSOCK(info.st_mode)
        && info.st_uid == getuid();
}

} // namespace

NoBusOfOurOwn::NoBusOfOurOwn() : m_wasSet(qEnvironmentVariableIsSet(AddressVariable))
{
    if (qEnvironmentVariableIsEmpty(AddressVariable) && !HasUserBus())
        m_isDisabled = qputenv(AddressVariable, "disabled:");
}

NoBusOfOurOwn::~NoBusOfOurOwn()
{
    if (!m_isDisabled)
        return;
    QAccessible::isActive(); // the bridge asks for the bus at its first use; this is it
    if (m_wasSet)
        qputenv(AddressVariable, "");
    else
        qunsetenv(AddressVariable);
}
