#include "QWPreferencesPanel.h"

#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/appkit/responders/WidgetTree.h>
#include <QWPlatform/appkit/toolbar/Toolbar.h>
#include <QWPlatform/appkit/toolbar/ToolbarItem.h>
#include <QWPlatform/foundation/Bundle.h>

#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>
#include <QVariantAnimation>

#include <algorithm>

using platform::System;
using platform::Toolbar;
using platform::ToolbarItem;

namespace
{
constexpr int longestAnimation = 250; ///< In milliseconds.

/// The desktop's own; 0 where it asks for no motion.
int resizeMilliseconds(const QWidget &window)
{
    return std::min(window.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &window),
                    longestAnimation);
}
} // namespace

QWPreferencesPanel &QWPreferencesPanel::sharedInstance()
{
    return install<QWPreferencesPanel>();
}

void QWPreferencesPanel::open()
{
    sharedInstance()._openPane({});
}

void QWPreferencesPanel::openPane(const QString &identifier)
{
    sharedInstance()._openPane(identifier);
}

void QWPreferencesPanel::update()
{
    sharedInstance()._update();
}

QWPreferencesPanel::QWPreferencesPanel() = default;
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

void QWPreferencesPanel::_openPane(const QString &identifier)
{
    const bool isFirst = !m_panel;
    if (isFirst && !_loadNib())
        return;
    const bool isKnown = !identifier.isNull() && paneForIdentifier(identifier);
    if (isKnown || isFirst) {
        _selectPane(isKnown ? identifier : m_toolbarItemIdentifiers.value(0));
        platform::centerWindow(*m_panel, m_resize ? m_resize->endValue().toSize() : m_panel->size());
    }
    platform::constrainToScreen(*m_panel);
    platform::makeKeyAndOrderFront(*m_panel);
}

void QWPreferencesPanel::_update()
{
    const QList<QWPreferencesPane *> all = m_panel ? panes() : QList<QWPreferencesPane *>();
    for (QWPreferencesPane *const pane : all)
        pane->updateControls();
}

bool QWPreferencesPanel::_loadNib()
{
    if (panelNibName().isEmpty())
        return false;
    platform::InterfaceFile nib(panelNibName(), platform::Bundle::forClassOf(*this), *this);
    platform::Panel *panel = nullptr;
    nib.connectOutlet("panel", panel);
    nibDidLoad(nib);
    m_nib = nib.takeWidget(); // kept even so, for outlets that were found
    if (!nib.isComplete())
        return false;
    m_panel = panel;
    connect(m_panel, &platform::Panel::willClose, this, &QWPreferencesPanel::windowWillClose);
    connect(new QShortcut(QKeySequence::Close, m_panel), &QShortcut::activated, m_panel, &QWidget::close);
    _makeContentView();
    _makeToolbar();
    _update();
    return true;
}

void QWPreferencesPanel::_makeContentView()
{
    m_contentView = new QWidget;
    m_contentView->setObjectName("contentView");
    delete m_panel->layout();
    auto *const column = new QVBoxLayout(m_panel);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(m_contentView, 1);
}

void QWPreferencesPanel::_makeToolbar()
{
    const QList<QWPreferencesPane *> all = panes();
    for (const QWPreferencesPane *const pane : all)
        m_toolbarItemIdentifiers.append(pane->identifier());
    m_toolbar = new Toolbar("preferencesToolbar", m_panel);
    m_toolbar->setAllowsUserCustomization(false);
    m_toolbar->setAutosavesConfiguration(false);
    m_toolbar->setDisplayMode(Toolbar::IconAndLabel);
    m_toolbar->setToolbarDelegate(this);
    static_cast<QBoxLayout *>(m_panel->layout())->insertWidget(0, m_toolbar);
}

QWPreferencesPane *QWPreferencesPanel::paneForIdentifier(const QString &identifier) const
{
    const QList<QWPreferencesPane *> all = panes();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const QWPreferencesPane *pane) { return pane->identifier() == identifier; });
    return found == all.end() ? nullptr : *found;
}

QStringList QWPreferencesPanel::toolbarAllowedItemIdentifiers(Toolbar &)
{
    return m_toolbarItemIdentifiers;
}

QStringList QWPreferencesPanel::toolbarDefaultItemIdentifiers(Toolbar &)
{
    return m_toolbarItemIdentifiers;
}

QStringList QWPreferencesPanel::toolbarSelectableItemIdentifiers(Toolbar &)
{
    return m_toolbarItemIdentifiers;
}

std::unique_ptr<ToolbarItem> QWPreferencesPanel::toolbarItemForItemIdentifier(Toolbar &, const QString &identifier,
                                                                              bool)
{
    const QWPreferencesPane *const pane = paneForIdentifier(identifier);
    if (!pane)
        return nullptr;
    auto item = std::make_unique<ToolbarItem>(identifier);
    item->setLabel(pane->title());
    item->setToolTip(pane->toolTip());
    item->setImage(pane->image());
    item->setTarget(this);
    item->setAction("changePane:");
    return item;
}

/// As if the user had chosen the item.
void QWPreferencesPanel::_selectPane(const QString &identifier)
{
    const std::unique_ptr<ToolbarItem> item = toolbarItemForItemIdentifier(*m_toolbar, identifier, false);
    if (!item)
        return;
    m_toolbar->setSelectedItemIdentifier(identifier);
    changePane(item.get());
}

void QWPreferencesPanel::changePane(QObject *toolbarItem)
{
    const auto *const item = qobject_cast<ToolbarItem *>(toolbarItem);
    QWPreferencesPane *const pane = item ? paneForIdentifier(item->itemIdentifier()) : nullptr;
    if (!pane || !m_panel || pane == m_currentPane)
        return;
    const QPointer<QWPreferencesPane> old = m_currentPane;
    if (old)
        old->paneWillResignFront();
    pane->paneWillBecomeFront();
    _swapPane(*pane);
    if (old)
        old->paneDidResignFront();
    pane->paneDidBecomeFront();
    m_currentPane = pane;
}

/// The old pane goes back to where it came from. The new one is whole at once; the panel opens over it. Keys that went
/// into the old one go into the new one; Qt would give them to the toolbar.
void QWPreferencesPanel::_swapPane(QWPreferencesPane &pane)
{
    bool hadKeyboard = false;
    if (auto *const first = m_contentView->findChild<QWidget *>({}, Qt::FindDirectChildrenOnly)) {
        hadKeyboard = platform::isWithin(m_panel->focusWidget(), *first);
        first->hide();
        first->setParent(m_nib.get());
    }
    const QSize content = pane.paneSize().expandedTo({m_toolbar->sizeHint().width(), 0});
    _fitPanel(content);
    pane.setParent(m_contentView);
    pane.setGeometry(QRect({}, content));
    pane.show();
    if (hadKeyboard)
        pane.setFocus();
}

void QWPreferencesPanel::_fitPanel(const QSize &content)
{
    delete m_resize;
    const QSize size = content + QSize(0, m_toolbar->sizeHint().height());
    if (m_panel->isVisible())
        return _setFrameAnimated(size);
    QRect frame(QPoint(), size);
    frame.moveBottomLeft(m_panel->geometry().bottomLeft());
    m_panel->setFixedSize(size);
    m_panel->setGeometry(frame);
}

/// The top left corner stays.
void QWPreferencesPanel::_setFrameAnimated(const QSize &size)
{
    const int duration = resizeMilliseconds(*m_panel);
    if (duration <= 0)
        return m_panel->setFixedSize(size);
    m_resize = new QVariantAnimation(this);
    m_resize->setStartValue(m_panel->size());
    m_resize->setEndValue(size);
    m_resize->setDuration(duration);
    m_resize->setEasingCurve(QEasingCurve::InOutQuad);
    connect(m_resize, &QVariantAnimation::valueChanged, m_panel,
            [panel = m_panel](const QVariant &value) { panel->setFixedSize(value.toSize()); });
    m_resize->start(QAbstractAnimation::DeleteWhenStopped);
}

/// Ends editing: what was typed last into a field is committed.
void QWPreferencesPanel::windowWillClose()
{
    m_panel->setFocus(Qt::OtherFocusReason);
}
