#include "QWPreferencesPanel.h"

#include "QWUtilities/shell/preferences/PaneStage.h"
#include "QWUtilities/shell/preferences/PaneToolbar.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/appkit/toolbar/Toolbar.h>
#include <QWPlatform/appkit/toolbar/ToolbarItem.h>
#include <QWPlatform/foundation/Bundle.h>

#include <QPointer>
#include <QShortcut>

#include <algorithm>
#include <optional>

using platform::System;
using platform::ToolbarItem;

class Q_DECL_HIDDEN QWPreferencesPanel::Private
{
public:
    explicit Private(QWPreferencesPanel &owner)
        : m_owner(owner)
        , m_toolbarItems(owner)
    {
    }

    void _openPane(const QString &identifier);
    void _update();
    void changePane(QWPreferencesPane &pane);

    QWPreferencesPanel &m_owner;
    qw::PaneToolbar m_toolbarItems;
    std::unique_ptr<QWidget> m_nib;
    platform::Panel *m_panel = nullptr;
    QPointer<QWPreferencesPane> m_currentPane;
    QStringList m_toolbarItemIdentifiers;
    std::optional<qw::PaneStage> m_stage; ///< As soon as there is a panel.

private:
    bool _loadNib();
    void _makeContent();
    void _selectPane(const QString &identifier);
    void windowWillClose();
};

QWPreferencesPanel &QWPreferencesPanel::_install(QWPreferencesPanel *(*make)())
{
    return System::current().shared<QWPreferencesPanel>(make);
}

QWPreferencesPanel &QWPreferencesPanel::sharedInstance()
{
    return install<QWPreferencesPanel>();
}

void QWPreferencesPanel::open()
{
    sharedInstance().d->_openPane({});
}

void QWPreferencesPanel::openPane(const QString &identifier)
{
    sharedInstance().d->_openPane(identifier);
}

void QWPreferencesPanel::update()
{
    sharedInstance().d->_update();
}

QWPreferencesPanel::QWPreferencesPanel()
    : d(std::make_unique<Private>(*this))
{
}

QWPreferencesPanel::~QWPreferencesPanel() = default;

QString QWPreferencesPanel::panelNibName() const
{
    return {};
}

QList<QWPreferencesPane *> QWPreferencesPanel::panes() const
{
    return {};
}

void QWPreferencesPanel::nibDidLoad(platform::InterfaceFile &) {}

platform::Panel *QWPreferencesPanel::panel() const
{
    return d->m_panel;
}

QWPreferencesPane *QWPreferencesPanel::currentPane() const
{
    return d->m_currentPane;
}

const QStringList &QWPreferencesPanel::toolbarItemIdentifiers() const
{
    return d->m_toolbarItemIdentifiers;
}

void QWPreferencesPanel::Private::_openPane(const QString &identifier)
{
    const bool isFirst = !m_panel;
    if (isFirst && !_loadNib())
        return;
    const bool isKnown = !identifier.isNull() && m_owner.paneForIdentifier(identifier);
    if (isKnown || isFirst) {
        _selectPane(isKnown ? identifier : m_toolbarItemIdentifiers.value(0));
        platform::centerWindow(*m_panel, m_stage->panelSize());
    }
    platform::constrainToScreen(*m_panel);
    platform::makeKeyAndOrderFront(*m_panel);
}

void QWPreferencesPanel::Private::_update()
{
    const QList<QWPreferencesPane *> all = m_panel ? m_owner.panes() : QList<QWPreferencesPane *>();
    for (QWPreferencesPane *const pane : all)
        pane->updateControls();
}

bool QWPreferencesPanel::Private::_loadNib()
{
    if (m_owner.panelNibName().isEmpty())
        return false;
    platform::InterfaceFile nib(m_owner.panelNibName(), platform::Bundle::forClassOf(m_owner), m_owner);
    platform::Panel *panel = nullptr;
    nib.connectOutlet("panel", panel);
    m_owner.nibDidLoad(nib);
    m_nib = nib.takeWidget(); // kept even so, for outlets that were found
    if (!nib.isComplete())
        return false;
    m_panel = panel;
    QObject::connect(m_panel, &platform::Panel::willClose, &m_owner, [this] { windowWillClose(); });
    QObject::connect(new QShortcut(QKeySequence::Close, m_panel), &QShortcut::activated, m_panel, &QWidget::close);
    _makeContent();
    _update();
    return true;
}

void QWPreferencesPanel::Private::_makeContent()
{
    const QList<QWPreferencesPane *> all = m_owner.panes();
    for (const QWPreferencesPane *const pane : all)
        m_toolbarItemIdentifiers.append(pane->identifier());
    m_stage.emplace(*m_panel, m_toolbarItems);
}

QWPreferencesPane *QWPreferencesPanel::paneForIdentifier(const QString &identifier) const
{
    const QList<QWPreferencesPane *> all = panes();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const QWPreferencesPane *pane) { return pane->identifier() == identifier; });
    return found == all.end() ? nullptr : *found;
}

/// As if the user had chosen the item.
void QWPreferencesPanel::Private::_selectPane(const QString &identifier)
{
    platform::Toolbar &toolbar = m_stage->toolbar();
    const std::unique_ptr<ToolbarItem> item = m_toolbarItems.toolbarItemForItemIdentifier(toolbar, identifier, false);
    if (!item)
        return;
    toolbar.setSelectedItemIdentifier(identifier);
    m_owner.changePane(item.get());
}

void QWPreferencesPanel::changePane(QObject *toolbarItem)
{
    const auto *const item = qobject_cast<ToolbarItem *>(toolbarItem);
    QWPreferencesPane *const pane = item ? paneForIdentifier(item->itemIdentifier()) : nullptr;
    if (pane && d->m_panel && pane != d->m_currentPane)
        d->changePane(*pane);
}

/// The old pane goes back to where it came from.
void QWPreferencesPanel::Private::changePane(QWPreferencesPane &pane)
{
    const QPointer<QWPreferencesPane> old = m_currentPane;
    if (old)
        old->paneWillResignFront();
    pane.paneWillBecomeFront();
    m_stage->show(pane, *m_nib);
    if (old)
        old->paneDidResignFront();
    pane.paneDidBecomeFront();
    m_currentPane = &pane;
}

/// Ends editing: what was typed last into a field is committed.
void QWPreferencesPanel::Private::windowWillClose()
{
    m_panel->setFocus(Qt::OtherFocusReason);
}
