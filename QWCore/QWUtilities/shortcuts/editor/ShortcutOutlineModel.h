#pragma once

#include "QWUtilities/shortcuts/QWShortcutGroup.h"

#include <QWUtilities/qwutilities_private.h>

#include <QAbstractItemModel>

#include <memory>
#include <vector>

namespace qw
{

/// Groups and, below them, their shortcuts. Setting the check state switches a shortcut, or all of a group, on or off.
class QWUTILITIES_TEST_EXPORT ShortcutOutlineModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column
    {
        Name,
        Enabled,
        Shortcut,
        ColumnCount
    };

    enum Role
    {
        KeycapsRole = Qt::UserRole ///< Of a shortcut's key: one text a keycap.
    };

    using Groups = std::vector<std::shared_ptr<QWShortcutGroup>>;

    explicit ShortcutOutlineModel(QObject *parent = nullptr);
    ~ShortcutOutlineModel() override;

    /// The same groups with the same members are only shown anew; others reset the model.
    void setGroups(const Groups &groups);

    /// Null for a row of the other kind.
    std::shared_ptr<QWShortcut> shortcutAt(const QModelIndex &index) const;
    std::shared_ptr<QWShortcutGroup> groupAt(const QModelIndex &index) const;

    void setEnabledAt(const QModelIndex &index, bool enabled);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    /// A group as it was when it was set; its members may change behind the model.
    struct Row
    {
        std::shared_ptr<QWShortcutGroup> group;
        QWShortcutGroup::Shortcuts shortcuts;

        bool operator==(const Row &) const = default;
    };

    void _showAnew(int firstGroup, int lastGroup);
    QVariant _groupData(const QWShortcutGroup &group, int column, int role) const;
    QVariant _shortcutData(const QWShortcut &shortcut, int column, int role) const;

    std::vector<Row> m_rows;
};

} // namespace qw
