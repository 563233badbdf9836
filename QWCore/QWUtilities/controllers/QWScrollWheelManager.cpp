#include "QWScrollWheelManager.h"

#include "QWUtilities/controllers/wheel/ScrollWheelPanel.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/ScrollEvent.h>
#include <QWPlatform/appkit/events/ModifierFlags.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QCoreApplication>
#include <QMenu>

#include <algorithm>
#include <vector>

using platform::localized;
using platform::MenuItem;
using platform::System;
using qw::ScrollWheelBinding;

namespace
{
constexpr auto actionsKey = "Scroll Wheel Actions";

/// The array in the host's resource @p name, of type "xml"; empty when it is missing or broken.
QVariantList arrayInResource(const QString &name)
{
    const QString path = System::current().mainBundle().pathForResource(name, "xml");
    return path.isEmpty() ? QVariantList() : platform::PropertyList::fromFile(path).value_or(QVariant()).toList();
}

bool isDictionary(const QVariant &value)
{
    return value.typeId() == QMetaType::QVariantMap;
}

/// The axis and amount of an event; not a number counts as movement.
struct Movement
{
    explicit Movement(const platform::ScrollEvent &event)
        : isVertical(event.deltaY != 0)
        , amount(isVertical ? event.deltaY : event.deltaX)
    {
    }

    bool isNone() const { return amount == 0; }

    bool isVertical;
    double amount;
};
} // namespace

class Q_DECL_HIDDEN QWScrollWheelManager::Private
{
public:
    Private();

    /// The second time, nothing.
    void loadActions(QWScrollWheelManager &owner);

    bool _scrollWheelEventTarget(const platform::ScrollEvent &event, QObject *target) const;
    void _openPanel();
    void _togglePanel();
    void addAction();
    void removeAction();
    QVariantList actions() const;
    void store() const;

    std::vector<ScrollWheelBinding> m_actions;
    QMenu m_axisMenu;
    QMenu m_actionMenu;
    bool m_isLoaded = false;                       ///< Before, there is nothing to save.
    std::unique_ptr<qw::ScrollWheelPanel> m_panel; ///< Null before, or without an interface file.

private:
    void _loadActionMenu();
    void _loadBindings();
};

QWScrollWheelManager &QWScrollWheelManager::defaultManager()
{
    return System::current().shared<QWScrollWheelManager>([] { return new QWScrollWheelManager; });
}

void QWScrollWheelManager::loadActions()
{
    QWScrollWheelManager &manager = defaultManager();
    manager.d->loadActions(manager);
}

bool QWScrollWheelManager::scrollWheelEventTarget(const platform::ScrollEvent &event, QObject *target)
{
    return defaultManager().d->_scrollWheelEventTarget(event, target);
}

void QWScrollWheelManager::openPanel()
{
    defaultManager().d->_openPanel();
}

void QWScrollWheelManager::togglePanel()
{
    defaultManager().d->_togglePanel();
}

QWScrollWheelManager::QWScrollWheelManager()
    : d(std::make_unique<Private>())
{
    if (auto *const application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, &QWScrollWheelManager::applicationWillTerminate);
}

QWScrollWheelManager::~QWScrollWheelManager() = default;

void QWScrollWheelManager::addAction(QObject *)
{
    d->addAction();
}

void QWScrollWheelManager::removeAction(QObject *)
{
    d->removeAction();
}

QVariant QWScrollWheelManager::tableViewObjectValueForTableColumnRow(const QString &identifier, int row) const
{
    return d->m_panel ? d->m_panel->model().objectValue(identifier, row) : QVariant();
}

void QWScrollWheelManager::tableViewSetObjectValueForTableColumnRow(const QVariant &value, const QString &identifier,
                                                                    int row)
{
    if (d->m_panel)
        d->m_panel->model().setObjectValue(value, identifier, row);
}

QVariantList QWScrollWheelManager::actions() const
{
    return d->actions();
}

void QWScrollWheelManager::applicationWillTerminate()
{
    d->store();
}

platform::Panel *QWScrollWheelManager::panel() const
{
    return d->m_panel ? &d->m_panel->window() : nullptr;
}

QWScrollWheelManager::Private::Private()
{
    qw::ScrollWheelPanel::registerDefaults();
    platform::addMenuItem(m_axisMenu, localized("Horizontal"));
    platform::addMenuItem(m_axisMenu, localized("Vertical"));
}

void QWScrollWheelManager::Private::loadActions(QWScrollWheelManager &owner)
{
    if (m_isLoaded)
        return;
    m_isLoaded = true;
    _loadActionMenu();
    _loadBindings();
    m_panel = qw::ScrollWheelPanel::load(owner, m_actions, m_axisMenu, m_actionMenu);
    if (m_panel)
        m_panel->openAgain();
}

bool QWScrollWheelManager::Private::_scrollWheelEventTarget(const platform::ScrollEvent &event, QObject *target) const
{
    const Movement movement(event);
    if (movement.isNone()) // the end of a gesture, for one
        return false;
    const quint32 mask = event.modifierFlags & platform::FiveModifierFlags;
    const auto chosen = std::find_if(m_actions.begin(), m_actions.end(), [&](const ScrollWheelBinding &binding) {
        return binding.matches(movement.isVertical, mask);
    });
    if (chosen == m_actions.end())
        return false;
    const platform::Selector action = chosen->action(); // the list may change meanwhile
    return platform::perform(target, action, chosen->isReversed() ? -movement.amount : movement.amount);
}

void QWScrollWheelManager::Private::_openPanel()
{
    if (m_panel)
        m_panel->open();
}

void QWScrollWheelManager::Private::_togglePanel()
{
    if (m_panel)
        m_panel->toggle();
}

void QWScrollWheelManager::Private::addAction()
{
    QVariantMap record{{"vertical", true}, {"modifiers", 0}, {"reverse", false}};
    if (const auto *const first = qobject_cast<MenuItem *>(m_actionMenu.actions().value(0)))
        record.insert("action", first->representedObject());
    if (!m_panel) {
        m_actions.emplace_back(record);
        return;
    }
    m_panel->model().append(ScrollWheelBinding(record));
    m_panel->scrollToBottom();
}

void QWScrollWheelManager::Private::removeAction()
{
    const int row = m_panel ? m_panel->selectedRow() : -1;
    if (row >= 0)
        m_panel->model().removeAt(row);
}

QVariantList QWScrollWheelManager::Private::actions() const
{
    QVariantList records;
    for (const ScrollWheelBinding &binding : m_actions)
        records.append(binding.record());
    return records;
}

void QWScrollWheelManager::Private::store() const
{
    if (!m_isLoaded)
        return;
    if (m_panel)
        m_panel->store();
    System::current().userDefaults().setObject(actionsKey, actions());
}

void QWScrollWheelManager::Private::_loadActionMenu()
{
    const QVariantList entries = arrayInResource("scrollWheelActions");
    for (const QVariant &entry : entries) {
        if (!isDictionary(entry))
            continue;
        MenuItem *const item = platform::addMenuItem(m_actionMenu, entry.toMap().value("title").toString());
        item->setRepresentedObject(entry.toMap().value("action").toString());
    }
}

void QWScrollWheelManager::Private::_loadBindings()
{
    const QVariant stored = System::current().userDefaults().object(actionsKey);
    const bool isArray = stored.typeId() == QMetaType::QVariantList;
    const QVariantList records = isArray ? stored.toList() : arrayInResource("scrollWheelActionDefaults");
    for (const QVariant &record : records) {
        if (isDictionary(record))
            m_actions.emplace_back(record.toMap());
    }
}
