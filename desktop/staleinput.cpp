// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/staleinput.h"

#include <QCoreApplication>
#include <QInputEvent>

namespace {

// After so many ms nothing from before is still on its way; the comparison of server times must not outlive it.
constexpr qint64 OnItsWayMs = 10000;

bool IsInput(const QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return true;
    default:
        return false; // releases only end what was pressed before
    }
}

} // namespace

StaleInput* StaleInput::Instance()
{
    static auto* instance = new StaleInput; // child of the application
    return instance;
}

StaleInput::StaleInput() : QObject(qApp)
{
    qApp->installEventFilter(this);
}

void StaleInput::DropUntil(quint32 serverTime)
{
    m_dropUntil = serverTime;
    m_sinceDrop.start();
}

bool StaleInput::eventFilter(QObject* object, QEvent* event)
{
    if (!IsInput(event) || !IsStale(static_cast<quint32>(static_cast<QInputEvent*>(event)->timestamp())))
        return QObject::eventFilter(object, event);
    event->accept(); // or Qt would still look for a shortcut
    return true;
}

bool StaleInput::IsStale(quint32 serverTime) const
{
    return m_sinceDrop.isValid() && m_sinceDrop.elapsed() < OnItsWayMs && serverTime != 0
        && static_cast<qint32>(serverTime - m_dropUntil) <= 0;
}
