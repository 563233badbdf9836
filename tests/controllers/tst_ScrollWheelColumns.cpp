#include "ScrollWheelFixture.h"
#include "fakes/QWTestMain.h"

#include <QAccessible>
#include <QHeaderView>

namespace
{
QWScrollWheelManager &manager()
{
    return QWScrollWheelManager::defaultManager();
}

QTableView &table()
{
    return ScrollWheelFixture::table();
}

QString accessibleText(int row, int column)
{
    QAccessibleInterface *const view = QAccessible::queryAccessibleInterface(&table());
    QAccessibleInterface *const cell = view->tableInterface()->cellAt(row, column);
    return cell ? cell->text(QAccessible::Name) : QString();
}
} // namespace

/// What each column of the table shows, stores and tells.
class tst_ScrollWheelColumns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnsShowTheRecord_data();
    void columnsShowTheRecord();
    void columnsStoreEdits_data();
    void columnsStoreEdits();
    void modifiersToggleWhateverTheBoxSays();
    void otherColumnsShowNothing();
    void unknownActionShowsNoItem();
    void editsActAtOnce();
    void screenReaderIsToldTheCells();
    void columnsFitThePanel();
};

void tst_ScrollWheelColumns::columnsShowTheRecord_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<QVariant>("first");
    QTest::addColumn<QVariant>("second");
    QTest::newRow("axis") << "axis" << QVariant(1) << QVariant(0);
    QTest::newRow("command") << "command" << QVariant(true) << QVariant(false);
    QTest::newRow("option") << "option" << QVariant(false) << QVariant(true);
    QTest::newRow("shift") << "shift" << QVariant(true) << QVariant(false);
    QTest::newRow("control") << "control" << QVariant(false) << QVariant(true);
    QTest::newRow("caps lock") << "caps lock" << QVariant(true) << QVariant(false);
    QTest::newRow("action") << "action" << QVariant(1) << QVariant(0);
    QTest::newRow("reverse") << "reverse" << QVariant(false) << QVariant(true);
}

void tst_ScrollWheelColumns::columnsShowTheRecord()
{
    QFETCH(QString, column);
    const ScrollWheelFixture host;
    host.load({host.record(true, 0x130000, "scroll:"), host.record(false, 0xc0000, "zoom:", true)});
    QTEST(host.cell(column, 0), "first");
    QTEST(host.cell(column, 1), "second");
    QVERIFY(!host.cell(column, 2).isValid());
    QVERIFY(!host.cell(column, -1).isValid());
}

void tst_ScrollWheelColumns::columnsStoreEdits_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariantMap>("record"); // from an upright binding of "zoom:" without modifiers
    using Host = ScrollWheelFixture;
    QTest::newRow("axis, horizontal") << "axis" << QVariant(0) << Host::record(false, 0, "zoom:");
    QTest::newRow("axis, vertical") << "axis" << QVariant(1) << Host::record(true, 0, "zoom:");
    QTest::newRow("command") << "command" << QVariant(true) << Host::record(true, 0x100000, "zoom:");
    QTest::newRow("option") << "option" << QVariant(true) << Host::record(true, 0x80000, "zoom:");
    QTest::newRow("shift") << "shift" << QVariant(true) << Host::record(true, 0x20000, "zoom:");
    QTest::newRow("control") << "control" << QVariant(true) << Host::record(true, 0x40000, "zoom:");
    QTest::newRow("caps lock") << "caps lock" << QVariant(true) << Host::record(true, 0x10000, "zoom:");
    QTest::newRow("action") << "action" << QVariant(1) << Host::record(true, 0, "scroll:");
    QTest::newRow("action outside the menu") << "action" << QVariant(9) << Host::record(true, 0, "zoom:");
    QTest::newRow("reverse") << "reverse" << QVariant(true) << Host::record(true, 0, "zoom:", true);
    QTest::newRow("no column") << "colour" << QVariant(true) << Host::record(true, 0, "zoom:");
}

void tst_ScrollWheelColumns::columnsStoreEdits()
{
    QFETCH(QString, column);
    QFETCH(QVariant, value);
    QFETCH(QVariantMap, record);
    const ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:")});
    host.edit(column, value);
    QCOMPARE(manager().actions(), QVariantList{record});
}

void tst_ScrollWheelColumns::modifiersToggleWhateverTheBoxSays()
{
    const ScrollWheelFixture host;
    host.load({host.record(true, 0x20000, "zoom:")});
    host.edit("shift", true);
    QCOMPARE(host.cell("shift"), false);
    host.edit("shift", false);
    QCOMPARE(host.cell("shift"), true);
}

void tst_ScrollWheelColumns::otherColumnsShowNothing()
{
    const ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:")});
    for (const char *column : {"", "Axis", "modifiers", "vertical"})
        QVERIFY(!host.cell(column).isValid());
    const QAbstractItemModel &model = *table().model();
    for (const int section : {-1, model.columnCount()})
        QVERIFY(!model.headerData(section, Qt::Horizontal).isValid());
}

void tst_ScrollWheelColumns::unknownActionShowsNoItem()
{
    const ScrollWheelFixture host;
    host.load({host.record(true, 0, "fly:")});
    QCOMPARE(host.cell("action"), -1);
    QCOMPARE(table().model()->index(0, 6).data().toString(), "");
    QCOMPARE(manager().actions(), QVariantList{host.record(true, 0, "fly:")}); // kept for a host that knows it
}

void tst_ScrollWheelColumns::editsActAtOnce()
{
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:")});
    host.edit("shift", true);
    host.edit("reverse", true);
    host.edit("action", 1);
    QVERIFY(!host.send(host.event(0, 1)));
    QVERIFY(host.send(host.event(0, 1, 0x20000)));
    QCOMPARE(host.target.sent.at(0).first, "scroll:");
    QCOMPARE(host.target.sent.at(0).second, -1.0);
}

void tst_ScrollWheelColumns::screenReaderIsToldTheCells()
{
    const ScrollWheelFixture host;
    host.open({host.record(false, 0x100000, "scroll:")});
    const QStringList told{"Axis: Horizontal", "Ctrl: on",  "Alt: off",       "Shift: off",
                           "Super: off",       "Caps: off", "Action: Scroll", "Reverse: off"};
    for (int column = 0; column < told.size(); ++column)
        QCOMPARE(accessibleText(0, column), told[column]);
    QVERIFY(!table().accessibleName().isEmpty());
    QVERIFY(!host.removeActionButton()->accessibleName().isEmpty());
    QCOMPARE(table().model()->headerData(7, Qt::Horizontal, Qt::AccessibleTextRole).toString(), "Reverse");
}

void tst_ScrollWheelColumns::columnsFitThePanel()
{
    const ScrollWheelFixture host;
    host.open({host.record(true, 0, "zoom:")});
    const QHeaderView &header = *table().horizontalHeader();
    QCOMPARE(header.length(), table().viewport()->width());
    QVERIFY(header.sectionSize(6) >= 90); // room for an action's title
    for (int column = 0; column < 6; ++column)
        QVERIFY(header.sectionSize(column) >= header.sectionSizeHint(column));
}

QW_TEST_MAIN(tst_ScrollWheelColumns)
#include "tst_ScrollWheelColumns.moc"
