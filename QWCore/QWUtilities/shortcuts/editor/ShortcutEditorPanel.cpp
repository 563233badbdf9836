#include "ShortcutEditorPanel.h"

#include "KeyReturn.h"
#include "KeycapLabel.h"
#include "PresetsMenu.h"
#include "QWUtilities/shortcuts/QWKeyboardShortcuts.h"
#include "QWUtilities/shortcuts/capture/CaptureSheet.h"
#include "QWUtilities/shortcuts/search/ShortcutSearch.h"
#include "SavePresetSheet.h"
#include "ShortcutOutlineView.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/appkit/TintedIcon.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/appkit/windows/WindowOpenState.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

namespace qw
{

using platform::formatted;
using platform::localized;
using platform::System;

namespace
{
constexpr auto openKey = "Keyboard Shortcuts Open";
constexpr auto frameKey = "Keyboard Shortcuts Frame";
constexpr int minimumWidth = 392;
constexpr QSize registeredSize(minimumWidth, 259);
constexpr QRect frameOfLastResort(613, 97, minimumWidth, 259);

bool registerClasses()
{
    platform::InterfaceFile::registerClass<ShortcutOutlineView>("ShortcutOutlineView");
    platform::InterfaceFile::registerClass<KeycapLabel>("KeycapLabel");
    return true;
}

platform::Bundle ownBundle()
{
    [[maybe_unused]] static const bool registered = registerClasses();
    return platform::Bundle::forAddress(reinterpret_cast<const void *>(&registerClasses));
}

/// Small and quiet; null is passed over.
void showAsNote(QLabel *label)
{
    if (!label)
        return;
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() - 2);
    label->setFont(font);
    label->setForegroundRole(QPalette::PlaceholderText);
}
} // namespace

/// Of the interface file.
struct ShortcutEditorPanel::Outlets
{
    platform::Panel *window = nullptr;
    QPushButton *presetsPopup = nullptr;
    QLineEdit *searchText = nullptr;
    ShortcutOutlineView *shortcutsTable = nullptr;
    CaptureSheet::Outlets capture;
    SavePresetSheet::Outlets save;
};

ShortcutEditorPanel::ShortcutEditorPanel(QWKeyboardShortcuts &registry)
    : m_registry(registry)
    , m_frame(frameKey, registeredSize)
{
}

ShortcutEditorPanel::~ShortcutEditorPanel() = default;

void ShortcutEditorPanel::open()
{
    if (!m_outlets && !_loadNib())
        return;
    System::current().userDefaults().setObject(openKey, true);
    platform::Panel &window = *m_outlets->window;
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    platform::makeKeyAndOrderFront(window);
}

void ShortcutEditorPanel::toggle()
{
    if (m_outlets && m_outlets->window->isVisible() && platform::keyWindow() == m_outlets->window)
        m_outlets->window->close();
    else
        open();
}

QWidget *ShortcutEditorPanel::window() const
{
    return m_outlets ? m_outlets->window : nullptr;
}

void ShortcutEditorPanel::filePanelDidEnd()
{
    if (m_outlets && m_outlets->window->isVisible())
        m_keyReturn->comeBack();
}

QWidget *ShortcutEditorPanel::setShortcutPanel() const
{
    return m_outlets ? m_outlets->capture.panel : nullptr;
}

void ShortcutEditorPanel::doSetShortcut(const platform::KeyEvent &event)
{
    if (m_captureSheet)
        m_captureSheet->see(event);
}

QString ShortcutEditorPanel::searchString() const
{
    return m_search ? m_search->text() : QString();
}

void ShortcutEditorPanel::clearSearchString()
{
    if (m_search)
        m_search->clear();
}

void ShortcutEditorPanel::displayResultsDidChange()
{
    if (!m_outlets)
        return;
    ShortcutOutlineView &outline = *m_outlets->shortcutsTable;
    const ShortcutOutlineView::State state = outline.state();
    bool isReset = false;
    const auto noted = connect(&m_model, &QAbstractItemModel::modelReset, this, [&] { isReset = true; });
    m_model.setGroups(m_registry.displayResults());
    disconnect(noted);
    outline.setEmptyText(_emptyText());
    if (isReset)
        outline.setState(state);
    const auto &editing = m_captureSheet->editingShortcut();
    if (editing && !editing->group())
        m_captureSheet->end(); // a reload made new shortcuts
}

QString ShortcutEditorPanel::_emptyText() const
{
    return searchString().isEmpty() ? localized("This application has no keyboard shortcuts.")
                                    : formatted(localized("No shortcut is named “%@”."), {searchString()});
}

QMenu *ShortcutEditorPanel::presetsMenu() const
{
    return m_outlets ? m_outlets->presetsPopup->menu() : nullptr;
}

QString ShortcutEditorPanel::presetName() const
{
    return m_saveSheet ? m_saveSheet->name() : QString();
}

void ShortcutEditorPanel::searchChanged(QObject *)
{
    m_registry.reloadDisplay();
    m_outlets->shortcutsTable->setAllExpanded(!searchString().isEmpty());
}

void ShortcutEditorPanel::editShortcut(QObject *)
{
    _edit(m_outlets->shortcutsTable->currentIndex());
}

void ShortcutEditorPanel::clearShortcut(QObject *)
{
    m_captureSheet->clear();
}

void ShortcutEditorPanel::clearOtherShortcut(QObject *)
{
    m_captureSheet->clearOther();
}

void ShortcutEditorPanel::confirmSetShortcut(QObject *sender)
{
    m_captureSheet->confirm(sender);
}

void ShortcutEditorPanel::saveShortcuts(QObject *)
{
    m_saveSheet->begin(*m_outlets->window, [this](int code) {
        m_keyReturn->takeBack();
        m_registry.saveShortcutPanelDidEnd(code);
    });
}

void ShortcutEditorPanel::closeSaveShortcutPanel(QObject *sender)
{
    m_saveSheet->close(sender);
}

bool ShortcutEditorPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Move && watched == window())
        windowDidMove();
    return QObject::eventFilter(watched, event);
}

bool ShortcutEditorPanel::_loadNib()
{
    platform::InterfaceFile nib("QWKeyboardShortcuts", ownBundle(), *this);
    auto outlets = std::make_unique<Outlets>();
    nib.connectOutlet("window", outlets->window);
    nib.connectOutlet("presetsPopup", outlets->presetsPopup);
    nib.connectOutlet("searchText", outlets->searchText);
    nib.connectOutlet("shortcutsTable", outlets->shortcutsTable);
    nib.connectOutlet("setShortcutPanel", outlets->capture.panel);
    nib.connectOutlet("setShortcutIntroText", outlets->capture.introText);
    nib.connectOutlet("shortcutText", outlets->capture.shortcutText);
    nib.connectOutlet("setShortcutOutroText", outlets->capture.outroText);
    nib.connectOutlet("okButton", outlets->capture.okButton);
    nib.connectOutlet("clearButton", outlets->capture.clearButton);
    nib.connectOutlet("saveShortcutPanel", outlets->save.panel);
    nib.connectOutlet("saveShortcutText", outlets->save.nameText);
    nib.connectOutlet("saveShortcutButton", outlets->save.saveButton);
    if (!nib.isComplete())
        return false;
    m_nib = nib.takeWidget();
    m_outlets = std::move(outlets);
    awakeFromNib();
    return true;
}

void ShortcutEditorPanel::awakeFromNib()
{
    platform::Panel &window = *m_outlets->window;
    platform::setDelegate(&window, &m_registry);
    window.setMinimumWidth(minimumWidth);
    connect(&window, &platform::Panel::willClose, this, &ShortcutEditorPanel::windowWillClose);
    _makeSheets();
    m_outlets->presetsPopup->setMenu(makePresetsMenu(window, m_registry, *this));
    m_registry.buildPresetsMenu();
    _connectOutline();
    _makeSearch();
    displayResultsDidChange();
    window.setGeometry(m_frame.stored(frameOfLastResort));
    m_position = window.pos();
    window.installEventFilter(this);
    m_openState = std::make_unique<platform::WindowOpenState>(window);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &ShortcutEditorPanel::applicationWillTerminate);
    m_outlets->shortcutsTable->setFocus();
}

/// Sheets are windows of their own, whatever the interface file made of them.
void ShortcutEditorPanel::_makeSheets()
{
    for (QWidget *const sheet : {m_outlets->capture.panel, m_outlets->save.panel})
        sheet->setParent(m_outlets->window, Qt::Dialog);
    m_keyReturn = std::make_unique<KeyReturn>(*m_outlets->window);
    m_outlets->capture.hintText = m_outlets->capture.panel->findChild<QLabel *>("setShortcutHintText");
    m_outlets->capture.clearOtherButton = m_outlets->capture.panel->findChild<QPushButton *>("clearOtherButton");
    m_outlets->save.ruleText = m_outlets->save.panel->findChild<QLabel *>("saveShortcutRuleText");
    showAsNote(m_outlets->capture.hintText);
    showAsNote(m_outlets->save.ruleText);
    m_captureSheet = std::make_unique<CaptureSheet>(m_registry, m_outlets->capture);
    m_captureSheet->setParent(this);
    connect(m_captureSheet.get(), &CaptureSheet::didEnd, m_keyReturn.get(), &KeyReturn::takeBack);
    m_saveSheet = std::make_unique<SavePresetSheet>(m_outlets->save);
}

void ShortcutEditorPanel::_connectOutline()
{
    ShortcutOutlineView &outline = *m_outlets->shortcutsTable;
    outline.setModel(&m_model);
    connect(&outline, &QAbstractItemView::doubleClicked, this, &ShortcutEditorPanel::_edit);
    connect(&outline, &ShortcutOutlineView::editRequested, this, &ShortcutEditorPanel::_edit);
    connect(&outline, &ShortcutOutlineView::clearRequested, this, &ShortcutEditorPanel::_clearKey);
    connect(&outline, &ShortcutOutlineView::menuRequested, this, &ShortcutEditorPanel::_showRowMenu);
    connect(&outline, &ShortcutOutlineView::toggleRequested, this, [this](const QModelIndex &index) {
        const auto box = index.siblingAtColumn(ShortcutOutlineModel::Enabled);
        _setEnabled(index, box.data(Qt::CheckStateRole).toInt() != Qt::Checked);
    });
}

void ShortcutEditorPanel::_makeSearch()
{
    const QIcon icon = platform::tintedIcon(ownBundle().pathForResource("search", "svg"));
    m_search = std::make_unique<ShortcutSearch>(*m_outlets->searchText, icon);
    connect(m_search.get(), &ShortcutSearch::changed, this, [this] { searchChanged(m_outlets->searchText); });
    connect(m_search.get(), &ShortcutSearch::left, m_outlets->shortcutsTable, [this] {
        m_outlets->shortcutsTable->setFocus(Qt::OtherFocusReason);
        m_outlets->shortcutsTable->selectFirst();
    });
}

/// Groups have no key.
void ShortcutEditorPanel::_edit(const QModelIndex &index)
{
    if (const auto shortcut = m_model.shortcutAt(index))
        m_captureSheet->begin(shortcut, *m_outlets->window);
}

void ShortcutEditorPanel::_setEnabled(const QModelIndex &index, bool enabled)
{
    m_model.setEnabledAt(index, enabled);
    m_outlets->shortcutsTable->tellName(index);
}

void ShortcutEditorPanel::_clearKey(const QModelIndex &index)
{
    const auto shortcut = m_model.shortcutAt(index);
    if (!shortcut || shortcut->key().isClear())
        return;
    const QPersistentModelIndex row(index);
    shortcut->clearKey();
    m_registry.saveToDefaults();
    m_registry.reloadDisplay();
    m_outlets->shortcutsTable->tellName(row);
}

/// What the keyboard does where Return, Space and Delete are shortcuts of the host.
void ShortcutEditorPanel::_showRowMenu(const QModelIndex &index, const QPoint &position)
{
    const QPersistentModelIndex row(index);
    const auto shortcut = m_model.shortcutAt(index);
    const auto box = index.siblingAtColumn(ShortcutOutlineModel::Enabled);
    auto *const menu = new QMenu(m_outlets->window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (shortcut) {
        menu->addAction(localized("Change Shortcut…"), this, [this, row] { _edit(row); });
        menu->addAction(localized("Clear Shortcut"), this, [this, row] { _clearKey(row); })
            ->setEnabled(!shortcut->key().isClear());
        menu->addSeparator();
    }
    QAction *const enabled = menu->addAction(localized("Enabled"));
    enabled->setCheckable(true);
    enabled->setChecked(box.data(Qt::CheckStateRole).toInt() == Qt::Checked);
    connect(enabled, &QAction::toggled, this, [this, row](bool isOn) { _setEnabled(row, isOn); });
    menu->popup(m_outlets->shortcutsTable->viewport()->mapToGlobal(position));
}

void ShortcutEditorPanel::windowDidMove()
{
    const QWidget &window = *m_outlets->window;
    if (!window.isVisible() || window.pos() == m_position)
        return;
    m_position = window.pos();
    m_frame.store(window);
}

void ShortcutEditorPanel::windowWillClose()
{
    m_captureSheet->end();
    m_saveSheet->end();
    System::current().userDefaults().setObject(openKey, false);
}

/// On the way here all windows were closed.
void ShortcutEditorPanel::applicationWillTerminate()
{
    System::current().userDefaults().setObject(openKey, m_openState->isOpen());
}

} // namespace qw
