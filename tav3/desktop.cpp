// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tav3/desktop.h"

#include <QApplication>
#include <QCursor>
#include <QFile>
#include <QScreen>
#include <QStyle>
#include <QToolTip>
#include <QWidget>

namespace {

// A window that has a greatest size may grow to it where it stands.
QSize LargestSize(const QWidget& widget)
{
    const QSize limit = widget.maximumSize();
    return {limit.width() < QWIDGETSIZE_MAX ? limit.width() : widget.width(),
            limit.height() < QWIDGETSIZE_MAX ? limit.height() : widget.height()};
}

} // namespace

void TavDesktop::InitWindowPosition(QWidget* widget)
{
    // Between two screens of different size the pointer can be on neither.
    const QScreen* pointed = QGuiApplication::screenAt(QCursor::pos());
    const QScreen* screen = pointed ? pointed : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect area = screen->availableGeometry();
    widget->resize(widget->size().boundedTo(area.size()));
    const QSize largest = LargestSize(*widget).boundedTo(area.size());
    widget->move(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, largest, area).topLeft());
}

namespace {

// What no style sheet reaches: the placeholder of a field, which Qt would take at half the text's strength (too faint
// to read), and the tooltip, which belongs to no widget.
void SetPalettes()
{
    QPalette fields = QApplication::palette();
    fields.setColor(QPalette::Text, Qt::black);
    fields.setColor(QPalette::PlaceholderText, QColor(0x6b6661));
    QApplication::setPalette(fields, "QLineEdit");
    QPalette tip = QToolTip::palette();
    tip.setColor(QPalette::ToolTipBase, QColor(0x26292e));
    tip.setColor(QPalette::ToolTipText, Qt::white);
    QToolTip::setPalette(tip);
}

} // namespace

void TavDesktop::SetDefaultStyleSheet(QWidget* widget)
{
    static bool palettesSet = false; // once a process
    if (!palettesSet)
        SetPalettes();
    palettesSet = true;
    QFile sheet(QStringLiteral(":/tav3/default.qss"));
    if (sheet.open(QIODevice::ReadOnly))
        widget->setStyleSheet(QString::fromUtf8(sheet.readAll()));
}
