// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/windowactivator.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace {

// A screen, dialog or box; not a tooltip or a menu.
bool IsScreen(const QWidget* widget)
{
    const Qt::WindowType type = widget->windowType();
    return widget->isWindow() && (type == Qt::Widget || type == Qt::Window || type == Qt::Dialog);
}

void Activate(QWidget* window)
{
    window->raise();
    window->activateWindow();
}

void ActivateRemaining()
{
    if (QWidget* modal = QApplication::activeModalWidget())
        return Activate(modal);
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && IsScreen(window))
            return Activate(window);
    }
}

} // namespace

WindowActivator::WindowActivator(QObject* application) : QObject(application)
{
    application->installEventFilter(this);
}

bool WindowActivator::eventFilter(QObject* object, QEvent* event)
{
    const bool shown = event->type() == QEvent::Show;
    if ((shown || event->type() == QEvent::Hide) && object->isWidgetType()) {
        auto* widget = static_cast<QWidget*>(object);
        if (IsScreen(widget) && shown)
            Activate(widget);
        else if (IsScreen(widget))
            ActivateRemaining();
    }
    return QObject::eventFilter(object, event);
}
