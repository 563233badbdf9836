#include "ShortcutSearch.h"

#include <QWPlatform/foundation/Localization.h>

#include <QAction>
#include <QIcon>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QShortcut>

namespace qw
{

namespace
{
/// The buttons inside a field have pictures only.
void nameButton(QAction *action, const QString &name)
{
    if (action)
        action->setText(name);
}
} // namespace

ShortcutSearch::ShortcutSearch(QLineEdit &field, const QIcon &icon)
    : m_field(field)
{
    m_field.installEventFilter(this);
    nameButton(m_field.addAction(icon, QLineEdit::LeadingPosition), platform::localized("Search"));
    nameButton(m_field.findChild<QAction *>("_q_qlineeditclearaction"),
               platform::localized("Clear Search")); // Qt's own
    connect(&m_field, &QLineEdit::textChanged, this, [this] {
        if (!m_isClearing)
            Q_EMIT changed();
    });
    const auto *const find = new QShortcut(QKeySequence::Find, m_field.window());
    connect(find, &QShortcut::activated, this, [this] { m_field.setFocus(Qt::ShortcutFocusReason); });
}

ShortcutSearch::~ShortcutSearch() = default;

QString ShortcutSearch::text() const
{
    return m_field.text();
}

/// The field's own signals are sent, since its button to clear it goes by them.
void ShortcutSearch::clear()
{
    const QScopedValueRollback<bool> clearing(m_isClearing, true);
    m_field.clear();
}

bool ShortcutSearch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && _take(static_cast<QKeyEvent *>(event)->key()))
        return true;
    return QObject::eventFilter(watched, event);
}

bool ShortcutSearch::_take(int key)
{
    const bool endsSearch = key == Qt::Key_Escape && !m_field.text().isEmpty();
    if (endsSearch)
        m_field.clear();
    else if (key == Qt::Key_Down)
        Q_EMIT left();
    return endsSearch || key == Qt::Key_Down;
}

} // namespace qw
