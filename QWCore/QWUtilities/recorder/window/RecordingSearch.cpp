#include "RecordingSearch.h"

#include <QWPlatform/foundation/Localization.h>

#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QShortcut>

namespace qw
{

RecordingSearch::RecordingSearch(QLineEdit &field, const QIcon &picture)
    : m_field(field)
{
    m_field.installEventFilter(this);
    m_field.addAction(picture, QLineEdit::LeadingPosition)->setText(platform::localized("Search"));
    if (auto *const clear = m_field.findChild<QAction *>("_q_qlineeditclearaction")) // Qt's own, a picture only
        clear->setText(platform::localized("Clear Search"));
    connect(&m_field, &QLineEdit::textChanged, this, [this] {
        if (!m_isClearing)
            Q_EMIT changed();
    });
    const auto *const find = new QShortcut(QKeySequence::Find, m_field.window());
    connect(find, &QShortcut::activated, this, [this] {
        m_field.setFocus(Qt::ShortcutFocusReason);
        m_field.selectAll();
    });
}

RecordingSearch::~RecordingSearch() = default;

QString RecordingSearch::text() const
{
    return m_field.text();
}

/// The field's own signals are sent, since its button to clear it goes by them.
void RecordingSearch::clear()
{
    const QScopedValueRollback<bool> clearing(m_isClearing, true);
    m_field.clear();
}

bool RecordingSearch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && _take(static_cast<QKeyEvent *>(event)->key()))
        return true;
    return QObject::eventFilter(watched, event);
}

bool RecordingSearch::_take(int key)
{
    const bool endsSearch = key == Qt::Key_Escape && !m_field.text().isEmpty();
    const bool leaves = key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (endsSearch)
        m_field.clear();
    else if (leaves)
        Q_EMIT left();
    return endsSearch || leaves;
}

} // namespace qw
