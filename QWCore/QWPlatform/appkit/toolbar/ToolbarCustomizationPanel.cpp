#include "ToolbarCustomizationPanel.h"

#include "QWPlatform/foundation/Localization.h"
#include "Toolbar.h"
#include "ToolbarDisplayModes.h"
#include "ToolbarItemList.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace platform
{

namespace
{
constexpr int edge = 20;
constexpr int betweenGroups = 16;
constexpr int betweenControls = 8;
constexpr QSize opening{720, 440};
constexpr int buttonPadding = 16;
constexpr int shownHeight = 92;

QLabel *makeCaption(const QString &text, QWidget *buddy, QWidget *parent)
{
    auto *const label = new QLabel(text, parent);
    label->setBuddy(buddy);
    return label;
}
} // namespace

ToolbarCustomizationPanel::ToolbarCustomizationPanel(Toolbar &toolbar)
    : QDialog(toolbar.window())
    , m_toolbar(toolbar)
    , m_available(new ToolbarItemList(toolbar, this))
    , m_shown(new ToolbarItemList(toolbar, this))
    , m_displayMode(new QComboBox(this))
{
    setWindowTitle(localized("Customize Toolbar"));
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(edge, edge, edge, edge);
    layout->setSpacing(betweenGroups);
    layout->addLayout(_makeAvailable());
    layout->addLayout(_makeShown());
    layout->addLayout(_makeBottom());
    resize(opening);
    connect(&toolbar, &Toolbar::itemsChanged, this, &ToolbarCustomizationPanel::_refresh);
    connect(&toolbar, &QObject::destroyed, this, &QObject::deleteLater);
    _refresh();
}

QLayout *ToolbarCustomizationPanel::_makeAvailable()
{
    auto *const layout = new QVBoxLayout;
    layout->setSpacing(betweenControls);
    layout->addWidget(
        makeCaption(localized("Drag items into the toolbar below, or double-click them:"), m_available, this));
    layout->addWidget(m_available, 1);
    m_available->setAccessibleName(localized("Available items"));
    connect(m_available, &ToolbarItemList::itemChosen, this, &ToolbarCustomizationPanel::_add);
    connect(m_available, &ToolbarItemList::itemDropped, this, &ToolbarCustomizationPanel::_droppedOnAvailable);
    connect(m_available, &QListWidget::currentRowChanged, this, &ToolbarCustomizationPanel::_updateButtons);
    return layout;
}

QLayout *ToolbarCustomizationPanel::_makeShown()
{
    m_shown->setAccessibleName(localized("Items in the toolbar"));
    m_shown->setWrapping(false);
    m_shown->setFixedHeight(shownHeight);
    m_shown->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_shown, &ToolbarItemList::itemDropped, this, &ToolbarCustomizationPanel::_droppedOnShown);
    connect(m_shown, &QListWidget::currentRowChanged, this, &ToolbarCustomizationPanel::_updateButtons);
    auto *const buttons = new QHBoxLayout;
    buttons->setSpacing(betweenControls);
    buttons->addWidget(makeCaption(localized("Items in the toolbar:"), m_shown, this));
    buttons->addStretch();
    buttons->addWidget(m_addButton = _addButton(localized("Add"), &ToolbarCustomizationPanel::_add));
    buttons->addWidget(m_removeButton = _addButton(localized("Remove"), &ToolbarCustomizationPanel::_remove));
    buttons->addWidget(m_leftButton = _addButton(localized("Move Left"), &ToolbarCustomizationPanel::_moveLeft));
    buttons->addWidget(m_rightButton = _addButton(localized("Move Right"), &ToolbarCustomizationPanel::_moveRight));
    auto *const layout = new QVBoxLayout;
    layout->setSpacing(betweenControls);
    layout->addLayout(buttons);
    layout->addWidget(m_shown);
    return layout;
}

QLayout *ToolbarCustomizationPanel::_makeBottom()
{
    for (const ToolbarDisplayModeTitle &entry : toolbarDisplayModeTitles)
        m_displayMode->addItem(localized(entry.title));
    connect(m_displayMode, &QComboBox::activated, this, &ToolbarCustomizationPanel::_chooseDisplayMode);
    auto *const done = new QPushButton(localized("Done"), this);
    done->setDefault(true);
    connect(done, &QPushButton::clicked, this, &QDialog::accept);
    auto *const row = new QHBoxLayout;
    row->setSpacing(betweenControls);
    row->addWidget(makeCaption(localized("Show:"), m_displayMode, this));
    row->addWidget(m_displayMode);
    row->addStretch();
    row->addWidget(_addButton(localized("Restore Defaults"), &ToolbarCustomizationPanel::_restoreDefaults));
    row->addWidget(done);
    return row;
}

QPushButton *ToolbarCustomizationPanel::_addButton(const QString &title, void (ToolbarCustomizationPanel::*slot)())
{
    auto *const button = new QPushButton(title, this);
    button->setAutoDefault(false);
    button->setMinimumWidth(button->sizeHint().width() + buttonPadding);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

void ToolbarCustomizationPanel::_refresh()
{
    m_available->showItems(m_toolbar.allowedItemIdentifiers());
    m_shown->showItems(m_toolbar.itemIdentifiers());
    const Toolbar::DisplayMode mode = shownToolbarDisplayMode(m_toolbar);
    const auto &titles = toolbarDisplayModeTitles;
    const auto found =
        std::find_if(titles.begin(), titles.end(), [&](const auto &entry) { return entry.mode == mode; });
    m_displayMode->setCurrentIndex(static_cast<int>(found - titles.begin()));
    _updateButtons();
}

void ToolbarCustomizationPanel::_updateButtons()
{
    const int row = m_shown->currentRow();
    const QString available = m_available->currentIdentifier();
    m_addButton->setEnabled(!available.isEmpty() && m_toolbar.canInsert(available));
    m_removeButton->setEnabled(row >= 0);
    m_leftButton->setEnabled(row > 0);
    m_rightButton->setEnabled(row >= 0 && row + 1 < m_shown->count());
}

/// The new item comes behind the current one of the toolbar, or at its end.
void ToolbarCustomizationPanel::_add()
{
    const QString identifier = m_available->currentIdentifier();
    if (!identifier.isEmpty())
        _droppedOnShown(identifier, -1, m_shown->currentRow() < 0 ? m_shown->count() : m_shown->currentRow() + 1);
}

void ToolbarCustomizationPanel::_remove()
{
    m_toolbar.removeItemAtIndex(m_shown->currentRow());
}

void ToolbarCustomizationPanel::_restoreDefaults()
{
    m_toolbar.restoreDefaults();
}

void ToolbarCustomizationPanel::_move(int steps)
{
    const int from = m_shown->currentRow();
    const int to = from + steps;
    if (from < 0 || to < 0 || to >= m_shown->count())
        return;
    m_toolbar.moveItem(from, to);
    m_shown->setCurrentRow(to);
}

void ToolbarCustomizationPanel::_droppedOnShown(const QString &identifier, int fromRow, int row)
{
    if (fromRow >= 0) {
        const int to = row > fromRow ? row - 1 : row; // counted without the item itself
        m_toolbar.moveItem(fromRow, to);
        m_shown->setCurrentRow(to);
    } else if (m_toolbar.canInsert(identifier)) {
        m_toolbar.insertItemWithItemIdentifierAtIndex(identifier, row);
        m_shown->setCurrentRow(row);
    }
}

/// An item dragged out of the toolbar leaves it.
void ToolbarCustomizationPanel::_droppedOnAvailable(const QString &, int fromRow)
{
    if (fromRow < 0)
        _remove();
}

void ToolbarCustomizationPanel::_chooseDisplayMode(int index)
{
    m_toolbar.chooseDisplayMode(toolbarDisplayModeTitles.at(static_cast<size_t>(index)).mode);
}

void ToolbarCustomizationPanel::keyPressEvent(QKeyEvent *event)
{
    const bool moves = event->modifiers() == Qt::ControlModifier;
    if (moves && event->key() == Qt::Key_Left)
        _moveLeft();
    else if (moves && event->key() == Qt::Key_Right)
        _moveRight();
    else if (focusWidget() == m_shown && (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace))
        _remove();
    else
        QDialog::keyPressEvent(event);
}

} // namespace platform
