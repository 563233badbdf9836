#include "DeviceHierarchy.h"

#include <QWPlatform/foundation/Localization.h>

#include <algorithm>

namespace qw
{

namespace
{
constexpr quintptr groupItemId = 0;
constexpr quintptr deviceItemId = 1;
} // namespace

DeviceHierarchy::DeviceHierarchy(QObject *parent)
    : QAbstractItemModel(parent)
{
}

DeviceHierarchy::~DeviceHierarchy() = default;

void DeviceHierarchy::setDevices(const Devices &devices)
{
    beginResetModel();
    m_contents = devices;
    endResetModel();
}

void DeviceHierarchy::replaceDevice(const QWVeskDevice &former, const std::shared_ptr<QWVeskDevice> &device)
{
    const QModelIndex item = itemOf(&former);
    if (item.isValid())
        m_contents[static_cast<std::size_t>(item.row())] = device;
}

bool DeviceHierarchy::isGroupItem(const QModelIndex &item) const
{
    return item.isValid() && item.internalId() == groupItemId;
}

std::shared_ptr<QWVeskDevice> DeviceHierarchy::deviceAt(const QModelIndex &item) const
{
    return item.isValid() && !isGroupItem(item) ? m_contents[static_cast<std::size_t>(item.row())] : nullptr;
}

QModelIndex DeviceHierarchy::itemOf(const QWVeskDevice *device) const
{
    const auto found = std::find_if(m_contents.begin(), m_contents.end(),
                                    [device](const auto &other) { return other.get() == device; });
    return found == m_contents.end() ? QModelIndex() : index(int(found - m_contents.begin()), 0, group());
}

QModelIndex DeviceHierarchy::index(int row, int column, const QModelIndex &parent) const
{
    const bool isThere = column == 0 && row >= 0 && row < rowCount(parent);
    return isThere ? createIndex(row, column, parent.isValid() ? deviceItemId : groupItemId) : QModelIndex();
}

QModelIndex DeviceHierarchy::parent(const QModelIndex &item) const
{
    return item.isValid() && !isGroupItem(item) ? group() : QModelIndex();
}

int DeviceHierarchy::rowCount(const QModelIndex &item) const
{
    if (!item.isValid())
        return 1;
    return isGroupItem(item) ? static_cast<int>(m_contents.size()) : 0;
}

int DeviceHierarchy::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant DeviceHierarchy::data(const QModelIndex &item, int role) const
{
    if (!item.isValid() || role != Qt::DisplayRole)
        return {};
    const auto device = deviceAt(item);
    return device ? device->name() : platform::localized("DEVICES");
}

Qt::ItemFlags DeviceHierarchy::flags(const QModelIndex &item) const
{
    const bool isDevice = item.isValid() && !isGroupItem(item);
    return isDevice ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

} // namespace qw
