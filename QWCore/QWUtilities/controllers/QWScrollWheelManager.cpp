#include "QWScrollWheelManager.h"

#include "QWUtilities/controllers/wheel/ScrollWheelBinding.h"
#include "QWUtilities/controllers/wheel/ScrollWheelModel.h"
#include "QWUtilities/controllers/wheel/ScrollWheelTable.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/appkit/ScrollEvent.h>
#include <QWPlatform/appkit/TintedIcon.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/appkit/events/ModifierFlags.h>
#include <QWPlatform/appkit/windows/WindowOpenState.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/TextForms.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QLabel>
#include <QMenu>

#include <algorithm>

using platform::localized;
using platform::MenuItem;
using platform::System;
using qw::ScrollWheelBinding;

namespace
{
constexpr auto actionsKey = "Scroll Wheel Actions";
constexpr auto frameKey = "Scroll Wheel Manager Frame";
constexpr auto openKey = "Scroll Wheel Manager Open";
constexpr QRect usualFrame(217, 544, 411, 187);

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

QWScrollWheelManager &QWScrollWheelManager::defaultManager()
{
    return System::current().shared<QWScrollWheelManager>([] { return new QWScrollWheelManager; });
}

void QWScrollWheelManager::loadActions()
{
    QWScrollWheelManager &manager = defaultManager();
    if (manager.m_isLoaded)
        return;
    manager.m_isLoaded = true;
    manager._loadActionMenu();
    manager._loadBindings();
    if (manager._loadNib())
        manager.awakeFromNib();
}

bool QWScrollWheelManager::scrollWheelEventTarget(const platform::ScrollEvent &event, QObject *target)
{
    return defaultManager()._scrollWheelEventTarget(event, target);
}

void QWScrollWheelManager::openPanel()
{
    defaultManager()._openPanel();
}

void QWScrollWheelManager::togglePanel()
{
    defaultManager()._togglePanel();
}

QWScrollWheelManager::QWScrollWheelManager()
    : m_axisMenu(std::make_unique<QMenu>())
    , m_actionMenu(std::make_unique<QMenu>())
{
    System::current().userDefaults().registerDefaults(
        {{frameKey, platform::TextForms::stringFromRect(usualFrame)}, {openKey, false}});
    platform::addMenuItem(*m_axisMenu, localized("Horizontal"));
    platform::addMenuItem(*m_axisMenu, localized("Vertical"));
    if (auto *const application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, &QWScrollWheelManager::applicationWillTerminate);
}

QWScrollWheelManager::~QWScrollWheelManager() = default;

bool QWScrollWheelManager::_scrollWheelEventTarget(const platform::ScrollEvent &event, QObject *target) const
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

void QWScrollWheelManager::_loadActionMenu()
{
    const QVariantList entries = arrayInResource("scrollWheelActions");
    for (const QVariant &entry : entries) {
        if (!isDictionary(entry))
            continue;
        MenuItem *const item = platform::addMenuItem(*m_actionMenu, entry.toMap().value("title").toString());
        item->setRepresentedObject(entry.toMap().value("action").toString());
    }
}

void QWScrollWheelManager::_loadBindings()
{
    const QVariant stored = System::current().userDefaults().object(actionsKey);
    const bool isArray = stored.typeId() == QMetaType::QVariantList;
    const QVariantList records = isArray ? stored.toList() : arrayInResource("scrollWheelActionDefaults");
    for (const QVariant &record : records) {
        if (isDictionary(record))
            m_actions.emplace_back(record.toMap());
    }
}

bool QWScrollWheelManager::_loadNib()
{
    platform::InterfaceFile::registerClass<qw::ScrollWheelTable>("ScrollWheelTable");
    platform::InterfaceFile nib("QWScrollWheelManager", platform::Bundle::forClassOf(*this), *this);
    platform::Panel *panel = nullptr;
    nib.connectOutlet("panel", panel);
    nib.connectOutlet("table", m_table);
    nib.connectOutlet("removeActionButton", m_removeActionButton);
    if (!nib.isComplete())
        return false; // the bindings work all the same
    m_nib = nib.takeWidget();
    m_panel = panel;
    return true;
}

void QWScrollWheelManager::awakeFromNib()
{
    m_openState = std::make_unique<platform::WindowOpenState>(*m_panel);
    _makeTable();
    _restoreFrame();
    if (System::current().userDefaults().boolean(openKey))
        _openPanel();
}

void QWScrollWheelManager::_makeTable()
{
    const platform::Bundle bundle = platform::Bundle::forClassOf(*this);
    const auto image = [&](const QString &name) { return platform::tintedIcon(bundle.pathForResource(name, "svg")); };
    m_model = std::make_unique<qw::ScrollWheelModel>(m_actions, *m_axisMenu, *m_actionMenu);
    m_model->setReverseImage(image("reverse"));
    m_table->setBindings(*m_model);
    m_removeActionButton->setIcon(image("remove"));
    if (auto *const button = m_panel->findChild<QAbstractButton *>("addActionButton"))
        button->setIcon(image("add"));
    if (auto *const note = m_panel->findChild<QLabel *>("noteText"))
        note->setForegroundRole(QPalette::PlaceholderText);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QWScrollWheelManager::tableViewSelectionDidChange);
    tableViewSelectionDidChange();
}

/// The width is the table's own; of the stored frame it is ignored.
void QWScrollWheelManager::_restoreFrame()
{
    const QString text = System::current().userDefaults().string(frameKey);
    QRect frame = platform::TextForms::wholeRectFromString(text);
    if (!frame.isValid())
        frame = usualFrame;
    frame.setWidth(usualFrame.width());
    frame.setHeight(std::max(frame.height(), m_panel->minimumHeight()));
    m_panel->setFixedWidth(usualFrame.width());
    m_panel->setGeometry(platform::constrainedToScreen(frame));
}

void QWScrollWheelManager::_openPanel()
{
    if (!m_panel)
        return;
    if (!m_panel->isVisible()) // its screen may have gone since
        platform::constrainToScreen(*m_panel);
    platform::makeKeyAndOrderFront(*m_panel);
}

void QWScrollWheelManager::_togglePanel()
{
    if (m_panel && m_panel->isVisible() && platform::keyWindow() == m_panel)
        m_panel->close();
    else
        _openPanel();
}

void QWScrollWheelManager::addAction(QObject *)
{
    QVariantMap record{{"vertical", true}, {"modifiers", 0}, {"reverse", false}};
    if (const auto *const first = qobject_cast<MenuItem *>(m_actionMenu->actions().value(0)))
        record.insert("action", first->representedObject());
    if (m_model)
        m_model->append(ScrollWheelBinding(record));
    else
        m_actions.emplace_back(record);
    if (m_table)
        m_table->scrollToBottom();
}

void QWScrollWheelManager::removeAction(QObject *)
{
    const int row = m_table ? m_table->selectedRow() : -1;
    if (row >= 0)
        m_model->removeAt(row);
}

QVariant QWScrollWheelManager::tableViewObjectValueForTableColumnRow(const QString &identifier, int row) const
{
    return m_model ? m_model->objectValue(identifier, row) : QVariant();
}

void QWScrollWheelManager::tableViewSetObjectValueForTableColumnRow(const QVariant &value, const QString &identifier,
                                                                    int row)
{
    if (m_model)
        m_model->setObjectValue(value, identifier, row);
}

void QWScrollWheelManager::tableViewSelectionDidChange()
{
    m_removeActionButton->setEnabled(m_table->numberOfSelectedRows() > 0);
}

QVariantList QWScrollWheelManager::actions() const
{
    QVariantList records;
    for (const ScrollWheelBinding &binding : m_actions)
        records.append(binding.record());
    return records;
}

void QWScrollWheelManager::applicationWillTerminate()
{
    if (!m_isLoaded)
        return;
    platform::UserDefaults &defaults = System::current().userDefaults();
    if (m_panel) {
        defaults.setObject(openKey, m_openState->isOpen());
        defaults.setObject(frameKey, platform::stringFromFrame(*m_panel));
    }
    defaults.setObject(actionsKey, actions());
}
