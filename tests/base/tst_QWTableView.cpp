#include "TableViewTest.h"
#include "fakes/QWTestMain.h"

#include <QAccessible>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QToolButton>
#include <QToolTip>

#include <limits>

namespace
{
QVariantMap stored(const QVariant &identifier, const QVariant &width)
{
    return {{"identifier", identifier}, {"width", width}};
}
} // namespace

class tst_QWTableView : public TableViewTest
{
    Q_OBJECT

private Q_SLOTS:
    void showsItsColumnsInTheirOrder();
    void showsTextsAsItsFormattersMakeThem();
    void columnsMayComeBeforeTheModel();
    void columnThatTheModelLacksShowsNothing();
    void aColumnIsThereOnce();
    void widthsAreInPoints();
    void stateComesBackAsItWas();
    void stateThatIsNoneChangesNothing_data();
    void stateThatIsNoneChangesNothing();
    void whatIsKnownOfAStateIsUsed_data();
    void whatIsKnownOfAStateIsUsed();
    void absurdWidthsAreBroughtWithinReason_data();
    void absurdWidthsAreBroughtWithinReason();
    void selectedRowsAscend();
    void selectsManyScatteredRowsAsFewRanges();
    void rowsThatThereAreNotAreNotSelected();
    void homeAndEndLeadToFirstAndLastRow();
    void returnIsLeftToTheWindow();
    void columnsStayWhenTheModelIsReset();
    void columnsFollowAModelThatChangesItsOwn();
    void modelMayGoFirst();
    void rowsAreAsHighAsTheFont();
    void textThatDoesNotFitIsToldAsItIs();
    void screenReaderHearsWhatShows();
};

void tst_QWTableView::showsItsColumnsInTheirOrder()
{
    QCOMPARE(m_table->shown(), (QStringList{"title", "length"}));
    QCOMPARE(_headerTitles(), (QStringList{"Title", "Length"}));
    m_table->addTableColumn(m_table->tableColumnForIdentifierWidth("note", 80));
    QCOMPARE(_headerTitles(), (QStringList{"Title", "Length", "Note"}));
    m_table->removeTableColumn("title");
    m_table->removeTableColumn("title");
    QCOMPARE(_headerTitles(), (QStringList{"Length", "Note"}));
}

void tst_QWTableView::showsTextsAsItsFormattersMakeThem()
{
    const QAbstractItemModel &shown = *m_table->model();
    QCOMPARE(shown.index(65, _section("length")).data().toString(), "1:05");
    QCOMPARE(shown.index(65, _section("title")).data().toString(), "title 65");
    QVERIFY(shown.index(0, _section("length")).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
    QVERIFY(shown.headerData(_section("length"), Qt::Horizontal, Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
    QVERIFY(!(shown.index(0, _section("title")).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight));
}

void tst_QWTableView::columnsMayComeBeforeTheModel()
{
    m_table = std::make_unique<TakesTable>();
    m_table->setColumnState(QVariantList{stored("size", 100), stored("title", 150)});
    m_table->setModel(m_model.get());
    QCOMPARE(_headerTitles(), (QStringList{"Size", "Title"}));
}

void tst_QWTableView::columnThatTheModelLacksShowsNothing()
{
    m_table->addTableColumn({.identifier = "colour", .title = "Colour", .width = 50});
    QCOMPARE(m_table->shown(), (QStringList{"title", "length", "colour"}));
    QCOMPARE(_headerTitles(), (QStringList{"Title", "Length"}));
}

void tst_QWTableView::aColumnIsThereOnce()
{
    m_table->addTableColumn(m_table->tableColumnForIdentifierWidth("title", 10));
    m_table->addTableColumn({});
    QCOMPARE(m_table->shown(), (QStringList{"title", "length"}));
    QCOMPARE(m_table->tableColumns().first().width, 150.0);
}

void tst_QWTableView::widthsAreInPoints()
{
    const double pixels = 150 * m_table->logicalDpiX() / 72.0;
    QCOMPARE(m_table->columnWidth(_section("title")), qRound(pixels));
}

void tst_QWTableView::stateComesBackAsItWas()
{
    m_table->addTableColumn(m_table->tableColumnForIdentifierWidth("note", 81.5));
    m_table->horizontalHeader()->moveSection(2, 0);
    m_table->horizontalHeader()->resizeSection(_section("title"), 333);
    const QVariantList state = m_table->columnState();

    TakesTable other;
    other.setModel(m_model.get());
    other.setColumnState(state);
    QCOMPARE(other.shown(), (QStringList{"note", "title", "length"}));
    QCOMPARE(other.columnWidth(_section("title")), 333);
    QCOMPARE(other.columnWidth(_section("note")), m_table->columnWidth(_section("note")));
    QCOMPARE(other.columnState(), state);
}

void tst_QWTableView::stateThatIsNoneChangesNothing_data()
{
    QTest::addColumn<QVariant>("state");
    QTest::newRow("nothing") << QVariant();
    QTest::newRow("a number") << QVariant(7);
    QTest::newRow("a text") << QVariant("title");
    QTest::newRow("data") << QVariant(QByteArray("\0\1\2", 3));
    QTest::newRow("a dictionary") << QVariant(stored("title", 10));
    QTest::newRow("no columns") << QVariant(QVariantList());
    QTest::newRow("numbers") << QVariant(QVariantList{1, 2, 3});
    QTest::newRow("texts") << QVariant(QVariantList{"title", "length"});
    QTest::newRow("unknown columns") << QVariant(QVariantList{stored("colour", 10), stored("", 10)});
    QTest::newRow("identifiers of other kinds") << QVariant(QVariantList{stored(1, 10), stored(QVariantList(), 1)});
    QTest::newRow("lists of lists") << QVariant(QVariantList{QVariantList{stored("title", 10)}});
}

void tst_QWTableView::stateThatIsNoneChangesNothing()
{
    QFETCH(QVariant, state);
    const QVariantList before = m_table->columnState();
    m_table->setColumnState(state);
    QCOMPARE(m_table->columnState(), before);
    QCOMPARE(_headerTitles(), (QStringList{"Title", "Length"}));
}

void tst_QWTableView::whatIsKnownOfAStateIsUsed_data()
{
    QTest::addColumn<QVariantList>("state");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("unknown ones left out")
        << QVariantList{stored("colour", 1), stored("title", 90), 7, stored("note", 50)}
        << QStringList{"title", "note"};
    QTest::newRow("doubled ones once") << QVariantList{stored("note", 50), stored("title", 90), stored("note", 70)}
                                       << QStringList{"note", "title"};
    QTest::newRow("without the title, which stays")
        << QVariantList{stored("note", 50), stored("size", 50)} << QStringList{"title", "note", "size"};
}

void tst_QWTableView::whatIsKnownOfAStateIsUsed()
{
    QFETCH(QVariantList, state);
    m_table->setColumnState(state);
    QTEST(m_table->shown(), "shown");
}

void tst_QWTableView::absurdWidthsAreBroughtWithinReason_data()
{
    QTest::addColumn<QVariant>("width");
    const double endless = std::numeric_limits<double>::infinity();
    QTest::newRow("none") << QVariant();
    QTest::newRow("nothing") << QVariant(0);
    QTest::newRow("negative") << QVariant(-62.0);
    QTest::newRow("tiny") << QVariant(1e-300);
    QTest::newRow("huge") << QVariant(1e300);
    QTest::newRow("endless") << QVariant(endless);
    QTest::newRow("less than endless") << QVariant(-endless);
    QTest::newRow("no number") << QVariant(std::numeric_limits<double>::quiet_NaN());
    QTest::newRow("the largest whole number") << QVariant(std::numeric_limits<qulonglong>::max());
    QTest::newRow("a text") << QVariant("62");
}

void tst_QWTableView::absurdWidthsAreBroughtWithinReason()
{
    QFETCH(QVariant, width);
    m_table->setColumnState(QVariantList{stored("title", width), stored("length", 60)});
    QCOMPARE(m_table->shown(), (QStringList{"title", "length"}));
    const int pixels = m_table->columnWidth(_section("title"));
    QVERIFY2(pixels >= 16 && pixels < 8000, qPrintable(QString::number(pixels)));
    m_table->setColumnState(m_table->columnState());
    QCOMPARE(m_table->columnWidth(_section("title")), pixels);
}

void tst_QWTableView::selectedRowsAscend()
{
    QSignalSpy told(m_table.get(), &QWTableView::selectionDidChange);
    QVERIFY(m_table->selectedRows().isEmpty());
    QItemSelectionModel &selection = *m_table->selectionModel();
    for (const int row : {70, 3, 4, 12})
        selection.select(m_table->model()->index(row, 1), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QCOMPARE(m_table->selectedRows(), (QList<int>{3, 4, 12, 70}));
    QCOMPARE(told.size(), 4);
}

void tst_QWTableView::selectsManyScatteredRowsAsFewRanges()
{
    m_table->selectRows({9, 1, 2, 2, 3, 50});
    QCOMPARE(m_table->selectedRows(), (QList<int>{1, 2, 3, 9, 50}));
    QCOMPARE(m_table->selectionModel()->selection().size(), 3);
    QCOMPARE(m_table->currentIndex().row(), 1);
    QVERIFY(m_table->selectionModel()->isRowSelected(50, {}));
    m_table->selectRows({8});
    QCOMPARE(m_table->selectedRows(), QList<int>{8});
}

void tst_QWTableView::rowsThatThereAreNotAreNotSelected()
{
    m_table->selectRows({-1, 99, 100, std::numeric_limits<int>::max()});
    QCOMPARE(m_table->selectedRows(), QList<int>{99});
    m_table->selectRows({});
    QVERIFY(m_table->selectedRows().isEmpty());
    TakesTable bare;
    bare.selectRows({1});
    QVERIFY(bare.selectedRows().isEmpty());
}

void tst_QWTableView::homeAndEndLeadToFirstAndLastRow()
{
    _show();
    QTest::keyClick(m_table.get(), Qt::Key_End);
    QCOMPARE(m_table->selectedRows(), QList<int>{99});
    QTest::keyClick(m_table.get(), Qt::Key_Home);
    QCOMPARE(m_table->selectedRows(), QList<int>{0});
    QTest::keyClick(m_table.get(), Qt::Key_End, Qt::ShiftModifier);
    QCOMPARE(m_table->selectedRows().size(), 100);
}

void tst_QWTableView::returnIsLeftToTheWindow()
{
    m_table->selectRows({1});
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, {});
    QCoreApplication::sendEvent(m_table.get(), &press);
    QVERIFY(!press.isAccepted());
}

void tst_QWTableView::columnsStayWhenTheModelIsReset()
{
    m_table->setColumnState(QVariantList{stored("note", 50), stored("title", 90)});
    m_model->setCount(7);
    m_model->setCount(0);
    QCOMPARE(_headerTitles(), (QStringList{"Note", "Title"}));
    QCOMPARE(m_table->model()->rowCount(), 0);
}

void tst_QWTableView::columnsFollowAModelThatChangesItsOwn()
{
    m_model->identifiers = {"title", "length"};
    m_model->setCount(5);
    QCOMPARE(_headerTitles(), (QStringList{"Title", "Length"}));
    QCOMPARE(m_table->model()->index(3, 0).data().toString(), "title 3");
    m_model->identifiers = {"length", "size", "title"};
    m_model->setCount(5);
    QCOMPARE(_headerTitles(), (QStringList{"Title", "Length"}));
    QCOMPARE(m_table->model()->index(3, 0).data().toString(), "0:03");
}

void tst_QWTableView::modelMayGoFirst()
{
    _show();
    m_model.reset();
    QVERIFY(m_table->selectedRows().isEmpty());
    QCOMPARE(m_table->shown(), (QStringList{"title", "length"}));
    m_table->grab();
}

void tst_QWTableView::rowsAreAsHighAsTheFont()
{
    const int before = m_table->rowHeight(0);
    QFont large = m_table->font();
    large.setPointSize(40);
    m_table->setFont(large);
    QVERIFY(m_table->rowHeight(0) > before);
    QVERIFY(m_table->rowHeight(0) >= QFontMetrics(large).height());
}

void tst_QWTableView::textThatDoesNotFitIsToldAsItIs()
{
    _show();
    m_model->identifiers = {"<b>a title that is long</b>", "title", "length"};
    m_model->setCount(3);
    m_table->addTableColumn({.identifier = m_model->identifiers.first(), .title = "Long", .width = 30});
    const auto tipAt = [&](int column) {
        const QPoint place = m_table->visualRect(m_table->model()->index(1, column)).center();
        QHelpEvent help(QEvent::ToolTip, place, m_table->viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(m_table->viewport(), &help);
        return QToolTip::text();
    };
    QCOMPARE(tipAt(0), "<span>&lt;b&gt;a title that is long&lt;/b&gt; 1</span>");
    tipAt(1);
    QTRY_VERIFY(!QToolTip::isVisible());
}

void tst_QWTableView::screenReaderHearsWhatShows()
{
    m_table->setSortIndicator("length", Qt::AscendingOrder);
    QAccessibleInterface *const list = QAccessible::queryAccessibleInterface(m_table.get());
    QVERIFY(list);
    QVERIFY(list->tableInterface());
    QCOMPARE(list->tableInterface()->cellAt(65, _section("length"))->text(QAccessible::Name), "1:05");
    const QAccessibleInterface *const header = list->child(_section("length") + 1);
    QCOMPARE(header->role(), QAccessible::ColumnHeader);
    QCOMPARE(header->text(QAccessible::Name), "Length, sorted ascending");
    QCOMPARE(_corner()->accessibleName(), "Columns");
}

QW_TEST_MAIN(tst_QWTableView)
#include "tst_QWTableView.moc"
