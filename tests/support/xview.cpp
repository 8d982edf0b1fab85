// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tests/support/xview.h"

#include <memory>
#include <X11/Xlib.h> // last: its macros break Qt's headers
#include <X11/Xutil.h>
#include <X11/extensions/Xfixes.h>

namespace {

struct DisplayCloser {
    void operator()(Display* display) const { XCloseDisplay(display); }
};

std::unique_ptr<Display, DisplayCloser> OpenDisplay()
{
    Display* display = XOpenDisplay(nullptr);
    if (!display)
        qFatal("no X display");
    return std::unique_ptr<Display, DisplayCloser>(display);
}

} // namespace

QImage ScreenPixels()
{
    const auto display = OpenDisplay();
    const int screen = DefaultScreen(display.get());
    const int width = DisplayWidth(display.get(), screen);
    const int height = DisplayHeight(display.get(), screen);
    XImage* grab = XGetImage(display.get(), DefaultRootWindow(display.get()), 0, 0, unsigned(width), unsigned(height),
                             AllPlanes, ZPixmap);
    const auto* bytes = reinterpret_cast<const uchar*>(grab->data);
    const QImage pixels = QImage(bytes, width, height, grab->bytes_per_line, QImage::Format_RGB32).copy();
    XDestroyImage(grab);
    return pixels;
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
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; }); // it may be gone already
    Window window = None;
    int revertTo = 0;
    char* name = nullptr;
    XGetInputFocus(display.get(), &window, &revertTo);
    if (window == None || window == PointerRoot || !XFetchName(display.get(), window, &name))
        return {};
    const QString title = QString::fromLatin1(name);
    XFree(name);
    return title;
}

void AskToClose(unsigned long window)
{
    const auto display = OpenDisplay();
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display.get(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = long(XInternAtom(display.get(), "WM_DELETE_WINDOW", False));
    XSendEvent(display.get(), window, False, NoEventMask, &event);
}
