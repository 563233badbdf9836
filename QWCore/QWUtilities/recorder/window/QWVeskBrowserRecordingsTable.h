#pragma once

#include <QWBase/tables/QWTableView.h>
#include <QWUtilities/qwutilities_private.h>

/// The table of recordings: which columns there are, how they look, and which show at first.
class QWUTILITIES_TEST_EXPORT QWVeskBrowserRecordingsTable : public QWTableView
{
    Q_OBJECT

public:
    explicit QWVeskBrowserRecordingsTable(QWidget *parent = nullptr);
    ~QWVeskBrowserRecordingsTable() override;

    /// The corner's menu, and the columns that show unless a stored state says otherwise.
    void awakeFromNib();

    QWTableColumn tableColumnForIdentifierWidth(const QString &identifier, double width) const override;
};
