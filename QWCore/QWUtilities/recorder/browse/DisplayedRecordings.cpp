#include "DisplayedRecordings.h"

#include "RecordingOrder.h"

#include <QWBase/tables/QWTableColumn.h>
#include <QWPlatform/foundation/Localization.h>

#include <array>
#include <map>

namespace qw
{

namespace
{
struct DisplayedColumn
{
    const char *identifier;
    const char *header;
};

constexpr std::array<DisplayedColumn, 9> displayedColumns{{
    {"title", "Title"},
    {"length", "Length"},
    {"fileSize", "Size"},
    {"channels", "Channels"},
    {"quality", "Quality"},
    {"creationDate", "Created"},
    {"modificationDate", "Modified"},
    {"formats", "Available Formats"},
    {"locked", "Locked"},
}};
} // namespace

class Q_DECL_HIDDEN DisplayedRecordings::Private
{
public:
    /// Forgets what was made of another list.
    void setList(const RecordingList &newList)
    {
        if (list == &newList)
            return;
        list = &newList;
        orders.clear();
        matches.clear();
        matchedText.clear();
    }

    const RecordingOrder &order(const QString &key)
    {
        const auto known = orders.find(key);
        return known != orders.end() ? known->second : orders.try_emplace(key, *list, key).first->second;
    }

    const std::vector<bool> &matchesOf(const QString &text)
    {
        if (matchedText != text)
            matches = text.isEmpty() ? std::vector<bool>() : list->keys.takesWithKeywords(text);
        matchedText = text;
        return matches;
    }

    const RecordingList none{};
    const RecordingList *list = &none;        ///< The device's, or none.
    std::vector<uint32_t> rows;               ///< Places in the list.
    std::map<QString, RecordingOrder> orders; ///< Those asked for so far, by key.
    std::vector<bool> matches;                ///< Of matchedText; empty for an empty one.
    QString matchedText;
};

DisplayedRecordings::DisplayedRecordings(QObject *parent)
    : QAbstractTableModel(parent)
    , d(std::make_unique<Private>())
{
}

DisplayedRecordings::~DisplayedRecordings() = default;

const QStringList &DisplayedRecordings::columnIdentifiers()
{
    static const QStringList identifiers = [] {
        QStringList made;
        for (const DisplayedColumn &column : displayedColumns)
            made.append(QString::fromLatin1(column.identifier));
        return made;
    }();
    return identifiers;
}

int DisplayedRecordings::columnOf(const QString &identifier)
{
    return static_cast<int>(columnIdentifiers().indexOf(identifier));
}

void DisplayedRecordings::refreshRecordings(std::shared_ptr<QWVeskDevice> device)
{
    beginResetModel();
    m_device.swap(device); // the one before goes at the end, when nothing of its list is in use any more
    d->setList(m_device ? m_device->list() : d->none);
    const QString key = m_sortDescriptor ? m_sortDescriptor->key : QString();
    d->rows = d->order(key).takes(!m_sortDescriptor || m_sortDescriptor->ascending, d->matchesOf(m_searchText));
    endResetModel();
}

void DisplayedRecordings::setSearchText(const QString &text)
{
    m_searchText = text;
    refreshRecordings(m_device);
}

void DisplayedRecordings::setSortDescriptor(const std::optional<SortDescriptor> &descriptor)
{
    m_sortDescriptor = descriptor;
    refreshRecordings(m_device);
}

SortDescriptor DisplayedRecordings::sortAfterClick(const QString &identifier) const
{
    return m_sortDescriptor && m_sortDescriptor->key == identifier ? m_sortDescriptor->reversed()
                                                                   : SortDescriptor{identifier, true};
}

const std::shared_ptr<QWVeskRecording> &DisplayedRecordings::recording(int row) const
{
    return d->list->recordings[d->rows[static_cast<size_t>(row)]];
}

DisplayedRecordings::Recordings DisplayedRecordings::recordings(const std::vector<int> &rows) const
{
    Recordings taken;
    taken.reserve(rows.size());
    for (const int row : rows)
        if (row >= 0 && row < rowCount())
            taken.push_back(recording(row));
    return taken;
}

DisplayedRecordings::NotedRows DisplayedRecordings::notedRows(const std::vector<int> &rows) const
{
    NotedRows noted{m_device, {}};
    noted.takes.reserve(rows.size());
    for (const int row : rows)
        if (row >= 0 && row < rowCount())
            noted.takes.push_back(d->rows[static_cast<size_t>(row)]);
    return noted;
}

std::vector<int> DisplayedRecordings::rowsOf(const NotedRows &noted) const
{
    if (noted.device != m_device)
        return {};
    std::vector<bool> isSought(d->list->recordings.size(), false);
    for (const quint32 take : noted.takes)
        isSought[take] = true;
    std::vector<int> rows;
    rows.reserve(noted.takes.size());
    for (size_t row = 0; row < d->rows.size(); ++row)
        if (isSought[d->rows[row]])
            rows.push_back(static_cast<int>(row));
    return rows;
}

int DisplayedRecordings::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(d->rows.size());
}

int DisplayedRecordings::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(displayedColumns.size());
}

QVariant DisplayedRecordings::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return {};
    return recording(index.row())->valueForKey(columnIdentifiers().at(index.column()));
}

QVariant DisplayedRecordings::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    if (role == QWTableColumn::IdentifierRole)
        return columnIdentifiers().at(section);
    return role == Qt::DisplayRole
               ? platform::localized(QString::fromLatin1(displayedColumns[static_cast<size_t>(section)].header))
               : QVariant();
}

} // namespace qw
