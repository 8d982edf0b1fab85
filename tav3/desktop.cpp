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
    static const bool palettesSet = (SetPalettes(), true); // once a process
    Q_UNUSED(palettesSet)
    QFile sheet(QStringLiteral(":/tav3/default.qss"));
    if (sheet.open(QIODevice::ReadOnly))
        widget->setStyleSheet(QString::fromUtf8(sheet.readAll()));
}
