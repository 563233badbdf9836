#include "MenuTyping.h"

#include "QWPlatform/System.h"
#include "QWPlatform/appkit/MenuItem.h"
#include "QWPlatform/foundation/Clock.h"

#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>

#include <algorithm>

namespace platform
{

namespace
{
constexpr qint64 patience = 1'000'000'000; ///< Nanoseconds, after which letters begin anew.

bool isLetter(const QKeyEvent &press)
{
    const auto command = press.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    return !command && !press.text().isEmpty() && press.text().at(0).isPrint();
}

bool canBeChosen(const QAction *item)
{
    return item->isVisible() && item->isEnabled() && !item->isSeparator();
}

bool isMnemonic(const QMenu &menu, const QString &letter)
{
    const QKeySequence key(Qt::ALT | static_cast<Qt::Key>(letter.at(0).toUpper().unicode()));
    const QList<QAction *> items = menu.actions();
    return std::any_of(items.begin(), items.end(), [&](const QAction *item) {
        return canBeChosen(item) && QKeySequence::mnemonic(item->text()) == key;
    });
}

bool beginsWith(const QString &title, const QString &typed)
{
    return title.startsWith(typed, Qt::CaseInsensitive);
}

bool hasWord(const QString &title, const QString &typed)
{
    qsizetype at = title.indexOf(typed, 1, Qt::CaseInsensitive);
    while (at > 0 && title.at(at - 1).isLetterOrNumber())
        at = title.indexOf(typed, at + 1, Qt::CaseInsensitive);
    return at > 0;
}

/// The first of @p items after @p current that matches, else the first one from the top.
template <class Matches>
QAction *nextWhere(const QList<QAction *> &items, QAction *current, Matches matches)
{
    const auto fits = [&](QAction *item) { return canBeChosen(item) && matches(titleOf(*item)); };
    const auto after = items.begin() + (items.indexOf(current) + 1);
    const auto found = std::find_if(after, items.end(), fits);
    if (found != items.end())
        return *found;
    const auto first = std::find_if(items.begin(), after, fits);
    return first == after ? nullptr : *first;
}

/// As the arrow keys would: a submenu, once it is active by way of setActiveAction(), opens and takes the next letters.
void stepTo(QMenu &menu, const QAction *item)
{
    for (qsizetype left = menu.actions().size(); left > 0 && menu.activeAction() != item; --left) {
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
        static_cast<QObject &>(menu).event(&down);
    }
}

void activate(QMenu &menu, QAction *item)
{
    if (item->menu())
        stepTo(menu, item);
    else
        menu.setActiveAction(item);
}
} // namespace

bool MenuTyping::take(QMenu &menu, const QKeyEvent &press)
{
    _begin(menu);
    const QString letter = press.text();
    if (!isLetter(press) || (m_typed.isEmpty() && (letter == u" " || isMnemonic(menu, letter)))) {
        m_typed.clear();
        return false;
    }
    QAction *const item = _find(menu, letter);
    if (item)
        activate(menu, item);
    else if (letter == u" ")
        return false; // chooses the item that was found
    return item || !m_typed.isEmpty();
}

void MenuTyping::_begin(QMenu &menu)
{
    const qint64 now = System::current().clock().monotonicNanoseconds();
    if (m_menu != &menu || now - m_lastTime > patience)
        m_typed.clear();
    m_menu = &menu;
    m_lastTime = now;
}

/// Keeps @p letter as typed where something is found.
QAction *MenuTyping::_find(const QMenu &menu, const QString &letter)
{
    const QList<QAction *> items = menu.actions();
    const QString typed = m_typed + letter;
    const bool isSameAgain = typed.count(letter, Qt::CaseInsensitive) == typed.size();
    QAction *const none = nullptr;
    QAction *item = nextWhere(items, none, [&](const QString &title) { return beginsWith(title, typed); });
    if (!item && isSameAgain)
        item = nextWhere(items, menu.activeAction(), [&](const QString &title) { return beginsWith(title, letter); });
    if (!item)
        item = nextWhere(items, none, [&](const QString &title) { return hasWord(title, typed); });
    if (item)
        m_typed = typed;
    return item;
}

} // namespace platform
