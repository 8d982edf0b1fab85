// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/singlepress.h"

#include "desktop/keyboard.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>

namespace {

bool StartsSomething(int key)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return true;
    case Qt::Key_Space: // in a field it may repeat
        return qobject_cast<QAbstractButton*>(QApplication::focusWidget()) != nullptr;
    default:
        return false;
    }
}

bool IsWindow(const QObject* object)
{
    return object->isWidgetType() && static_cast<const QWidget*>(object)->isWindow();
}

} // namespace

SinglePress::SinglePress(QObject* application) : QObject(application)
{
    LetHeldKeysSendNoReleases();
    const auto down = KeysDown();
    for (quint32 code = 0; code < KeyCodes; ++code) {
        if (down[code])
            m_held.insert(code, 0);
    }
    application->installEventFilter(this);
}

bool SinglePress::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::WindowActivate:
        if (IsWindow(object)) // its children hear of it too
            ForgetKeysLetGo();
        break;
    case QEvent::KeyRelease:
        m_held.remove(static_cast<QKeyEvent*>(event)->nativeScanCode());
        break;
    case QEvent::KeyPress: // on its way to the widgets, which get it one after the other
        if (object->isWindowType() && IsRepeat(static_cast<QKeyEvent*>(event)))
            return true;
        break;
    case QEvent::MouseButtonDblClick:
        if (qobject_cast<QAbstractButton*>(object))
            return true;
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

// Another filter may send a copy of the event, which has its time.
bool SinglePress::IsRepeat(const QKeyEvent* press)
{
    const quint32 code = press->nativeScanCode(); // 0: not from the server
    if (code != 0 && !m_held.contains(code))
        m_held.insert(code, press->timestamp());
    const bool isHeld = code != 0 && m_held.value(code) != press->timestamp();
    return (isHeld || press->isAutoRepeat()) && StartsSomething(press->key());
}

// The releases went elsewhere while no window of ours was active.
void SinglePress::ForgetKeysLetGo()
{
    const auto down = KeysDown();
    for (auto key = m_held.begin(); key != m_held.end();)
        key = down[key.key() % KeyCodes] ? std::next(key) : m_held.erase(key);
}
