#pragma once

#include "QWUtilities/recorder/model/QWVeskDevice.h"

#include <QAbstractItemModel>

#include <memory>
#include <vector>

namespace qw
{

/// The outline's items: one group, "DEVICES", with the recorders below it as they were when they were shown last.
class DeviceHierarchy : public QAbstractItemModel
{
    Q_OBJECT

public:
    using Devices = std::vector<std::shared_ptr<QWVeskDevice>>;

    explicit DeviceHierarchy(QObject *parent = nullptr);
    ~DeviceHierarchy() override;

    void setDevices(const Devices &devices);

    /// Nothing where @p former is not shown. Items stay as they are.
    void replaceDevice(const QWVeskDevice &former, const std::shared_ptr<QWVeskDevice> &device);

    QModelIndex group() const { return index(0, 0); }
    bool isGroupItem(const QModelIndex &item) const; ///< outlineView:isGroupItem:

    /// Null for the group and for no item.
    std::shared_ptr<QWVeskDevice> deviceAt(const QModelIndex &item) const;

    /// No item for one that is not shown.
    QModelIndex itemOf(const QWVeskDevice *device) const;

    QModelIndex index(int row, int column,
                      const QModelIndex &parent = {}) const override; ///< outlineView:child:ofItem:
    QModelIndex parent(const QModelIndex &item) const override;
    int rowCount(const QModelIndex &item = {}) const override; ///< outlineView:numberOfChildrenOfItem:
    int columnCount(const QModelIndex &item = {}) const override;
    QVariant data(const QModelIndex &item, int role) const override; ///< outlineView:objectValueForTableColumn:byItem:
    Qt::ItemFlags flags(const QModelIndex &item) const override;     ///< outlineView:shouldSelectItem:

private:
    Devices m_contents;
};

} // namespace qw
