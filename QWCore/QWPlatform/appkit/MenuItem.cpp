#include "MenuItem.h"

#include "QWPlatform/appkit/menus/KeyEquivalent.h"
#include "QWPlatform/appkit/menus/MenuTitleFlash.h"
#include "QWPlatform/appkit/responders/FirstResponder.h"
#include "QWPlatform/appkit/responders/WidgetTree.h"
#include "ResponderChain.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMetaMethod>
#include <QSet>

#include <algorithm>

namespace platform
{

namespace
{
constexpr qsizetype longestShownTitle = 120;

/// @p position moved so that no surrogate pair is cut.
qsizetype wholeCharacter(const QString &text, qsizetype position)
{
    return text.at(position).isLowSurrogate() ? position + 1 : position;
}

QString shortened(const QString &text)
{
    if (text.size() <= longestShownTitle)
        return text;
    const qsizetype left = wholeCharacter(text, longestShownTitle / 2);
    const qsizetype right = wholeCharacter(text, text.size() - longestShownTitle / 2);
    return text.left(left) + QChar(0x2026) + text.mid(right);
}

/// Whether a modal panel, or a sheet on the window, keeps the user from it.
bool isBlocked(const QWidget &window)
{
    const QWidgetList panels = QApplication::topLevelWidgets();
    return std::any_of(panels.begin(), panels.end(), [&](const QWidget *panel) {
        const bool reaches = panel->windowModality() == Qt::ApplicationModal || isWithin(panel, window);
        return panel->isVisible() && panel->isModal() && reaches && !isWithin(&window, *panel);
    });
}

/// @p menu is null for an item of the menu bar itself.
bool performItem(MenuItem &item, QMenu *menu, const QKeyEvent &event)
{
    if (!item.isVisible() || !item.matches(event) || !item.validate())
        return false;
    if (menu)
        flashMenuTitle(*menu);
    item.setEnabled(true);
    item.trigger();
    return true;
}

bool performFirst(const QList<QAction *> &actions, QMenu *menu, const QKeyEvent &event)
{
    for (QAction *const action : actions) {
        QMenu *const submenu = action->isEnabled() ? action->menu() : nullptr;
        if (submenu && performKeyEquivalent(*submenu, event))
            return true;
        auto *const item = qobject_cast<MenuItem *>(action);
        if (item && performItem(*item, menu, event))
            return true;
    }
    return false;
}
} // namespace

MenuItem::MenuItem(const QString &title, QObject *parent)
    : QAction(shownTitle(title), parent)
    , m_title(title)
{
}

MenuItem::~MenuItem() = default;

void MenuItem::setTitle(const QString &title)
{
    m_title = title;
    _showText();
}

/// Connects when an action comes first, by index: menus of 10,000 items are made while the user waits.
void MenuItem::setAction(const Selector &action)
{
    static const int triggered = QMetaMethod::fromSignal(&QAction::triggered).methodIndex();
    static const int send = staticMetaObject.indexOfMethod("_send(bool)");
    if (m_action.isNull() && !action.isNull())
        QMetaObject::connect(this, triggered, this, send, Qt::DirectConnection);
    else if (action.isNull() && !m_action.isNull())
        QMetaObject::disconnect(this, triggered, this, send);
    m_action = action;
}

void MenuItem::setTarget(QObject *target)
{
    m_target = target;
    m_hasTarget = target;
}

void MenuItem::setKeyEquivalent(const QString &character, quint32 modifierMask)
{
    if (m_keyEquivalent == character && m_keyEquivalentModifiers == modifierMask)
        return;
    m_keyEquivalent = character;
    m_keyEquivalentModifiers = modifierMask;
    _showText();
}

bool MenuItem::matches(const QKeyEvent &event) const
{
    return KeyEquivalent::matches(m_keyEquivalent, m_keyEquivalentModifiers, event);
}

bool MenuItem::validate()
{
    if (m_action.isNull())
        return isEnabled();
    if (m_hasTarget && !m_target)
        return false;
    return validateMenuItem(targetForAction(m_action, m_target), this);
}

/// A menu draws what follows a tab in the column of shortcuts.
void MenuItem::_showText()
{
    const QString key = KeyEquivalent::text(m_keyEquivalent, m_keyEquivalentModifiers);
    setText(key.isEmpty() ? shownTitle(m_title) : shownTitle(m_title) + '\t' + key);
}

void MenuItem::_send(bool)
{
    if (!m_hasTarget || m_target)
        sendAction(m_action, m_target, this);
}

QString titleOf(const QAction &item)
{
    if (const auto *menuItem = qobject_cast<const MenuItem *>(&item))
        return menuItem->title();
    QString text = item.text();
    text.truncate(text.indexOf('\t') < 0 ? text.size() : text.indexOf('\t'));
    text.replace("&&", QString(QChar::Null)).remove('&').replace(QChar::Null, '&');
    return text;
}

MenuItem *addMenuItem(QMenu &menu, const QString &title, const Selector &action, const QString &keyEquivalent,
                      quint32 modifierMask)
{
    auto *const item = new MenuItem(title, &menu);
    item->setAction(action);
    if (!keyEquivalent.isEmpty())
        item->setKeyEquivalent(keyEquivalent, modifierMask);
    menu.addAction(item);
    setAutoenablesItems(menu);
    return item;
}

MenuItem *insertMenuItem(QMenu &menu, QAction *before, const QString &title, const Selector &action)
{
    auto *const item = new MenuItem(title, &menu);
    item->setAction(action);
    menu.insertAction(before, item);
    setAutoenablesItems(menu);
    return item;
}

QMenu *addSubmenu(QMenu &menu, const QString &title)
{
    auto *const submenu = new QMenu(&menu);
    auto *const item = new MenuItem(title, &menu);
    item->setMenu(submenu);
    menu.addAction(item);
    return submenu;
}

void validateMenu(QMenu &menu)
{
    const QList<QAction *> actions = menu.actions();
    for (QAction *const action : actions) {
        auto *const item = qobject_cast<MenuItem *>(action);
        if (item && !item->action().isNull())
            item->setEnabled(item->validate());
    }
}

void setAutoenablesItems(QMenu &menu)
{
    static QSet<const QMenu *> autoenabling; // asked for every item that is added
    if (autoenabling.contains(&menu))
        return;
    autoenabling.insert(&menu);
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu] { validateMenu(menu); });
    QObject::connect(&menu, &QObject::destroyed, [gone = &menu] { autoenabling.remove(gone); });
}

QString shownTitle(const QString &title)
{
    QString shown = shortened(title);
    for (QChar &character : shown) {
        if (character == '\t' || character == '\n' || character == '\r' || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = ' ';
    }
    return shown.replace('&', "&&");
}

bool performKeyEquivalent(const QKeyEvent &event)
{
    QMenuBar *const bar = mainMenuBar();
    const bool isReachable = bar && !isBlocked(*bar->window());
    return isReachable && !event.isAutoRepeat() && !belongsToText(event) &&
           performFirst(bar->actions(), nullptr, event);
}

bool performKeyEquivalent(QMenu &menu, const QKeyEvent &event)
{
    return performFirst(menu.actions(), &menu, event);
}

} // namespace platform
