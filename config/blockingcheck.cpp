// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "config/blockingcheck.h"

#include <QApplication>
#include <QKeyEvent>
#include <QX11Info>

namespace {

// Drops input that the X server saw before a given moment, and the repeats of a Return that is held down: one press is
// one attempt. One object a process, made at the first check, child of the application.
class InputFilter : public QObject {
public:
    static InputFilter* Instance()
    {
        static auto* instance = new InputFilter(qApp);
        return instance;
    }

    // Server time in ms, 32 bits that wrap around after 49 days.
    void DropUntil(quint32 serverTime)
    {
        m_active = true;
        m_dropUntil = serverTime;
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (IsHeldReturn(event))
            return true;
        if (m_active && IsInput(event) && IsStale(static_cast<QInputEvent*>(event)))
            return true;
        return QObject::eventFilter(object, event);
    }

private:
    explicit InputFilter(QObject* parent) : QObject(parent) { qApp->installEventFilter(this); }

    static bool IsHeldReturn(const QEvent* event)
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto* press = static_cast<const QKeyEvent*>(event);
        return press->isAutoRepeat() && (press->key() == Qt::Key_Return || press->key() == Qt::Key_Enter);
    }

    static bool IsInput(const QEvent* event)
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

    bool IsStale(const QInputEvent* event) const
    {
        const auto stamp = static_cast<quint32>(event->timestamp());
        return stamp != 0 && static_cast<qint32>(stamp - m_dropUntil) <= 0; // 0: not from the server
    }

    bool m_active = false;
    quint32 m_dropUntil = 0;
};

} // namespace

bool RunBlockingCheck(const std::function<bool()>& check)
{
    InputFilter* filter = InputFilter::Instance();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool result = check();
    QApplication::restoreOverrideCursor();
    if (QX11Info::isPlatformX11())
        filter->DropUntil(static_cast<quint32>(QX11Info::getTimestamp()));
    return result;
}
