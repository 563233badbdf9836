#include "QWShortcut.h"

#include "QWShortcutGroup.h"
#include "QWUtilities/shortcuts/menus/MainMenuItems.h"
#include "QWUtilities/shortcuts/menus/QWShortcutKeyMenuItem.h"
#include "QWUtilities/shortcuts/model/ShortcutIndex.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/appkit/menus/MenuKeys.h>
#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <QKeyEvent>
#include <QMenu>

#include <utility>

using platform::MenuItem;

namespace
{
constexpr char16_t f35 = 0xf726; ///< On no keyboard.
} // namespace

QWShortcut::QWShortcut()
{
    m_key.m_owner = this;
}

QWShortcut::~QWShortcut() = default;

std::shared_ptr<QWShortcut> QWShortcut::shortcutWithState(const QVariantMap &state)
{
    auto shortcut = std::make_shared<QWShortcut>();
    shortcut->setState(state);
    return shortcut;
}

QVariantMap QWShortcut::state() const
{
    QVariantMap state = m_key.state();
    state.insert("name", m_name);
    state.insert("action", m_action.name());
    state.insert("tag", qlonglong(m_tag));
    state.insert("prohibitRepeats", m_prohibitRepeats);
    state.insert("enabled", m_enabled);
    if (m_representedObject.isValid())
        state.insert("representedObject", m_representedObject);
    return state;
}

void QWShortcut::setState(const QVariantMap &state)
{
    for (auto entry = state.cbegin(); entry != state.cend(); ++entry)
        _setValueForKey(entry.key(), entry.value());
    m_key.setState(state);
}

void QWShortcut::setAction(const platform::Selector &action)
{
    if (std::exchange(m_action, action) != action)
        _identityDidChange();
}

void QWShortcut::setTag(qint32 tag)
{
    if (std::exchange(m_tag, tag) != tag)
        _identityDidChange();
}

void QWShortcut::setKey(const QWShortcutKey &key)
{
    m_key = key;
    refreshMenuItem();
}

void QWShortcut::clearKey()
{
    m_key.clear();
    refreshMenuItem();
}

void QWShortcut::setEnabled(bool enabled)
{
    m_enabled = enabled;
    refreshMenuItem();
}

void QWShortcut::refreshMenuItem()
{
    if (!_isInMenuGroup())
        return;
    const QList<MenuItem *> items = qw::MainMenuItems::itemsAtPath(m_name.split('>'));
    for (MenuItem *const item : items)
        _refresh(*item);
}

bool QWShortcut::perform(const platform::KeyEvent &event)
{
    if (!m_enabled || (m_prohibitRepeats && event.isRepeat))
        return false;
    if (_isInMenuGroup()) {
        if (!_isValid())
            return false;
        _blinkMenu();
    }
    platform::sendAction(m_action, nullptr, this);
    return true;
}

void QWShortcut::fakeAction(QObject *) {}

void QWShortcut::_refresh(MenuItem &item) const
{
    if (m_enabled)
        qw::QWShortcutKeyMenuItem::setShortcutKey(item, m_key);
    else
        qw::QWShortcutKeyMenuItem::clearKeyEquivalent(item);
    item.setAction(m_action);
    item.setTag(m_tag);
    if (m_representedObject.isValid())
        item.setRepresentedObject(m_representedObject);
}

void QWShortcut::_keyDidChange(const QWShortcutKey &before)
{
    if (m_index)
        m_index->keyDidChange(*this, before);
}

void QWShortcut::_identityDidChange()
{
    if (m_index)
        m_index->invalidate();
}

void QWShortcut::_setValueForKey(const QString &key, const QVariant &value)
{
    if (key == u"name")
        m_name = value.toString();
    else if (key == u"action")
        setAction(value.toString());
    else if (key == u"tag")
        setTag(static_cast<qint32>(platform::integerOf(value)));
    else if (key == u"prohibitRepeats")
        m_prohibitRepeats = platform::truthOf(value);
    else if (key == u"enabled")
        m_enabled = platform::truthOf(value);
    else if (key == u"representedObject")
        m_representedObject = value;
}

bool QWShortcut::_isInMenuGroup() const
{
    return m_group && m_group->isMenu();
}

/// Whoever would receive the action decides, by a temporary item that carries it; without a say of its own it agrees.
bool QWShortcut::_isValid()
{
    QObject *const target = platform::targetForAction(m_action);
    if (!target)
        return false;
    MenuItem item;
    item.setAction(m_action);
    item.setTag(m_tag);
    item.setRepresentedObject(m_representedObject);
    return platform::validateMenuItem(target, &item);
}

/// The menu performs a key that only a temporary item has, which lights its title up.
void QWShortcut::_blinkMenu()
{
    QMenu *const menu = m_group ? qw::MainMenuItems::menuWithTitle(m_group->name()) : nullptr;
    if (!menu)
        return;
    MenuItem blink("blink");
    blink.setKeyEquivalent(QChar(f35), MenuItem::Command);
    blink.setTarget(this);
    blink.setAction("fakeAction:");
    menu->addAction(&blink);
    platform::performKeyEquivalent(*menu, QKeyEvent(QEvent::KeyPress, Qt::Key_F35, Qt::ControlModifier, QChar(f35)));
    menu->removeAction(&blink);
}
