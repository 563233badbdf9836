#include "MenuItem.h"

#include "QWPlatform/appkit/menus/KeyEquivalent.h"
#include "QWPlatform/appkit/menus/ShownTitle.h"
#include "ResponderChain.h"

#include <QMenu>
#include <QMetaMethod>
#include <QSet>

namespace platform
{

MenuItem::MenuItem(const QString &title, QObject *parent)
    : QAction(shownTitle(title), parent)
    , m_title(title)
{
}

MenuItem::~MenuItem() = default;

const QString &MenuItem::title() const
{
    return m_title;
}

void MenuItem::setTitle(const QString &title)
{
    m_title = title;
    _showText();
}

qlonglong MenuItem::tag() const
{
    return m_tag;
}

void MenuItem::setTag(qlonglong tag)
{
    m_tag = tag;
}

const QVariant &MenuItem::representedObject() const
{
    return m_representedObject;
}

void MenuItem::setRepresentedObject(const QVariant &object)
{
    m_representedObject = object;
}

const Selector &MenuItem::action() const
{
    return m_action;
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

QObject *MenuItem::target() const
{
    return m_target;
}

void MenuItem::setTarget(QObject *target)
{
    m_target = target;
    m_hasTarget = target;
}

const QString &MenuItem::keyEquivalent() const
{
    return m_keyEquivalent;
}

quint32 MenuItem::keyEquivalentModifierMask() const
{
    return m_keyEquivalentModifiers;
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

} // namespace platform
