#pragma once

#include "DeviceHierarchy.h"

#include <QIcon>
#include <QTreeView>

namespace qw
{

/// The source list of recorders. Its group is never collapsed, and one recorder is always selected while there is one.
class DeviceOutline : public QTreeView
{
    Q_OBJECT

public:
    explicit DeviceOutline(QWidget *parent = nullptr);
    ~DeviceOutline() override;

    /// Drawn before the recorders' names.
    void setDeviceImage(const QIcon &image);

    /// Shows these recorders, none selected.
    void setDevices(const DeviceHierarchy::Devices &devices);

    /// Selects the recorder's row; none for null.
    void select(const QWVeskDevice *device);

    DeviceHierarchy &hierarchy() { return m_hierarchy; }

Q_SIGNALS:
    /// outlineViewSelectionDidChange: by the user, or by select() and setDevices().
    void selectionDidChange(const std::shared_ptr<QWVeskDevice> &device);

protected:
    void focusInEvent(QFocusEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &item, const QEvent *event) const override;

private:
    DeviceHierarchy m_hierarchy;
};

} // namespace qw
