// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/serverclock.h"

#include <QByteArray>
#include <QX11Info>
#include <cstdlib>
#include <memory>
#include <xcb/sync.h>

namespace {

template <typename T> std::unique_ptr<T, decltype(&free)> Owned(T* reply)
{
    return {reply, free};
}

// Not xcb_sync_systemcounter_name(), which takes the padding of the C struct for a part of the protocol and so starts
// two bytes into the name.
QByteArray NameOf(const xcb_sync_systemcounter_t& counter)
{
    return {reinterpret_cast<const char*>(&counter.name_len + 1), counter.name_len};
}

// The counter of the server's clock; 0 where its SYNC extension is missing.
xcb_sync_counter_t FindClock(xcb_connection_t* connection)
{
    const auto counters
        = Owned(xcb_sync_list_system_counters_reply(connection, xcb_sync_list_system_counters(connection), nullptr));
    if (!counters)
        return 0;
    for (auto counter = xcb_sync_list_system_counters_counters_iterator(counters.get()); counter.rem > 0;
         xcb_sync_systemcounter_next(&counter)) {
        if (NameOf(*counter.data) == "SERVERTIME")
            return counter.data->counter;
    }
    return 0;
}

} // namespace

// Not QX11Info::getTimestamp(), which takes the time from an event: a second call before the event loop has run can
// find the event of the first one, and so an older time.
quint32 ServerTime()
{
    xcb_connection_t* connection = QX11Info::isPlatformX11() ? QX11Info::connection() : nullptr;
    if (!connection)
        return 0;
    static const xcb_sync_counter_t clock = FindClock(connection);
    if (clock == 0)
        return static_cast<quint32>(QX11Info::getTimestamp());
    const auto time
        = Owned(xcb_sync_query_counter_reply(connection, xcb_sync_query_counter(connection, clock), nullptr));
    return time ? time->counter_value.lo : 0;
}
