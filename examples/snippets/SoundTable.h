#pragma once

#include <QWBase/tables/QWTableView.h>

class SoundTable : public QWTableView
{
    Q_OBJECT

public:
    explicit SoundTable(QWidget *parent = nullptr);
    ~SoundTable() override;

    /// Each column's header data has its identifier as QWTableColumn::IdentifierRole.
    void showSounds(QAbstractItemModel &sounds);

protected:
    QWTableColumn tableColumnForIdentifierWidth(const QString &identifier, double width) const override;
};
