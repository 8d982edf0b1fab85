// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/singleline.h"

#include <QEvent>
#include <QLineEdit>
#include <algorithm>

namespace {

bool IsLineBreak(QChar character)
{
    switch (character.unicode()) {
    case '\n':
    case '\v':
    case '\f':
    case '\r':
    case 0x85: // next line
    case QChar::LineSeparator:
    case QChar::ParagraphSeparator:
        return true;
    default:
        return false;
    }
}

void DropLineBreaks(QLineEdit* field)
{
    QString text = field->text();
    const auto end = std::remove_if(text.begin(), text.end(), IsLineBreak);
    if (end == text.end())
        return;
    const QString before = field->text().left(field->cursorPosition());
    const auto dropped = std::count_if(before.begin(), before.end(), IsLineBreak);
    text.truncate(static_cast<int>(end - text.begin()));
    field->setText(text);
    field->setCursorPosition(before.size() - static_cast<int>(dropped));
}

} // namespace

SingleLine::SingleLine(QObject* application) : QObject(application)
{
    application->installEventFilter(this);
}

bool SingleLine::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Polish) { // once, before a field is shown
        if (auto* field = qobject_cast<QLineEdit*>(object))
            connect(field, &QLineEdit::textChanged, field, [field] { DropLineBreaks(field); });
    }
    return QObject::eventFilter(object, event);
}
