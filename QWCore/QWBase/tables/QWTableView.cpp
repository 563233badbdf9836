#include "QWTableView.h"

#include "QWBase/tables/columns/ColumnState.h"
#include "QWBase/tables/columns/ColumnsMenu.h"
#include "QWBase/tables/columns/CornerButton.h"
#include "QWBase/tables/columns/FormattedTable.h"
#include "QWBase/tables/columns/RowSelection.h"
#include "QWBase/tables/columns/TableCells.h"
#include "QWBase/tables/columns/TableHeader.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/windows/AccessibleCell.h>
#include <QWPlatform/foundation/Localization.h>

#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

using platform::formatted;
using platform::localized;

namespace
{
constexpr double pointsPerInch = 72;
constexpr int rowPadding = 6;         ///< Pixels, above and below the text together.
constexpr int lowestRow = 24;         ///< Pixels.
constexpr int widestByContents = 480; ///< Pixels.
} // namespace

class Q_DECL_HIDDEN QWTableView::Private
{
public:
    explicit Private(QWTableView &view);

    void _connectHeader();
    void _makeCorner();
    void _showMenu(int section, const QPoint &position);
    void _layOut();
    void _layOutSection(int visual);
    void _fitRows();
    void _sourceDidChange();
    void _sectionMoved();
    void _sectionResized(int section, int newSize);
    void _toggle(const QString &identifier);
    void _setColumns(std::vector<QWTableColumn> columns);
    void _columnsDidChange();
    std::vector<QWTableColumn> _restored(const std::vector<qw::StoredColumn> &stored) const;
    void _keepFixedColumns(std::vector<QWTableColumn> &columns) const;
    int _widthByContents(int section) const;
    std::vector<QWTableColumn>::iterator _find(const QString &identifier);
    int _pixels(double points) const { return qRound(points * m_view.logicalDpiX() / pointsPerInch); }
    double _points(int pixels) const { return pixels * pointsPerInch / m_view.logicalDpiX(); }

    QWTableView &m_view;
    std::vector<QWTableColumn> m_columns; ///< As they show.
    qw::FormattedTable m_shown;
    qw::ColumnsMenu m_optional;
    QHash<QString, double> m_lastWidths; ///< In points, of columns that were hidden.
    qw::TableHeader *m_header;
    qw::CornerButton *m_corner = nullptr;
    bool m_isLayingOut = false;
};

QWTableView::Private::Private(QWTableView &view)
    : m_view(view)
    , m_optional([this](const QString &identifier) { return _find(identifier) != m_columns.end(); },
                 [this](const QString &identifier) { _toggle(identifier); })
    , m_header(new qw::TableHeader(&view))
{
}

QWTableView::QWTableView(QWidget *parent)
    : QTableView(parent)
    , d(std::make_unique<Private>(*this))
{
    setHorizontalHeader(d->m_header);
    setItemDelegate(new qw::TableCells(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    d->_connectHeader();
    d->_fitRows();
}

QWTableView::~QWTableView()
{
    blockSignals(true);
    QTableView::setModel(nullptr); // which goes before the view
}

void QWTableView::setModel(QAbstractItemModel *model)
{
    if (QAbstractItemModel *const source = d->m_shown.sourceModel())
        disconnect(source, nullptr, this, nullptr);
    d->m_shown.setSourceModel(model);
    d->m_shown.readIdentifiers();
    QTableView::setModel(model ? &d->m_shown : nullptr);
    d->_layOut();
    if (!model)
        return;
    const auto look = [this] { d->_sourceDidChange(); };
    connect(model, &QAbstractItemModel::modelReset, this, look);
    connect(model, &QAbstractItemModel::columnsInserted, this, look);
    connect(model, &QAbstractItemModel::columnsRemoved, this, look);
    connect(model, &QAbstractItemModel::headerDataChanged, this, look);
}

QList<QWTableColumn> QWTableView::tableColumns() const
{
    return {d->m_columns.begin(), d->m_columns.end()};
}

void QWTableView::addTableColumn(const QWTableColumn &column)
{
    if (column.identifier.isEmpty() || d->_find(column.identifier) != d->m_columns.end())
        return;
    std::vector<QWTableColumn> columns = d->m_columns;
    columns.push_back(column);
    d->_setColumns(std::move(columns));
}

void QWTableView::removeTableColumn(const QString &identifier)
{
    const auto found = d->_find(identifier);
    if (found == d->m_columns.end())
        return;
    d->m_lastWidths.insert(identifier, found->width);
    std::vector<QWTableColumn> columns = d->m_columns;
    columns.erase(columns.begin() + std::distance(d->m_columns.begin(), found));
    d->_setColumns(std::move(columns));
}

QVariantList QWTableView::columnState() const
{
    return qw::stateOf(d->m_columns);
}

void QWTableView::setColumnState(const QVariant &state)
{
    std::vector<QWTableColumn> columns = d->_restored(qw::storedColumns(state));
    if (columns.empty())
        return;
    d->_keepFixedColumns(columns);
    d->_setColumns(std::move(columns));
}

void QWTableView::addCornerMenuItemForColumnIdentifier(const QString &title, const QString &identifier)
{
    d->m_optional.add(title, identifier);
    if (!d->m_corner)
        d->_makeCorner();
}

QWTableColumn QWTableView::tableColumnForIdentifierWidth(const QString &, double) const
{
    return {};
}

void QWTableView::setSortIndicator(const QString &identifier, Qt::SortOrder order)
{
    const int section = d->m_shown.sectionOf(identifier);
    d->m_shown.setSortColumn(identifier, order);
    d->m_header->setSortIndicatorShown(section >= 0);
    d->m_header->setSortIndicator(section, order);
}

QList<int> QWTableView::selectedRows() const
{
    return selectionModel() ? qw::rowsOfSelection(selectionModel()->selection()) : QList<int>();
}

void QWTableView::selectRows(const QList<int> &rows)
{
    if (!selectionModel())
        return;
    const QItemSelection selection = qw::selectionOfRows(*model(), rows);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (selection.isEmpty())
        return;
    const QModelIndex first = model()->index(selection.first().top(), std::max(0, d->m_header->focusSection()));
    selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
}

void QWTableView::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        d->_fitRows();
}

void QWTableView::focusInEvent(QFocusEvent *event)
{
    QTableView::focusInEvent(event);
    platform::tellOfFocusedCell(*this);
}

void QWTableView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->ignore();
    else
        QTableView::keyPressEvent(event);
}

QModelIndex QWTableView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if ((action != MoveHome && action != MoveEnd) || !model() || model()->rowCount() == 0)
        return QTableView::moveCursor(action, modifiers);
    const int row = action == MoveHome ? 0 : model()->rowCount() - 1;
    return model()->index(row, std::max(0, currentIndex().column()));
}

void QWTableView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTableView::selectionChanged(selected, deselected);
    Q_EMIT selectionDidChange();
}

/// Qt's own would select columns.
void QWTableView::Private::_connectHeader()
{
    QObject::disconnect(m_header, &QHeaderView::sectionPressed, &m_view, nullptr);
    QObject::disconnect(m_header, &QHeaderView::sectionEntered, &m_view, nullptr);
    QObject::connect(m_header, &QHeaderView::sectionClicked, &m_view,
                     [this](int section) { Q_EMIT m_view.didClickTableColumn(m_shown.identifierOf(section)); });
    QObject::connect(m_header, &QHeaderView::sectionMoved, &m_view, [this] { _sectionMoved(); });
    QObject::connect(m_header, &QHeaderView::sectionResized, &m_view,
                     [this](int section, int, int newSize) { _sectionResized(section, newSize); });
    QObject::connect(m_header, &qw::TableHeader::menuRequested, &m_view,
                     [this](int section, const QPoint &position) { _showMenu(section, position); });
    m_header->setAccessibleName(localized("Columns"));
}

/// The scroll bar always shows then: a header that changes its width with the number of rows would jump.
void QWTableView::Private::_makeCorner()
{
    m_corner = new qw::CornerButton(m_optional, &m_view);
    m_view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_view.addScrollBarWidget(m_corner, Qt::AlignTop);
    const auto fit = [this] { m_corner->setFixedHeight(m_header->sizeHint().height()); };
    QObject::connect(m_header, &QHeaderView::geometriesChanged, m_corner, fit);
    fit();
}

/// What the header does by mouse, for those who use none, and the corner's menu.
void QWTableView::Private::_showMenu(int section, const QPoint &position)
{
    const auto found = _find(m_shown.identifierOf(section));
    auto *const menu = new QMenu(&m_view);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (found != m_columns.end()) {
        const auto add = [&](const QString &title, bool isEnabled, auto act) {
            platform::MenuItem *const item = platform::addMenuItem(*menu, title);
            item->setEnabled(isEnabled);
            QObject::connect(item, &QAction::triggered, m_header, act);
        };
        const int left = m_view.isRightToLeft() ? 1 : -1;
        add(formatted(localized("Sort by “%@”"), {found->title}), true,
            [this, section] { Q_EMIT m_header->sectionClicked(section); });
        add(localized("Move Left"), m_header->canMoveBy(section, left),
            [this, section, left] { m_header->moveBy(section, left); });
        add(localized("Move Right"), m_header->canMoveBy(section, -left),
            [this, section, left] { m_header->moveBy(section, -left); });
        menu->addSeparator();
    }
    m_optional.fill(*menu);
    menu->popup(position);
}

std::vector<QWTableColumn>::iterator QWTableView::Private::_find(const QString &identifier)
{
    return std::find_if(m_columns.begin(), m_columns.end(),
                        [&](const QWTableColumn &column) { return column.identifier == identifier; });
}

void QWTableView::Private::_setColumns(std::vector<QWTableColumn> columns)
{
    m_columns = std::move(columns);
    m_shown.setColumns(m_columns);
    _layOut();
    _columnsDidChange();
}

/// Sections are the model's columns: those of the table are brought to the front in their order, the others hidden.
void QWTableView::Private::_layOut()
{
    if (!m_view.model())
        return;
    const QScopedValueRollback<bool> layingOut(m_isLayingOut, true);
    for (int section = 0; section < m_header->count(); ++section)
        m_header->setSectionHidden(section, _find(m_shown.identifierOf(section)) == m_columns.end());
    int visual = 0;
    for (QWTableColumn &column : m_columns) {
        const int section = m_shown.sectionOf(column.identifier);
        if (section < 0)
            continue;
        m_header->moveSection(m_header->visualIndex(section), visual++);
        if (column.width <= 0)
            column.width = _points(_widthByContents(section));
        m_header->resizeSection(section, _pixels(column.width));
    }
}

int QWTableView::Private::_widthByContents(int section) const
{
    const int width = std::max(m_view.sizeHintForColumn(section), m_header->sectionSizeHint(section));
    return std::clamp(width, _pixels(qw::narrowestColumn), widestByContents);
}

void QWTableView::Private::_fitRows()
{
    m_view.verticalHeader()->setMinimumSectionSize(1);
    m_view.verticalHeader()->setDefaultSectionSize(std::max(lowestRow, m_view.fontMetrics().height() + rowPadding));
    m_header->setMinimumSectionSize(_pixels(qw::narrowestColumn));
}

void QWTableView::Private::_sourceDidChange()
{
    if (m_shown.readIdentifiers())
        _layOut();
}

void QWTableView::Private::_sectionMoved()
{
    if (m_isLayingOut)
        return;
    std::stable_sort(m_columns.begin(), m_columns.end(), [this](const QWTableColumn &one, const QWTableColumn &other) {
        return m_header->visualIndex(m_shown.sectionOf(one.identifier)) <
               m_header->visualIndex(m_shown.sectionOf(other.identifier));
    });
    m_shown.setColumns(m_columns);
    _columnsDidChange();
}

void QWTableView::Private::_sectionResized(int section, int newSize)
{
    const auto column = _find(m_shown.identifierOf(section));
    if (m_isLayingOut || newSize <= 0 || column == m_columns.end() || newSize == _pixels(column->width))
        return;
    column->width = _points(newSize);
    _columnsDidChange();
}

void QWTableView::Private::_toggle(const QString &identifier)
{
    if (_find(identifier) != m_columns.end())
        m_view.removeTableColumn(identifier);
    else
        m_view.addTableColumn(m_view.tableColumnForIdentifierWidth(identifier, m_lastWidths.value(identifier)));
}

void QWTableView::Private::_columnsDidChange()
{
    m_view.viewport()->update();
    Q_EMIT m_view.columnsDidChange();
}

std::vector<QWTableColumn> QWTableView::Private::_restored(const std::vector<qw::StoredColumn> &stored) const
{
    std::vector<QWTableColumn> columns;
    for (const qw::StoredColumn &entry : stored) {
        QWTableColumn column = m_view.tableColumnForIdentifierWidth(entry.identifier, entry.width);
        if (!column.identifier.isEmpty())
            columns.push_back(std::move(column));
    }
    return columns;
}

/// Those that nobody could bring back.
void QWTableView::Private::_keepFixedColumns(std::vector<QWTableColumn> &columns) const
{
    std::vector<QWTableColumn> missing;
    for (const QWTableColumn &column : m_columns) {
        const bool isNamed = std::any_of(columns.begin(), columns.end(), [&](const QWTableColumn &other) {
            return other.identifier == column.identifier;
        });
        if (!isNamed && !m_optional.holds(column.identifier))
            missing.push_back(column);
    }
    columns.insert(columns.begin(), missing.begin(), missing.end());
}
