#include "EditEnd.h"

#include <QCompleter>
#include <QCoreApplication>
#include <QEvent>
#include <QLineEdit>

#include <utility>

namespace platform
{

EditEnd::EditEnd(QLineEdit &field, std::function<void()> ended)
    : QObject(&field)
    , m_field(field)
    , m_ended(std::move(ended))
    , m_before(field.text())
    , m_beforeOther(field.text())
    , m_typed(field.text())
{
    connect(&field, &QLineEdit::textEdited, this, &EditEnd::_textEdited);
    connect(&field, &QLineEdit::textChanged, this, &EditEnd::_textChanged);
    connect(&field, &QLineEdit::editingFinished, this, &EditEnd::_end);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &EditEnd::_end);
    field.installEventFilter(this);
}

void EditEnd::forget()
{
    m_before = m_field.text();
}

bool EditEnd::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Hide)
        _end();
    return QObject::eventFilter(watched, event);
}

/// Comes before textChanged, but after it from the button that clears a field, whose change looked like the program's.
void EditEnd::_textEdited(const QString &text)
{
    const bool wasCleared = text.isEmpty() && m_typed.isEmpty();
    if (wasCleared)
        m_before = m_beforeOther;
    m_typed = text;
}

void EditEnd::_textChanged(const QString &text)
{
    const bool isCompletion = m_field.completer() && m_field.hasFocus();
    if (text == m_typed || isCompletion)
        return;
    m_beforeOther = m_before;
    m_before = m_typed = text; // the program's own
}

/// Remembered first: the action may show an alert, which takes the keyboard away once more.
void EditEnd::_end()
{
    if (m_field.text() == m_before || !m_field.hasAcceptableInput())
        return;
    forget();
    m_ended();
}

} // namespace platform
