// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tests/support/look.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <cmath>

namespace {

constexpr double MinContrast = 4.5; // WCAG 2.1, 1.4.3

// All of the window that can be seen; the window itself when that is a label, a tooltip.
QWidgetList Seen(QWidget& window)
{
    QCoreApplication::sendPostedEvents(); // or it is not laid out
    QWidgetList seen = window.findChildren<QWidget*>();
    seen.erase(std::remove_if(seen.begin(), seen.end(), [&](QWidget* w) { return !w->isVisibleTo(&window); }),
               seen.end());
    return seen.isEmpty() ? QWidgetList{&window} : seen;
}

// Whether it shows all of its text, which a button must have; a label without one, a picture. The lock is a picture of
// the terminal's own.
bool IsWhole(const QWidget* widget)
{
    const auto* label = qobject_cast<const QLabel*>(widget);
    if (label && label->text().isEmpty())
        return !label->pixmap(Qt::ReturnByValue).isNull() || label->objectName() == QLatin1String("lIcon");
    if (label && label->wordWrap())
        return label->heightForWidth(label->width()) <= label->height();
    if (qobject_cast<const QPushButton*>(widget) && widget->property("text").toString().isEmpty())
        return false;
    const QSize needed = widget->property("text").toString().isEmpty() ? QSize() : widget->minimumSizeHint();
    return needed.boundedTo(widget->size()) == needed;
}

bool LiesOn(const QWidget* widget, const QWidget* other)
{
    return other != widget && other->parent() == widget->parent() && other->geometry().intersects(widget->geometry());
}

double Luminance(QRgb colour)
{
    const auto linear = [](int value) { // IEC 61966-2-1
        const double share = value / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

// Of the darkest and the lightest colour: of a letter the strongest pixels count, as its edges are blurred.
double Contrast(const QImage& picture)
{
    const auto* pixels = reinterpret_cast<const QRgb*>(picture.constBits());
    double dark = 1;
    double light = 0;
    for (const QRgb colour : QSet<QRgb>(pixels, pixels + picture.width() * picture.height())) {
        dark = std::min(dark, Luminance(colour));
        light = std::max(light, Luminance(colour));
    }
    return (light + 0.05) / (dark + 0.05);
}

void CheckContrast(QWidget& window)
{
    const QWidgetList seen = Seen(window);
    const QImage picture = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const qreal scale = window.devicePixelRatioF();
    for (const QWidget* widget : seen) {
        if ((widget->property("text").toString() + widget->property("placeholderText").toString()).isEmpty())
            continue;
        const QRect inside = widget->rect().adjusted(3, 3, -3, -3); // of the border
        const QRect place(widget->mapTo(&window, inside.topLeft()) * scale, inside.size() * scale);
        const double contrast = Contrast(picture.copy(place));
        QVERIFY2(contrast >= MinContrast, qPrintable(widget->objectName() + QString::number(contrast)));
    }
}

} // namespace

void CheckLayout(QWidget& window)
{
    const QWidgetList seen = Seen(window);
    for (const QWidget* widget : seen) {
        const QByteArray name = (window.windowTitle() + QLatin1Char(' ') + widget->objectName()).toUtf8();
        QVERIFY2(IsWhole(widget), name.constData());
        QVERIFY2(widget->isWindow() || widget->parentWidget()->rect().contains(widget->geometry()), name.constData());
        for (const QWidget* other : seen)
            QVERIFY2(!LiesOn(widget, other), name.constData());
    }
}

void CheckContrastInEveryState(QWidget& window)
{
    for (const auto& [hovered, enabled] : {std::pair(true, true), std::pair(false, false), std::pair(false, true)}) {
        for (auto* button : window.findChildren<QPushButton*>()) {
            button->setAttribute(Qt::WA_UnderMouse, hovered);
            QMouseEvent move(QEvent::MouseMove, button->rect().center(), Qt::NoButton, {}, {});
            QCoreApplication::sendEvent(button, &move); // a button goes by this, too
            button->setEnabled(enabled);
        }
        CheckContrast(window);
    }
}
