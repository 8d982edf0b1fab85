// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/singlepress.h"

#include "desktop/staleinput.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>
#include <xcb/xcb.h>

namespace {

constexpr unsigned SentByProgram = 0x80; // a bit of an event's type

SinglePress* s_instance = nullptr;

bool StartsSomething(quint32 keyCode)
{
    switch (KeyOf(keyCode)) {
    case Key::Return:
    case Key::Escape:
        return true;
    case Key::Space: // in a field it may repeat
        return qobject_cast<QAbstractButton*>(QApplication::focusWidget()) != nullptr;
    case Key::Other:
        break;
    }
    return false;
}

bool IsOnButton(const QMouseEvent* event)
{
    return qobject_cast<QAbstractButton*>(QApplication::widgetAt(event->globalPos())) != nullptr;
}

} // namespace

SinglePress::SinglePress(QGuiApplication* application) : QObject(application)
{
    LetHeldKeysSendNoReleases();
    s_instance = this;
    HoldKeysDown();
    application->installEventFilter(this);
    application->installNativeEventFilter(this);
}

SinglePress::~SinglePress()
{
    s_instance = nullptr;
}

void SinglePress::HoldKeysDown()
{
    if (s_instance)
        s_instance->m_held = KeysDown();
}

bool SinglePress::nativeEventFilter(const QByteArray& eventType, void* message, long*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* key = static_cast<xcb_key_press_event_t*>(message); // a release has the same form
    const unsigned type = key->response_type & ~SentByProgram;
    // The keyboard was asked since: a late release would let go a key that is down again.
    if ((type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) && StaleInput::Instance()->IsStale(key->time))
        return false;
    switch (type) {
    case XCB_KEY_PRESS: {
        const bool isRepeat = m_held[key->detail];
        m_held.set(key->detail);
        return isRepeat && StartsSomething(key->detail);
    }
    case XCB_KEY_RELEASE:
        m_held.reset(key->detail);
        return false;
    case XCB_FOCUS_IN: // releases may have gone elsewhere meanwhile
        if (m_held.any())
            m_held &= KeysDown();
        return false;
    default:
        return false;
    }
}

bool SinglePress::eventFilter(QObject* object, QEvent* event)
{
    // At the window, before a widget gets the focus by it.
    if (event->type() == QEvent::MouseButtonDblClick && object->isWindowType())
        return IsOnButton(static_cast<QMouseEvent*>(event));
    return QObject::eventFilter(object, event);
}
