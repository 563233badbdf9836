#include "TakesTable.h"
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

QStringList titlesOf(const QMenu &menu)
{
    QStringList titles;
    for (const QAction *const item : menu.actions())
        titles.append((item->isChecked() ? "+" : "-") + item->text());
    return titles;
}
} // namespace

class tst_QWTableView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
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
    void cornerMenuShowsAndHidesColumns();
    void columnComesBackAsWideAsItWas();
    void newColumnFitsWhatItHolds();
    void cornerMenuOpensByKeyboard_data();
    void cornerMenuOpensByKeyboard();
    void headerClickTellsTheColumn();
    void rightClickOnAHeaderSortsNothing();
    void headerShowsBySortedColumn();
    void columnsMoveByDragging();
    void columnsMoveByKeyboard();
    void headerIsClickedByKeyboard();
    void headerMenuMovesAndHides();
    void tabLeadsFromRowsToHeaderToCorner();
    void downLeadsFromTheHeaderToTheRows();
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

private:
    void _show();
    QStringList _headerTitles() const;
    QRect _sectionPlace(const QString &identifier) const;
    int _section(const QString &identifier) const { return m_model->identifiers.indexOf(identifier); }
    QToolButton *_corner() const { return m_table->findChild<QToolButton *>("cornerButton"); }
    QMenu *_openCornerMenu() const;

    std::unique_ptr<TakesModel> m_model;
    std::unique_ptr<TakesTable> m_table;
};

void tst_QWTableView::init()
{
    m_model = std::make_unique<TakesModel>(100);
    m_table = std::make_unique<TakesTable>();
    m_table->setModel(m_model.get());
    m_table->resize(600, 300);
}

void tst_QWTableView::cleanup()
{
    m_table.reset();
    m_model.reset();
}

void tst_QWTableView::_show()
{
    m_table->show();
    m_table->activateWindow();
    m_table->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(m_table.get()));
}

/// As they stand from left to right.
QStringList tst_QWTableView::_headerTitles() const
{
    const QHeaderView &header = *m_table->horizontalHeader();
    QStringList titles;
    for (int visual = 0; visual < header.count(); ++visual)
        if (const int section = header.logicalIndex(visual); !header.isSectionHidden(section))
            titles.append(m_table->model()->headerData(section, Qt::Horizontal).toString());
    return titles;
}

QRect tst_QWTableView::_sectionPlace(const QString &identifier) const
{
    const QHeaderView &header = *m_table->horizontalHeader();
    const int section = _section(identifier);
    return {header.sectionViewportPosition(section), 0, header.sectionSize(section), header.height()};
}

/// As the button does just before it opens.
QMenu *tst_QWTableView::_openCornerMenu() const
{
    QMenu *const menu = _corner()->menu();
    Q_EMIT menu->aboutToShow();
    return menu;
}

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

void tst_QWTableView::cornerMenuShowsAndHidesColumns()
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

void tst_QWTableView::columnComesBackAsWideAsItWas()
{
    m_table->horizontalHeader()->resizeSection(_section("length"), 97);
    _openCornerMenu()->actions().at(0)->trigger();
    QVERIFY(m_table->isColumnHidden(_section("length")));
    _openCornerMenu()->actions().at(0)->trigger();
    QCOMPARE(m_table->columnWidth(_section("length")), 97);
}

void tst_QWTableView::newColumnFitsWhatItHolds()
{
    _show();
    _openCornerMenu()->actions().at(2)->trigger();
    const int width = m_table->columnWidth(_section("note"));
    QVERIFY(width >= m_table->fontMetrics().horizontalAdvance("note 8"));
    QVERIFY(width < 200);
}

void tst_QWTableView::cornerMenuOpensByKeyboard_data()
{
    QTest::addColumn<Qt::Key>("key");
    for (const auto &[name, key] :
         {std::pair{"Space", Qt::Key_Space}, {"Return", Qt::Key_Return}, {"Down", Qt::Key_Down}})
        QTest::newRow(name) << key;
}

void tst_QWTableView::cornerMenuOpensByKeyboard()
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

void tst_QWTableView::headerClickTellsTheColumn()
{
    _show();
    QSignalSpy clicked(m_table.get(), &QWTableView::didClickTableColumn);
    QTest::mouseClick(m_table->horizontalHeader()->viewport(), Qt::LeftButton, {}, _sectionPlace("length").center());
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.at(0).at(0).toString(), "length");
    QVERIFY(m_table->selectedRows().isEmpty());
}

void tst_QWTableView::rightClickOnAHeaderSortsNothing()
{
    _show();
    QSignalSpy clicked(m_table.get(), &QWTableView::didClickTableColumn);
    QTest::mouseClick(m_table->horizontalHeader()->viewport(), Qt::RightButton, {}, _sectionPlace("length").center());
    QCOMPARE(clicked.size(), 0);
}

void tst_QWTableView::headerShowsBySortedColumn()
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

void tst_QWTableView::columnsMoveByDragging()
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

void tst_QWTableView::columnsMoveByKeyboard()
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

void tst_QWTableView::headerIsClickedByKeyboard()
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

void tst_QWTableView::headerMenuMovesAndHides()
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

void tst_QWTableView::tabLeadsFromRowsToHeaderToCorner()
{
    _show();
    QTest::keyClick(m_table.get(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_table->horizontalHeader());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), _corner());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_table.get());
}

void tst_QWTableView::downLeadsFromTheHeaderToTheRows()
{
    _show();
    m_table->horizontalHeader()->setFocus();
    QTest::keyClick(m_table->horizontalHeader(), Qt::Key_Down);
    QCOMPARE(QApplication::focusWidget(), m_table.get());
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
