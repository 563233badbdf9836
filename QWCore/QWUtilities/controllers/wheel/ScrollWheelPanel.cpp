#include "ScrollWheelPanel.h"

#include "QWUtilities/controllers/QWScrollWheelManager.h"
#include "ScrollWheelTable.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/appkit/TintedIcon.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/appkit/windows/WindowOpenState.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/TextForms.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QAbstractButton>
#include <QLabel>

#include <algorithm>
#include <utility>

using platform::System;

namespace qw
{

namespace
{
constexpr auto wheelFrameKey = "Scroll Wheel Manager Frame";
constexpr auto wheelOpenKey = "Scroll Wheel Manager Open";
constexpr QRect usualWheelFrame(217, 544, 411, 187);
} // namespace

std::unique_ptr<ScrollWheelPanel> ScrollWheelPanel::load(QWScrollWheelManager &owner,
                                                         std::vector<ScrollWheelBinding> &bindings, QMenu &axes,
                                                         QMenu &actions)
{
    Outlets outlets = _loadNib(owner);
    if (!outlets.nib)
        return nullptr;
    return std::unique_ptr<ScrollWheelPanel>(new ScrollWheelPanel(std::move(outlets), owner, bindings, axes, actions));
}

ScrollWheelPanel::Outlets ScrollWheelPanel::_loadNib(QWScrollWheelManager &owner)
{
    platform::InterfaceFile::registerClass<ScrollWheelTable>("ScrollWheelTable");
    platform::InterfaceFile nib("QWScrollWheelManager", platform::Bundle::forClassOf(owner), owner);
    Outlets outlets;
    nib.connectOutlet("panel", outlets.panel);
    nib.connectOutlet("table", outlets.table);
    nib.connectOutlet("removeActionButton", outlets.removeActionButton);
    if (nib.isComplete()) // else the bindings work all the same
        outlets.nib = nib.takeWidget();
    return outlets;
}

ScrollWheelPanel::ScrollWheelPanel(Outlets outlets, const QWScrollWheelManager &owner,
                                   std::vector<ScrollWheelBinding> &bindings, QMenu &axes, QMenu &actions)
    : m_nib(std::move(outlets.nib))
    , m_panel(outlets.panel)
    , m_table(outlets.table)
    , m_removeActionButton(outlets.removeActionButton)
    , m_model(bindings, axes, actions)
    , m_openState(std::make_unique<platform::WindowOpenState>(*m_panel))
{
    _setImages(owner);
    m_table->setBindings(m_model);
    QObject::connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, m_table,
                     [this] { tableViewSelectionDidChange(); });
    tableViewSelectionDidChange();
    _restoreFrame();
}

ScrollWheelPanel::~ScrollWheelPanel() = default;

void ScrollWheelPanel::registerDefaults()
{
    System::current().userDefaults().registerDefaults(
        {{wheelFrameKey, platform::TextForms::stringFromRect(usualWheelFrame)}, {wheelOpenKey, false}});
}

void ScrollWheelPanel::open()
{
    if (!m_panel->isVisible()) // its screen may have gone since
        platform::constrainToScreen(*m_panel);
    platform::makeKeyAndOrderFront(*m_panel);
}

void ScrollWheelPanel::openAgain()
{
    if (System::current().userDefaults().boolean(wheelOpenKey))
        open();
}

void ScrollWheelPanel::toggle()
{
    if (m_panel->isVisible() && platform::keyWindow() == m_panel)
        m_panel->close();
    else
        open();
}

int ScrollWheelPanel::selectedRow() const
{
    return m_table->selectedRow();
}

void ScrollWheelPanel::scrollToBottom()
{
    m_table->scrollToBottom();
}

void ScrollWheelPanel::store() const
{
    platform::UserDefaults &defaults = System::current().userDefaults();
    defaults.setObject(wheelOpenKey, m_openState->isOpen());
    defaults.setObject(wheelFrameKey, platform::stringFromFrame(*m_panel));
}

void ScrollWheelPanel::_setImages(const QWScrollWheelManager &owner)
{
    const platform::Bundle bundle = platform::Bundle::forClassOf(owner);
    const auto image = [&](const QString &name) { return platform::tintedIcon(bundle.pathForResource(name, "svg")); };
    m_model.setReverseImage(image("reverse"));
    m_removeActionButton->setIcon(image("remove"));
    if (auto *const button = m_panel->findChild<QAbstractButton *>("addActionButton"))
        button->setIcon(image("add"));
    if (auto *const note = m_panel->findChild<QLabel *>("noteText"))
        note->setForegroundRole(QPalette::PlaceholderText);
}

/// The width is the table's own; of the stored frame it is ignored.
void ScrollWheelPanel::_restoreFrame()
{
    const QString text = System::current().userDefaults().string(wheelFrameKey);
    QRect frame = platform::TextForms::wholeRectFromString(text);
    if (!frame.isValid())
        frame = usualWheelFrame;
    frame.setWidth(usualWheelFrame.width());
    frame.setHeight(std::max(frame.height(), m_panel->minimumHeight()));
    m_panel->setFixedWidth(usualWheelFrame.width());
    m_panel->setGeometry(platform::constrainedToScreen(frame));
}

void ScrollWheelPanel::tableViewSelectionDidChange()
{
    m_removeActionButton->setEnabled(m_table->numberOfSelectedRows() > 0);
}

} // namespace qw
