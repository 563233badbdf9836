#pragma once

#include "TakesTable.h"

#include <QHeaderView>
#include <QMenu>
#include <QTest>
#include <QToolButton>

/// A table of a hundred takes, 600 by 300 pixels.
class TableViewTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        m_model = std::make_unique<TakesModel>(100);
        m_table = std::make_unique<TakesTable>();
        m_table->setModel(m_model.get());
        m_table->resize(600, 300);
    }

    void cleanup()
    {
        m_table.reset();
        m_model.reset();
    }

protected:
    void _show()
    {
        m_table->show();
        m_table->activateWindow();
        m_table->setFocus();
        QVERIFY(QTest::qWaitForWindowActive(m_table.get()));
    }

    /// As they stand from left to right.
    QStringList _headerTitles() const
    {
        const QHeaderView &header = *m_table->horizontalHeader();
        QStringList titles;
        for (int visual = 0; visual < header.count(); ++visual)
            if (const int section = header.logicalIndex(visual); !header.isSectionHidden(section))
                titles.append(m_table->model()->headerData(section, Qt::Horizontal).toString());
        return titles;
    }

    QRect _sectionPlace(const QString &identifier) const
    {
        const QHeaderView &header = *m_table->horizontalHeader();
        const int section = _section(identifier);
        return {header.sectionViewportPosition(section), 0, header.sectionSize(section), header.height()};
    }

    /// As the button does just before it opens.
    QMenu *_openCornerMenu() const
    {
        QMenu *const menu = _corner()->menu();
        Q_EMIT menu->aboutToShow();
        return menu;
    }

    int _section(const QString &identifier) const { return m_model->identifiers.indexOf(identifier); }
    QToolButton *_corner() const { return m_table->findChild<QToolButton *>("cornerButton"); }

    std::unique_ptr<TakesModel> m_model;
    std::unique_ptr<TakesTable> m_table;
};
