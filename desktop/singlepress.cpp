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

bool IsOnButton(const QMouseEvent* event)
{
    return qobject_cast<QAbstractButton*>(QApplication::widgetAt(event->globalPos())) != nullptr;
}

SinglePress* s_instance = nullptr;

bool IsWindow(const QObject* object)
{
    return object->isWidgetType() && static_cast<const QWidget*>(object)->isWindow();
}

} // namespace

SinglePress::SinglePress(QObject* application) : QObject(application)
{
    LetHeldKeysSendNoReleases();
    s_instance = this;
    HoldKeysDown();
    application->installEventFilter(this);
}

SinglePress::~SinglePress()
{
    s_instance = nullptr;
}

void SinglePress::HoldKeysDown()
{
    if (!s_instance)
        return;
    const auto down = KeysDown();
    for (quint32 code = 0; code < KeyCodes; ++code) {
        if (down[code])
            s_instance->m_held.insert(code, {});
    }
}

bool SinglePress::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::WindowActivate:
        if (IsWindow(object)) // its children hear of it too
            NoteKeysLetGo();
        break;
    case QEvent::FocusIn: // can come later than that
        if (object->isWindowType())
            NoteKeysLetGo();
        break;
    case QEvent::KeyRelease:
        m_held.remove(static_cast<QKeyEvent*>(event)->nativeScanCode());
        break;
    case QEvent::KeyPress: // on its way to the widgets, which get it one after the other
        if (object->isWindowType() && IsRepeat(static_cast<QKeyEvent*>(event)))
            return true;
        break;
    case QEvent::MouseButtonDblClick: // before a widget gets the focus by it
        if (object->isWindowType() && IsOnButton(static_cast<QMouseEvent*>(event)))
            return true;
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

// Another filter may send a copy of the event, which has its time.
bool SinglePress::IsRepeat(const QKeyEvent* event)
{
    const quint32 code = event->nativeScanCode(); // 0: not from the server
    const auto time = static_cast<quint32>(event->timestamp());
    const auto press = m_held.find(code);
    const bool isFirst = press == m_held.end() || (press->letGo != 0 && static_cast<qint32>(time - press->letGo) > 0);
    if (code != 0 && isFirst)
        m_held.insert(code, {event->timestamp(), 0});
    const bool isRepeat = code != 0 && !isFirst && press->pressed != event->timestamp();
    return (isRepeat || event->isAutoRepeat()) && StartsSomething(event->key());
}

// The releases went elsewhere while no window of ours was active. Presses from before may still be on their way.
void SinglePress::NoteKeysLetGo()
{
    if (m_held.isEmpty())
        return;
    const auto down = KeysDown();
    const quint32 now = ServerTime();
    for (auto key = m_held.begin(); key != m_held.end(); ++key) {
        if (!down[key.key() % KeyCodes] && key->letGo == 0)
            key->letGo = now;
    }
}
