// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/blockingcheck.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QX11Info>
#include <cstdlib>

namespace {

// After so many ms nothing typed before is still on its way; the comparison of server times must not outlive it.
constexpr qint64 StaleInputMs = 10000;

bool IsSubmitKey(int key)
{
    // Space presses the button that has the focus; in a field it may repeat.
    return key == Qt::Key_Return || key == Qt::Key_Enter
        || (key == Qt::Key_Space && qobject_cast<QAbstractButton*>(QApplication::focusWidget()));
}

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
        m_dropUntil = serverTime;
        m_sinceCheck.start();
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::KeyRelease)
            NoteRelease(static_cast<QKeyEvent*>(event));
        if (!IsInput(event) || (!IsStale(static_cast<QInputEvent*>(event)) && !IsRepeat(event)))
            return QObject::eventFilter(object, event);
        event->accept(); // or Qt would still look for a shortcut
        return true;
    }

private:
    explicit InputFilter(QObject* parent) : QObject(parent) { qApp->installEventFilter(this); }

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
        const auto stamp = static_cast<quint32>(event->timestamp()); // 0: not from the server
        return m_sinceCheck.isValid() && m_sinceCheck.elapsed() < StaleInputMs && stamp != 0
            && static_cast<qint32>(stamp - m_dropUntil) <= 0;
    }

    void NoteRelease(const QKeyEvent* release)
    {
        if (IsSubmitKey(release->key()))
            m_lastRelease = release->timestamp();
    }

    // The server repeats a key as a release and a press of the same time; Qt marks only some of these presses.
    bool IsRepeat(const QEvent* event) const
    {
        if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
            return false;
        const auto* press = static_cast<const QKeyEvent*>(event);
        return IsSubmitKey(press->key())
            && (press->isAutoRepeat() || (press->timestamp() != 0 && press->timestamp() == m_lastRelease));
    }

    QElapsedTimer m_sinceCheck;
    quint32 m_dropUntil = 0;
    ulong m_lastRelease = 0;
};

// The X server's time in ms, after all that was sent before; 0 on another platform.
quint32 ServerTime()
{
    return QX11Info::isPlatformX11() ? static_cast<quint32>(QX11Info::getTimestamp()) : 0;
}

} // namespace

bool RunBlockingCheck(const std::function<bool()>& check)
{
    InputFilter* filter = InputFilter::Instance();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    ServerTime(); // the round trip shows the cursor before we block
    const bool result = check();
    QApplication::restoreOverrideCursor();
    const quint32 now = ServerTime();
    // The server went meanwhile. Qt ends the program at the next event, but by then a user would have been saved, and
    // the next start would hand over to whoever sits in front of it.
    if (now == 0 && QX11Info::isPlatformX11())
        exit(EXIT_FAILURE);
    filter->DropUntil(now);
    return result;
}
