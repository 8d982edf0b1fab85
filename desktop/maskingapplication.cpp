// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/maskingapplication.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QLineEdit>

namespace {

bool IsSecret(const QObject* object)
{
    return object && object->property("secret").toBool();
}

QString Masked(int length)
{
    return QString(length, QLatin1Char('*'));
}

class MaskedField : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit MaskedField(QLineEdit* field) : QAccessibleWidget(field, QAccessible::EditableText), m_field(field) { }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = true;
        state.passwordEdit = true;
        return state;
    }

    using QAccessibleWidget::text; // of the name
    QString text(int start, int end) const override { return Masked(characterCount()).mid(start, end - start); }
    int characterCount() const override { return m_field->text().size(); }
    int cursorPosition() const override { return m_field->cursorPosition(); }
    void setCursorPosition(int position) override { m_field->setCursorPosition(position); }

    int selectionCount() const override { return m_field->hasSelectedText() ? 1 : 0; }
    void selection(int, int* start, int* end) const override
    {
        *start = std::max(0, m_field->selectionStart()); // -1 for none
        *end = std::max(0, m_field->selectionEnd());
    }
    void addSelection(int start, int end) override { m_field->setSelection(start, end - start); }
    void setSelection(int, int start, int end) override { addSelection(start, end); }
    void removeSelection(int) override { m_field->deselect(); }

    // Letters have no places of their own here.
    QRect characterRect(int) const override { return rect(); }
    int offsetAtPoint(const QPoint&) const override { return -1; }
    void scrollToSubstring(int start, int) override { setCursorPosition(start); }
    QString attributes(int, int* start, int* end) const override
    {
        *start = 0;
        *end = characterCount();
        return {};
    }

private:
    QLineEdit* m_field;
};

QAccessibleInterface* MakeMaskedField(const QString& className, QObject* object)
{
    auto* field = qobject_cast<QLineEdit*>(object);
    return className == QLatin1String("QLineEdit") && IsSecret(field) ? new MaskedField(field) : nullptr;
}

void Announce(QAccessibleEvent* event);

// The bridge to the bus is reached only while no handler is installed.
void PassOn(QAccessibleEvent* event)
{
    QAccessible::installUpdateHandler(nullptr);
    QAccessible::updateAccessibility(event);
    QAccessible::installUpdateHandler(Announce);
}

void Announce(QAccessibleEvent* event)
{
    if (!IsSecret(event->object()))
        return PassOn(event);
    if (event->type() == QAccessible::TextInserted) {
        const auto* typed = static_cast<QAccessibleTextInsertEvent*>(event);
        QAccessibleTextInsertEvent masked(event->object(), typed->changePosition(),
                                          Masked(typed->textInserted().size()));
        PassOn(&masked);
    } else if (event->type() == QAccessible::TextRemoved) {
        const auto* removed = static_cast<QAccessibleTextRemoveEvent*>(event);
        QAccessibleTextRemoveEvent masked(event->object(), removed->changePosition(),
                                          Masked(removed->textRemoved().size()));
        PassOn(&masked);
    } else if (event->type() != QAccessible::TextUpdated && event->type() != QAccessible::ValueChanged) {
        PassOn(event);
    }
}

// What was made before the field was known as secret would show its text.
void MakeAccessibleAnew(QObject* field)
{
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(QAccessible::queryAccessibleInterface(field)));
}

} // namespace

MaskingApplication::MaskingApplication(int& argc, char** argv) : QApplication(argc, argv)
{
    QAccessible::installFactory(MakeMaskedField);
    QAccessible::installUpdateHandler(Announce);
}

bool MaskingApplication::notify(QObject* receiver, QEvent* event)
{
    if (event->type() == QEvent::DynamicPropertyChange && IsSecret(receiver))
        MakeAccessibleAnew(receiver);
    // Qt's bridge to the bus reports each key that comes from the display, and holds it back until somebody there has
    // answered. What is sent anew counts as the program's own. All keys, or letters would overtake the Tab before them.
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    return isKey && event->spontaneous() ? sendEvent(receiver, event) : QApplication::notify(receiver, event);
}
