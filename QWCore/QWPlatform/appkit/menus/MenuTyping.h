#pragma once

#include <QPointer>
#include <QString>

class QAction;
class QKeyEvent;
class QMenu;

namespace platform
{

/// Letters typed into an open menu go to the first item that begins with them, else to one with a word that does; one
/// letter again and again goes through all of its items. A letter that is a mnemonic stays the menu's own. Main thread.
class MenuTyping
{
public:
    /// True when the press was taken.
    bool take(QMenu &menu, const QKeyEvent &press);

private:
    void _begin(QMenu &menu);
    QAction *_find(const QMenu &menu, const QString &letter);

    QPointer<QMenu> m_menu;
    QString m_typed;
    qint64 m_lastTime = 0; ///< Of the last press, by the System's steady clock.
};

} // namespace platform
