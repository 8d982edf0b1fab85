// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/restingcaret.h"

#include <QApplication>
#include <QEvent>

RestingCaret::RestingCaret(QObject* application, int restMs)
    : QObject(application), m_flashTimeMs(QApplication::cursorFlashTime())
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(restMs);
    connect(&m_rest, &QTimer::timeout, [] { QApplication::setCursorFlashTime(0); }); // ms
    m_rest.start();
    application->installEventFilter(this);
}

bool RestingCaret::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress) {
        QApplication::setCursorFlashTime(m_flashTimeMs);
        m_rest.start();
    }
    return QObject::eventFilter(object, event);
}
