#include "TableViewTest.h"
#include "fakes/QWTestMain.h"

#include <QSignalSpy>
#include <QTimer>

namespace
{
QStringList titlesOf(const QMenu &menu)
{
    QStringList titles;
    for (const QAction *const item : menu.actions())
        titles.append((item->isChecked() ? "+" : "-") + item->text());
    return titles;
}
} // namespace

/// The header of a table and the menu in its corner, by mouse and keyboard.
class tst_QWTableViewHeader : public TableViewTest
{
    Q_OBJECT

private Q_SLOTS:
    void headerClickTellsTheColumn();
    void rightClickOnAHeaderSortsNothing();
    void headerShowsBySortedColumn();
    void columnsMoveByDragging();
    void columnsMoveByKeyboard();
    void headerIsClickedByKeyboard();
    void headerMenuMovesAndHides();
    void tabLeadsFromRowsToHeaderToCorner();
    void downLeadsFromTheHeaderToTheRows();
    void cornerMenuShowsAndHidesColumns();
    void columnComesBackAsWideAsItWas();
    void newColumnFitsWhatItHolds();
    void cornerMenuOpensByKeyboard_data();
    void cornerMenuOpensByKeyboard();
};

void tst_QWTableViewHeader::headerClickTellsTheColumn()
{
    _show();
    QSignalSpy clicked(m_table.get(), &QWTableView::didClickTableColumn);
    QTest::mouseClick(m_table->horizontalHeader()->viewport(), Qt::LeftButton, {}, _sectionPlace("length").center());
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.at(0).at(0).toString(), "length");
    QVERIFY(m_table->selectedRows().isEmpty());
}

void tst_QWTableViewHeader::rightClickOnAHeaderSortsNothing()
{
    _show();
    QSignalSpy clicked(m_table.get(), &QWTableView::didClickTableColumn);
    QTest::mouseClick(m_table->horizontalHeader()->viewport(), Qt::RightButton, {}, _sectionPlace("length").center());
    QCOMPARE(clicked.size(), 0);
}

void tst_QWTableViewHeader::headerShowsBySortedColumn()
{
    const QHeaderView &header = *m_table->horizontalHeader();
    QVERIFY(!header.isSortIndicatorShown());
    m_table->setSortIndicator("length", Qt::DescendingOrder);
    QVERIFY(header.isSortIndicatorShown());
    QCOMPARE(header.sortIndicatorSection(), _section("length"));
    QCOMPARE(header.sortIndicatorOrder(), Qt::DescendingOrder);
    const auto spoken = [&](const char *identifier) {
        return m_table->model()->headerData(_section(identifier), Qt::Horizontal, Qt::AccessibleTextRole).toString();
    };
    QCOMPARE(spoken("length"), "Length, sorted descending");
    QCOMPARE(spoken("title"), "Title");
    m_table->setSortIndicator("", Qt::AscendingOrder);
    QVERIFY(!header.isSortIndicatorShown());
    QCOMPARE(spoken("length"), "Length");
}

void tst_QWTableViewHeader::columnsMoveByDragging()
{
    _show();
    QSignalSpy changed(m_table.get(), &QWTableView::columnsDidChange);
    QWidget *const viewport = m_table->horizontalHeader()->viewport();
    const QPoint from = _sectionPlace("length").center();
    const QPoint to = _sectionPlace("title").topLeft() + QPoint(10, 5);
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    for (int step = 1; step <= 10; ++step)
        QTest::mouseMove(viewport, from + (to - from) * step / 10);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);
    QCOMPARE(m_table->shown(), (QStringList{"length", "title"}));
    QVERIFY(!changed.isEmpty());
}

void tst_QWTableViewHeader::columnsMoveByKeyboard()
{
    _show();
    m_table->addTableColumn(m_table->tableColumnForIdentifierWidth("note", 80));
    QHeaderView *const header = m_table->horizontalHeader();
    header->setFocus();
    QTest::keyClick(header, Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(m_table->shown(), (QStringList{"length", "title", "note"}));
    QTest::keyClick(header, Qt::Key_Right, Qt::ControlModifier);
    QTest::keyClick(header, Qt::Key_Right, Qt::ControlModifier); // at the end
    QCOMPARE(m_table->shown(), (QStringList{"length", "note", "title"}));
    QTest::keyClick(header, Qt::Key_Left);
    QTest::keyClick(header, Qt::Key_Left, Qt::ControlModifier);
    QCOMPARE(m_table->shown(), (QStringList{"note", "length", "title"}));
}

void tst_QWTableViewHeader::headerIsClickedByKeyboard()
{
    _show();
    QSignalSpy clicked(m_table.get(), &QWTableView::didClickTableColumn);
    QHeaderView *const header = m_table->horizontalHeader();
    header->setFocus();
    QTest::keyClick(header, Qt::Key_Space);
    QTest::keyClick(header, Qt::Key_Right);
    QTest::keyClick(header, Qt::Key_Return);
    QTest::keyClick(header, Qt::Key_Right); // no further one
    QTest::keyClick(header, Qt::Key_Enter, Qt::KeypadModifier);
    QStringList columns;
    for (const QList<QVariant> &call : clicked)
        columns.append(call.at(0).toString());
    QCOMPARE(columns, (QStringList{"title", "length", "length"}));
}

void tst_QWTableViewHeader::headerMenuMovesAndHides()
{
    _show();
    QHeaderView *const header = m_table->horizontalHeader();
    header->setFocus();
    QContextMenuEvent request(QContextMenuEvent::Keyboard, {}, {});
    QCoreApplication::sendEvent(header, &request);
    QMenu *const menu = m_table->findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(menu);
    QVERIFY(menu->isVisible());
    QCOMPARE(titlesOf(*menu),
             (QStringList{"-Sort by “Title”", "-Move Left", "-Move Right", "-", "+Length && More", "-Size", "-Note"}));
    QVERIFY(!menu->actions().at(1)->isEnabled());
    menu->actions().at(2)->trigger();
    QCOMPARE(m_table->shown(), (QStringList{"length", "title"}));
    menu->actions().at(4)->trigger();
    QCOMPARE(m_table->shown(), (QStringList{"title"}));
    menu->close();
}

void tst_QWTableViewHeader::tabLeadsFromRowsToHeaderToCorner()
{
    _show();
    QTest::keyClick(m_table.get(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_table->horizontalHeader());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), _corner());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_table.get());
}

void tst_QWTableViewHeader::downLeadsFromTheHeaderToTheRows()
{
    _show();
    m_table->horizontalHeader()->setFocus();
    QTest::keyClick(m_table->horizontalHeader(), Qt::Key_Down);
    QCOMPARE(QApplication::focusWidget(), m_table.get());
}

void tst_QWTableViewHeader::cornerMenuShowsAndHidesColumns()
{
    QMenu *menu = _openCornerMenu();
    QCOMPARE(titlesOf(*menu), (QStringList{"+Length && More", "-Size", "-Note"}));
    menu->actions().at(2)->trigger();
    QCOMPARE(m_table->shown(), (QStringList{"title", "length", "note"}));
    menu = _openCornerMenu();
    QCOMPARE(titlesOf(*menu), (QStringList{"+Length && More", "-Size", "+Note"}));
    menu->actions().at(0)->trigger();
    QCOMPARE(m_table->shown(), (QStringList{"title", "note"}));
    QCOMPARE(_headerTitles(), (QStringList{"Title", "Note"}));
}

void tst_QWTableViewHeader::columnComesBackAsWideAsItWas()
{
    m_table->horizontalHeader()->resizeSection(_section("length"), 97);
    _openCornerMenu()->actions().at(0)->trigger();
    QVERIFY(m_table->isColumnHidden(_section("length")));
    _openCornerMenu()->actions().at(0)->trigger();
    QCOMPARE(m_table->columnWidth(_section("length")), 97);
}

void tst_QWTableViewHeader::newColumnFitsWhatItHolds()
{
    _show();
    _openCornerMenu()->actions().at(2)->trigger();
    const int width = m_table->columnWidth(_section("note"));
    QVERIFY(width >= m_table->fontMetrics().horizontalAdvance("note 8"));
    QVERIFY(width < 200);
}

void tst_QWTableViewHeader::cornerMenuOpensByKeyboard_data()
{
    QTest::addColumn<Qt::Key>("key");
    for (const auto &[name, key] :
         {std::pair{"Space", Qt::Key_Space}, {"Return", Qt::Key_Return}, {"Down", Qt::Key_Down}})
        QTest::newRow(name) << key;
}

void tst_QWTableViewHeader::cornerMenuOpensByKeyboard()
{
    QFETCH(Qt::Key, key);
    _show();
    _corner()->setFocus();
    QMenu *const menu = _corner()->menu();
    connect(menu, &QMenu::aboutToShow, this, [menu] { // which comes back when the menu is closed
        QTimer::singleShot(0, menu, [menu] {
            menu->setActiveAction(menu->actions().first());
            QTest::keyClick(menu, Qt::Key_Return);
        });
    });
    QTest::keyClick(_corner(), key);
    QTRY_COMPARE(m_table->shown(), QStringList{"title"});
}

QW_TEST_MAIN(tst_QWTableViewHeader)
#include "tst_QWTableViewHeader.moc"
