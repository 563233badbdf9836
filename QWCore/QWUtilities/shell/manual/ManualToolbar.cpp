#include "ManualToolbar.h"

#include "QWUtilities/shell/QWManual.h"
#include "QWUtilities/shell/panels/ShellInterface.h"

#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/TintedIcon.h>
#include <QWPlatform/appkit/WebView.h>
#include <QWPlatform/appkit/toolbar/Toolbar.h>
#include <QWPlatform/appkit/toolbar/ToolbarItem.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>

#include <QBoxLayout>
#include <QShortcut>

#include <algorithm>
#include <iterator>

using platform::Toolbar;
using platform::ToolbarItem;

namespace qw
{

namespace
{
struct Item
{
    const char *identifier;
    const char *label;
    const char *image; ///< In the framework's resources.
    const char *action;
    bool (*isEnabled)(const platform::WebView &view, bool found);
};

bool canGoBack(const platform::WebView &view, bool)
{
    return view.canGoBack();
}

bool canGoForward(const platform::WebView &view, bool)
{
    return view.canGoForward();
}

bool hasManual(const platform::WebView &, bool found)
{
    return found;
}

constexpr auto backItem = "QWManualBackButtonIdentifier";
constexpr auto forwardItem = "QWManualForwardButtonIdentifier";
constexpr auto homeItem = "QWManualHomeButtonIdentifier";
constexpr auto printItem = "QWManualPrintButtonIdentifier";
constexpr auto printToPDFItem = "QWManualPrintToPDFButtonIdentifier";

constexpr Item items[] = {
    {backItem, "Back", "back", "back:", canGoBack},
    {forwardItem, "Forward", "forward", "forward:", canGoForward},
    {homeItem, "Home", "home", "home:", hasManual},
    {printItem, "Print", "print", "print:", hasManual},
    {printToPDFItem, "Save To PDF", "documentation", "printToPDF:", hasManual},
};

struct Key
{
    QKeySequence::StandardKey key;
    const char *item; ///< Works while this item would be enabled.
    void (QWManual::*action)(QObject *sender);
};

constexpr Key keys[] = {
    {QKeySequence::Back, backItem, &QWManual::back},
    {QKeySequence::Forward, forwardItem, &QWManual::forward},
    {QKeySequence::Print, printItem, &QWManual::print},
};

const Item *itemWithIdentifier(const QString &identifier)
{
    const auto *const found = std::find_if(std::begin(items), std::end(items), [&](const Item &item) {
        return identifier == QLatin1String(item.identifier);
    });
    return found == std::end(items) ? nullptr : found;
}
} // namespace

ManualToolbar::ManualToolbar(QWManual &manual)
    : m_manual(manual)
{
}

ManualToolbar::~ManualToolbar() = default;

void ManualToolbar::addToWindow(platform::Panel &window, const platform::WebView &view)
{
    m_view = &view;
    m_toolbar = new Toolbar("QWManualToolbar2", &window);
    m_toolbar->setAllowsUserCustomization(true);
    m_toolbar->setAutosavesConfiguration(true);
    m_toolbar->setDisplayMode(Toolbar::IconOnly);
    m_toolbar->setToolbarDelegate(this);
    if (auto *const column = qobject_cast<QBoxLayout *>(window.layout()))
        column->insertWidget(0, m_toolbar);
    QObject::connect(&view, &platform::WebView::historyChanged, m_toolbar, &Toolbar::validateVisibleItems);
    _makeShortcuts(window);
}

void ManualToolbar::_makeShortcuts(platform::Panel &window)
{
    for (const Key &key : keys) {
        auto *const shortcut = new QShortcut(key.key, &window);
        QObject::connect(shortcut, &QShortcut::activated, &m_manual, [this, &key] {
            if (_mayUse(key.item))
                (m_manual.*key.action)(nullptr);
        });
    }
    // Escape too: the browser engine hands on no key of a page that has the focus.
    for (const QKeySequence::StandardKey key : {QKeySequence::Close, QKeySequence::Cancel})
        QObject::connect(new QShortcut(key, &window), &QShortcut::activated, &window, &QWidget::close);
}

void ManualToolbar::setFound(bool found)
{
    m_found = found;
    m_toolbar->validateVisibleItems();
}

QStringList ManualToolbar::toolbarAllowedItemIdentifiers(Toolbar &)
{
    QStringList identifiers;
    for (const Item &item : items)
        identifiers.append(item.identifier);
    return identifiers << Toolbar::FlexibleSpaceItem << Toolbar::SeparatorItem << Toolbar::SpaceItem;
}

QStringList ManualToolbar::toolbarDefaultItemIdentifiers(Toolbar &)
{
    return {backItem, forwardItem, homeItem, Toolbar::FlexibleSpaceItem, printItem};
}

std::unique_ptr<ToolbarItem> ManualToolbar::toolbarItemForItemIdentifier(Toolbar &, const QString &identifier, bool)
{
    const Item *const row = itemWithIdentifier(identifier);
    if (!row)
        return nullptr;
    auto item = std::make_unique<ToolbarItem>(identifier);
    item->setLabel(platform::localized(row->label));
    item->setPaletteLabel(platform::localized(row->label));
    item->setImage(platform::tintedIcon(shellBundle().pathForResource(row->image, "svg")));
    item->setTarget(&m_manual);
    item->setAction(row->action);
    return item;
}

bool ManualToolbar::validateToolbarItem(ToolbarItem &item)
{
    return _mayUse(item.itemIdentifier());
}

bool ManualToolbar::_mayUse(const QString &identifier) const
{
    const Item *const row = itemWithIdentifier(identifier);
    return !row || (m_view && row->isEnabled(*m_view, m_found));
}

} // namespace qw
