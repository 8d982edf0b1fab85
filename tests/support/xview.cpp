// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tests/support/xview.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <X11/Xlib.h> // last: its macros break Qt's headers
#include <X11/Xutil.h>
#include <X11/extensions/Xfixes.h>

namespace {

using OpenedDisplay = std::unique_ptr<Display, decltype(&XCloseDisplay)>;

OpenedDisplay OpenDisplay()
{
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; }); // a window may be gone already
    OpenedDisplay display(XOpenDisplay(nullptr), XCloseDisplay);
    if (!display)
        qFatal("no X display");
    return display;
}

Window Focused(Display* display)
{
    Window window = None;
    int revertTo = 0;
    XGetInputFocus(display, &window, &revertTo);
    return window == PointerRoot ? None : window;
}

bool AreAlike(quint32 one, quint32 other, int tolerance)
{
    for (int shift = 0; shift < 24; shift += 8) {
        if (std::abs(int(one >> shift & 0xff) - int(other >> shift & 0xff)) > tolerance)
            return false;
    }
    return true;
}

} // namespace

qint64 CountPixels(quint32 colour, int tolerance)
{
    const auto display = OpenDisplay();
    XImage* grab = XGetImage(display.get(), DefaultRootWindow(display.get()), 0, 0, ScreenWidth, ScreenHeight, 0xffffff,
                             ZPixmap); // without what stands in the fourth byte
    const auto* pixels = reinterpret_cast<const quint32*>(grab->data);
    const qint64 count = std::count_if(pixels, pixels + ScreenWidth * ScreenHeight,
                                       [=](quint32 pixel) { return AreAlike(pixel, colour, tolerance); });
    XDestroyImage(grab);
    return count;
}

QByteArray PointerPicture()
{
    const auto display = OpenDisplay();
    XFixesCursorImage* cursor = XFixesGetCursorImage(display.get());
    const QByteArray picture(reinterpret_cast<const char*>(cursor->pixels),
                             int(cursor->width * cursor->height * sizeof *cursor->pixels));
    XFree(cursor);
    return picture;
}

QString FocusedTitle()
{
    const auto display = OpenDisplay();
    const Window window = Focused(display.get());
    char* name = nullptr;
    if (window == None || !XFetchName(display.get(), window, &name))
        return {};
    const QString title = QString::fromLatin1(name);
    XFree(name);
    return title;
}

void CloseFocused()
{
    const auto display = OpenDisplay();
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = Focused(display.get());
    event.xclient.message_type = XInternAtom(display.get(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = long(XInternAtom(display.get(), "WM_DELETE_WINDOW", False));
    XSendEvent(display.get(), event.xclient.window, False, NoEventMask, &event);
}
