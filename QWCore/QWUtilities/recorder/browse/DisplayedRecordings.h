#pragma once

#include "QWUtilities/recorder/model/QWVeskDevice.h"
#include "QWUtilities/recorder/model/QWVeskRecording.h"
#include "SortDescriptor.h"

#include <QWUtilities/qwutilities_private.h>

#include <QAbstractTableModel>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace qw
{

/// The rows of the table of takes: those of one recorder, searched and sorted. Every change of these is a reset of the
/// model; notedRows() and rowsOf() carry a selection over it. A cell is QWVeskRecording::valueForKey() of its column's
/// identifier, of which the column's formatter makes a text. Holds the recorder whose takes it shows. Main thread.
class QWUTILITIES_TEST_EXPORT DisplayedRecordings : public QAbstractTableModel
{
    Q_OBJECT

public:
    using Recordings = std::vector<std::shared_ptr<QWVeskRecording>>;

    /// Identifiers of the columns, which are keys of a take, in their order: "title", "length", "fileSize", "channels",
    /// "quality", "creationDate", "modificationDate", "formats", "locked".
    static const QStringList &columnIdentifiers();

    /// Column of @p identifier, or -1.
    static int columnOf(const QString &identifier);

    /// Some takes of one recorder, whichever rows they are in.
    struct NotedRows
    {
        std::shared_ptr<QWVeskDevice> device;
        std::vector<quint32> takes; ///< Places in the recorder's list.
    };

    explicit DisplayedRecordings(QObject *parent = nullptr);
    ~DisplayedRecordings() override;

    /// refreshRecordings: the rows are the takes of @p device (null: none) as its list is now, of which those stay
    /// that match the search, in the order of the sort.
    void refreshRecordings(std::shared_ptr<QWVeskDevice> device);

    /// Shows takes only whose keywords hold @p text, neither case nor diacritics counting; "" shows all.
    void setSearchText(const QString &text);
    const QString &searchText() const { return m_searchText; }

    /// None, and a key that is no column, leave the recorder's order. Missing values come first, "not a number" is
    /// one; takes that are equal stay in the recorder's order, whichever direction is sorted in.
    void setSortDescriptor(const std::optional<SortDescriptor> &descriptor);
    const std::optional<SortDescriptor> &sortDescriptor() const { return m_sortDescriptor; }

    /// What a click on the header of the column @p identifier leads to: the present sort reversed where that is by this
    /// column, else ascending by it.
    SortDescriptor sortAfterClick(const QString &identifier) const;

    /// The recorder whose takes are shown, or null.
    const std::shared_ptr<QWVeskDevice> &device() const { return m_device; }

    /// The take in @p row, which must be one.
    const std::shared_ptr<QWVeskRecording> &recording(int row) const;

    /// Takes in @p rows, in the order of these; rows that are none are passed over.
    Recordings recordings(const std::vector<int> &rows) const;

    /// @{
    /// Notes what is in @p rows, and finds the rows in which these takes are now, ascending; those not shown are left
    /// out, of another recorder all.
    NotedRows notedRows(const std::vector<int> &rows) const;
    std::vector<int> rowsOf(const NotedRows &noted) const;
    /// @}

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    class Private;
    std::shared_ptr<QWVeskDevice> m_device;
    QString m_searchText;
    std::optional<SortDescriptor> m_sortDescriptor;
    std::unique_ptr<Private> d;
};

} // namespace qw
