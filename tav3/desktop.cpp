// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/desktop.h"

#include <QCursor>
#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QWidget>

void TavDesktop::InitWindowPosition(QWidget* widget)
{
    // Between two screens of different size the pointer can be on neither.
    const QScreen* pointed = QGuiApplication::screenAt(QCursor::pos());
    const QScreen* screen = pointed ? pointed : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect area = screen->availableGeometry();
    const QSize size = widget->size().boundedTo(area.size());
    if (size != widget->size())
        widget->resize(size);
    widget->move(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, area).topLeft());
}

void TavDesktop::SetDefaultStyleSheet(QWidget* widget)
{
    QFile sheet(QStringLiteral(":/tav3/default.qss"));
    if (sheet.open(QIODevice::ReadOnly))
        widget->setStyleSheet(QString::fromUtf8(sheet.readAll()));
}
