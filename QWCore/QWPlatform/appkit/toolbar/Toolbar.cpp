#include "Toolbar.h"

#include "QWPlatform/appkit/ResponderChain.h"
#include "ToolbarConfiguration.h"
#include "ToolbarCustomizationPanel.h"
#include "ToolbarDelegate.h"
#include "ToolbarItem.h"
#include "ToolbarMenu.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QEvent>
#include <QMenu>
#include <QToolButton>

namespace platform
{

const QString Toolbar::SeparatorItem = QStringLiteral("NSToolbarSeparatorItem");
const QString Toolbar::SpaceItem = QStringLiteral("NSToolbarSpaceItem");
const QString Toolbar::FlexibleSpaceItem = QStringLiteral("NSToolbarFlexibleSpaceItem");

namespace
{
constexpr int spaceWidth = 24;
constexpr int imageSize = 24;

QWidget *makeSpace(bool flexible, QWidget *parent)
{
    auto *const space = new QWidget(parent);
    space->setAttribute(Qt::WA_TransparentForMouseEvents);
    space->setSizePolicy(flexible ? QSizePolicy::Expanding : QSizePolicy::Fixed, QSizePolicy::Preferred);
    space->setMinimumWidth(flexible ? 0 : spaceWidth);
    return space;
}

/// The last widget of the window outside @p toolbar that takes the focus, or null: Qt puts no widget behind one that
/// takes none.
QWidget *lastInTabOrder(const QWidget &toolbar)
{
    QWidget *const window = toolbar.window();
    QWidget *last = window->previousInFocusChain();
    while (last != window && (last->focusPolicy() == Qt::NoFocus || toolbar.isAncestorOf(last)))
        last = last->previousInFocusChain();
    return last == window ? nullptr : last;
}

Qt::ToolButtonStyle buttonStyleFor(Toolbar::DisplayMode mode)
{
    switch (mode) {
    case Toolbar::IconOnly:
        return Qt::ToolButtonIconOnly;
    case Toolbar::LabelOnly:
        return Qt::ToolButtonTextOnly;
    case Toolbar::Default:
    case Toolbar::IconAndLabel:
        break;
    }
    return Qt::ToolButtonTextUnderIcon;
}
} // namespace

Toolbar::Toolbar(const QString &identifier, QWidget *parent)
    : QToolBar(parent)
    , m_identifier(identifier)
    , m_selectable(new QActionGroup(this))
{
    setObjectName(identifier);
    setMovable(false);
    setFloatable(false);
    setIconSize(QSize(imageSize, imageSize));
    _applyDisplayMode();
    connect(this, &QToolBar::actionTriggered, this, &Toolbar::_itemTriggered);
}

Toolbar::~Toolbar() = default;

bool Toolbar::isStandardItem(const QString &identifier)
{
    return identifier == SeparatorItem || identifier == SpaceItem || identifier == FlexibleSpaceItem;
}

void Toolbar::setToolbarDelegate(ToolbarDelegate *delegate)
{
    m_delegate = delegate;
    if (!m_delegate)
        return;
    if (m_autosavesConfiguration)
        _load();
    else
        _setItemIdentifiers(m_delegate->toolbarDefaultItemIdentifiers(*this));
}

void Toolbar::_load()
{
    const ToolbarConfiguration stored = ToolbarConfiguration::load(m_identifier);
    m_userDisplayMode = static_cast<DisplayMode>(stored.displayMode);
    _setItemIdentifiers(stored.itemIdentifiers.value_or(m_delegate->toolbarDefaultItemIdentifiers(*this)));
    _applyDisplayMode();
    setVisible(stored.isShown);
}

void Toolbar::_save() const
{
    if (!m_autosavesConfiguration || !m_delegate)
        return;
    ToolbarConfiguration configuration;
    configuration.itemIdentifiers = itemIdentifiers();
    configuration.defaultItemIdentifiers = m_delegate->toolbarDefaultItemIdentifiers(const_cast<Toolbar &>(*this));
    configuration.displayMode = m_userDisplayMode;
    configuration.isShown = !isHidden();
    configuration.save(m_identifier);
}

Toolbar::DisplayMode Toolbar::displayMode() const
{
    return m_userDisplayMode == Default ? m_displayMode : m_userDisplayMode;
}

void Toolbar::setDisplayMode(DisplayMode mode)
{
    m_displayMode = mode;
    _applyDisplayMode();
}

void Toolbar::chooseDisplayMode(DisplayMode mode)
{
    m_userDisplayMode = mode;
    _applyDisplayMode();
    _save();
}

void Toolbar::_applyDisplayMode()
{
    setToolButtonStyle(buttonStyleFor(displayMode()));
}

QStringList Toolbar::itemIdentifiers() const
{
    QStringList identifiers;
    for (const Entry &entry : m_entries)
        identifiers.append(entry.identifier);
    return identifiers;
}

QList<ToolbarItem *> Toolbar::items() const
{
    QList<ToolbarItem *> items;
    for (const Entry &entry : m_entries) {
        if (auto *const item = qobject_cast<ToolbarItem *>(entry.action))
            items.append(item);
    }
    return items;
}

ToolbarItem *Toolbar::itemWithIdentifier(const QString &identifier) const
{
    const QList<ToolbarItem *> all = items();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](ToolbarItem *i) { return i->itemIdentifier() == identifier; });
    return found == all.end() ? nullptr : *found;
}

void Toolbar::setSelectedItemIdentifier(const QString &identifier)
{
    m_selected = identifier;
    const QList<ToolbarItem *> all = items();
    for (ToolbarItem *const item : all)
        item->setChecked(item->isCheckable() && item->itemIdentifier() == identifier);
}

void Toolbar::validateVisibleItems()
{
    if (!m_delegate)
        return;
    const QList<ToolbarItem *> all = items();
    for (ToolbarItem *const item : all)
        item->setEnabled(m_delegate->validateToolbarItem(*item));
}

void Toolbar::_setItemIdentifiers(const QStringList &identifiers)
{
    clear();
    for (const Entry &entry : m_entries)
        entry.action->deleteLater(); // one of them may be what is being chosen
    m_entries.clear();
    for (const QString &identifier : identifiers) {
        if (QAction *const action = canInsert(identifier) ? _makeAction(identifier) : nullptr)
            m_entries.push_back({identifier, action});
    }
    _describeButtons();
    _comeLastInTabOrder();
    setSelectedItemIdentifier(m_selected);
    validateVisibleItems();
    Q_EMIT itemsChanged();
}

QAction *Toolbar::_makeAction(const QString &identifier)
{
    if (identifier == SeparatorItem)
        return addSeparator();
    if (identifier == SpaceItem || identifier == FlexibleSpaceItem)
        return addWidget(makeSpace(identifier == FlexibleSpaceItem, this));
    return _makeItemAction(identifier);
}

QAction *Toolbar::_makeItemAction(const QString &identifier)
{
    std::unique_ptr<ToolbarItem> item = m_delegate->toolbarItemForItemIdentifier(*this, identifier, true);
    if (!item)
        return nullptr;
    item->setParent(this);
    if (m_delegate->toolbarSelectableItemIdentifiers(*this).contains(identifier)) {
        item->setCheckable(true);
        m_selectable->addAction(item.get());
    }
    addAction(item.get());
    return item.release();
}

/// Items whose label does not show are still told by name.
void Toolbar::_describeButtons()
{
    const QList<ToolbarItem *> all = items();
    for (ToolbarItem *const item : all) {
        QWidget *const button = widgetForAction(item);
        button->setAccessibleName(item->label());
        button->setFocusPolicy(Qt::TabFocus);
        if (item->toolTip().isEmpty())
            item->setToolTip(item->label());
    }
}

/// So that the keyboard begins in the window's content.
void Toolbar::_comeLastInTabOrder()
{
    const QList<ToolbarItem *> all = items();
    QWidget *last = lastInTabOrder(*this);
    // To Qt the order is a ring without a beginning, and it moves nothing that follows the last widget in it already.
    const Qt::FocusPolicy policy = window()->focusPolicy();
    window()->setFocusPolicy(Qt::TabFocus);
    for (ToolbarItem *const item : all) {
        QWidget *const button = widgetForAction(item);
        setTabOrder(last, button);
        last = button;
    }
    window()->setFocusPolicy(policy);
}

void Toolbar::_itemTriggered(QAction *action)
{
    auto *const item = qobject_cast<ToolbarItem *>(action);
    if (!item)
        return;
    if (item->isCheckable())
        setSelectedItemIdentifier(item->itemIdentifier());
    const QPointer<Toolbar> self(this); // the action may close the window
    sendAction(item->action(), item->target(), item);
    if (self)
        validateVisibleItems();
}

bool Toolbar::canInsert(const QString &identifier) const
{
    return isStandardItem(identifier) || !itemIdentifiers().contains(identifier);
}

QStringList Toolbar::allowedItemIdentifiers()
{
    return m_delegate ? m_delegate->toolbarAllowedItemIdentifiers(*this) : QStringList();
}

std::unique_ptr<ToolbarItem> Toolbar::paletteItem(const QString &identifier)
{
    if (isStandardItem(identifier) || !m_delegate)
        return nullptr;
    return m_delegate->toolbarItemForItemIdentifier(*this, identifier, false);
}

void Toolbar::insertItemWithItemIdentifierAtIndex(const QString &identifier, int index)
{
    QStringList identifiers = itemIdentifiers();
    if (!m_delegate || !canInsert(identifier) || index < 0 || index > identifiers.size())
        return;
    identifiers.insert(index, identifier);
    _setItemIdentifiers(identifiers);
    _save();
}

void Toolbar::removeItemAtIndex(int index)
{
    QStringList identifiers = itemIdentifiers();
    if (!m_delegate || index < 0 || index >= identifiers.size())
        return;
    identifiers.removeAt(index);
    _setItemIdentifiers(identifiers);
    _save();
}

void Toolbar::moveItem(int from, int to)
{
    QStringList identifiers = itemIdentifiers();
    const auto isInside = [&](int index) { return index >= 0 && index < identifiers.size(); };
    if (!m_delegate || !isInside(from) || !isInside(to) || from == to)
        return;
    identifiers.move(from, to);
    _setItemIdentifiers(identifiers);
    _save();
}

void Toolbar::restoreDefaults()
{
    if (!m_delegate)
        return;
    m_userDisplayMode = Default;
    _applyDisplayMode();
    _setItemIdentifiers(m_delegate->toolbarDefaultItemIdentifiers(*this));
    _save();
}

void Toolbar::runCustomizationPalette(QObject *)
{
    if (!m_panel)
        m_panel = new ToolbarCustomizationPanel(*this);
    m_panel->open();
    m_panel->raise();
}

void Toolbar::changeEvent(QEvent *event)
{
    QToolBar::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange) {
        const QList<QToolButton *> buttons = findChildren<QToolButton *>();
        for (QToolButton *const button : buttons)
            button->update(); // tinted images follow the text colour
    }
}

void Toolbar::contextMenuEvent(QContextMenuEvent *event)
{
    if (!m_allowsUserCustomization)
        return QToolBar::contextMenuEvent(event);
    const std::unique_ptr<QMenu> menu = makeToolbarMenu(*this);
    menu->exec(event->globalPos());
    event->accept();
}

void Toolbar::showEvent(QShowEvent *event)
{
    QToolBar::showEvent(event);
    _comeLastInTabOrder();
    validateVisibleItems();
}

} // namespace platform
