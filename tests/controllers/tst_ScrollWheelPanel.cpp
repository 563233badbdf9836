#include "ScrollWheelFixture.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>

#include <QMenu>
#include <QTableView>

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

QPoint middleOf(int row, int column)
{
    return table().visualRect(table().model()->index(row, column)).center();
}

void click(int row, int column)
{
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, middleOf(row, column));
}

/// The menu that a pop-up cell has opened, or null.
QMenu *openMenu()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}
} // namespace

/// The panel worked by mouse and keyboard.
class tst_ScrollWheelPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void popUpsHoldTheirItems();
    void missingActionsGiveAnEmptyMenu_data();
    void missingActionsGiveAnEmptyMenu();
    void addAppendsTheUsualRecord();
    void removeTakesTheSelectedRow();
    void removeIsEnabledWithASelection();
    void clickTogglesABox();
    void doubleClickTogglesTwice();
    void clickOpensAPopUp();
    void keysReachEveryCell();
    void tabGoesThroughARowAndOn();
    void emptyTableIsPassedByTab();
    void incompleteInterfaceKeepsTheBindings_data();
    void incompleteInterfaceKeepsTheBindings();
};

void tst_ScrollWheelPanel::popUpsHoldTheirItems()
{
    const ScrollWheelFixture host;
    host.system.addHostResource("en.lproj/Localizable.strings", "\"Horizontal\" = \"Across\";");
    host.ship({host.record(true, 0, "zoom:")});
    host.offer({QVariantMap{{"title", "Zoom & Scroll"}, {"action", "zoom:"}}, "text",
                QVariantMap{{"title", "Level"}, {"action", "level:"}}, QVariantMap{}});
    host.load();
    const auto titles = [](const QMenu *menu) {
        QStringList all;
        for (const QAction *const item : menu->actions())
            all += platform::titleOf(*item);
        return all;
    };
    QWScrollWheelManager::openPanel();
    click(0, 0);
    QTRY_VERIFY(openMenu());
    QCOMPARE(titles(openMenu()), QStringList({"Across", "Vertical"}));
    openMenu()->close();
    click(0, 6);
    QTRY_VERIFY(openMenu());
    QCOMPARE(titles(openMenu()), QStringList({"Zoom & Scroll", "Level", ""}));
    QCOMPARE(openMenu()->actions().at(1)->property("representedObject").toString(), "level:");
    openMenu()->close();
}

void tst_ScrollWheelPanel::missingActionsGiveAnEmptyMenu_data()
{
    QTest::addColumn<QByteArray>("resource");
    QTest::newRow("broken") << QByteArray("<plist><array>");
    QTest::newRow("no array") << QByteArray("<plist version=\"1.0\"><dict/></plist>");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("no entry") << QByteArray("<plist version=\"1.0\"><array/></plist>");
}

void tst_ScrollWheelPanel::missingActionsGiveAnEmptyMenu()
{
    QFETCH(QByteArray, resource);
    const ScrollWheelFixture host;
    host.system.addHostResource("scrollWheelActions.xml", resource);
    host.system.addHostResource("scrollWheelActionDefaults.xml", resource);
    host.load();
    QVERIFY(manager().actions().isEmpty());
    manager().addAction();
    QVERIFY(!manager().actions().at(0).toMap().contains("action"));
    QCOMPARE(host.cell("action"), -1);
    QWScrollWheelManager::openPanel();
    click(0, 6); // an empty menu, which does not show
    QVERIFY(!openMenu());
}

void tst_ScrollWheelPanel::addAppendsTheUsualRecord()
{
    const ScrollWheelFixture host;
    host.open({host.record(false, 0x20000, "scroll:")});
    QTest::mouseClick(manager().panel()->findChild<QAbstractButton *>("addActionButton"), Qt::LeftButton);
    QCOMPARE(table().model()->rowCount(), 2);
    QCOMPARE(manager().actions().at(1).toMap(), host.record(true, 0, "zoom:"));
}

void tst_ScrollWheelPanel::removeTakesTheSelectedRow()
{
    const ScrollWheelFixture host;
    host.open({host.record(true, 1, "a:"), host.record(true, 2, "b:"), host.record(true, 3, "c:")});
    table().selectRow(1);
    QTest::mouseClick(host.removeActionButton(), Qt::LeftButton);
    QCOMPARE(manager().actions(), QVariantList({host.record(true, 1, "a:"), host.record(true, 3, "c:")}));
    table().clearSelection();
    QTest::mouseClick(host.removeActionButton(), Qt::LeftButton);
    manager().removeAction();
    QCOMPARE(table().model()->rowCount(), 2);
}

void tst_ScrollWheelPanel::removeIsEnabledWithASelection()
{
    const ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:"), host.record(true, 1, "zoom:")});
    QVERIFY(!host.removeActionButton()->isEnabled());
    table().selectRow(1);
    QVERIFY(host.removeActionButton()->isEnabled());
    table().clearSelection();
    QVERIFY(!host.removeActionButton()->isEnabled());
    while (table().model()->rowCount() > 0) {
        table().selectRow(0);
        manager().removeAction();
    }
    QVERIFY(!host.removeActionButton()->isEnabled());
}

void tst_ScrollWheelPanel::clickTogglesABox()
{
    const ScrollWheelFixture host;
    host.open({host.record(true, 0, "zoom:")});
    click(0, 3);
    QCOMPARE(manager().actions().at(0).toMap().value("modifiers").toInt(), 0x20000);
    click(0, 7);
    QCOMPARE(manager().actions().at(0).toMap().value("reverse"), true);
    QTest::mouseClick(table().viewport(), Qt::RightButton, {}, middleOf(0, 7));
    QCOMPARE(manager().actions().at(0).toMap().value("reverse"), true);
}

void tst_ScrollWheelPanel::doubleClickTogglesTwice()
{
    const ScrollWheelFixture host;
    host.open({host.record(true, 0, "zoom:")});
    click(0, 3);
    QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, middleOf(0, 3));
    QCOMPARE(host.cell("shift"), true); // three clicks in all: QTest's double click is a second pair
}

void tst_ScrollWheelPanel::clickOpensAPopUp()
{
    const ScrollWheelFixture host;
    host.open({host.record(true, 0, "zoom:"), host.record(true, 0, "zoom:")});
    click(1, 0);
    QTRY_VERIFY(openMenu());
    QCOMPARE(openMenu()->actions().at(1)->isChecked(), true);
    QTest::keyClick(openMenu(), Qt::Key_Up);
    QTest::keyClick(openMenu(), Qt::Key_Return);
    QCOMPARE(host.cell("axis", 0), 1);
    QCOMPARE(host.cell("axis", 1), 0);
}

void tst_ScrollWheelPanel::keysReachEveryCell()
{
    const ScrollWheelFixture host;
    host.open({host.record(true, 0, "zoom:")});
    QVERIFY(QTest::qWaitForWindowActive(manager().panel()));
    table().setFocus();
    table().setCurrentIndex(table().model()->index(0, 0));
    for (int column = 0; column < 8; ++column) {
        QCOMPARE(table().currentIndex().column(), column);
        QTest::keyClick(&table(), Qt::Key_Space);
        if (column == 0 || column == 6) {
            QTRY_VERIFY(openMenu());
            QTest::keyClick(openMenu(), column == 0 ? Qt::Key_Up : Qt::Key_Down);
            QTest::keyClick(openMenu(), Qt::Key_Return);
            QTRY_VERIFY(!openMenu());
        }
        QTest::keyClick(&table(), Qt::Key_Right);
    }
    QCOMPARE(manager().actions(), QVariantList{host.record(false, 0x1f0000, "scroll:", true)});
    table().setCurrentIndex(table().model()->index(0, 0));
    QTest::keyClick(&table(), Qt::Key_F2);
    QTRY_VERIFY(openMenu());
    QTest::keyClick(openMenu(), Qt::Key_Escape);
    QCOMPARE(host.cell("axis"), 0);
}

/// Where arrows to the sides are shortcuts, nothing else reaches every cell.
void tst_ScrollWheelPanel::tabGoesThroughARowAndOn()
{
    const ScrollWheelFixture host;
    host.open({host.record(true, 0, "zoom:"), host.record(true, 0, "zoom:")});
    QVERIFY(QTest::qWaitForWindowActive(manager().panel()));
    table().setFocus();
    table().setCurrentIndex(table().model()->index(1, 0));
    for (int column = 0; column < 8; ++column) {
        QCOMPARE(table().currentIndex(), table().model()->index(1, column));
        QTest::keyClick(&table(), Qt::Key_Tab);
    }
    QCOMPARE(QApplication::focusWidget()->objectName(), "addActionButton");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    for (int column = 7; column >= 0; --column) {
        QCOMPARE(table().currentIndex(), table().model()->index(1, column));
        QTest::keyClick(&table(), Qt::Key_Backtab, Qt::ShiftModifier);
    }
    QVERIFY(!table().hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(table().hasFocus());
    QCOMPARE(table().currentIndex(), table().model()->index(1, 0));
}

void tst_ScrollWheelPanel::emptyTableIsPassedByTab()
{
    const ScrollWheelFixture host;
    host.open({});
    QVERIFY(QTest::qWaitForWindowActive(manager().panel()));
    table().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&table(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->objectName(), "addActionButton");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(table().model()->rowCount(), 1);
}

void tst_ScrollWheelPanel::incompleteInterfaceKeepsTheBindings_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("broken") << QByteArray("<ui>");
    QTest::newRow("without outlets") << QByteArray(
        "<ui version=\"4.0\"><widget class=\"platform::Panel\" name=\"panel\"/></ui>");
}

void tst_ScrollWheelPanel::incompleteInterfaceKeepsTheBindings()
{
    QFETCH(QByteArray, file);
    ScrollWheelFixture host;
    host.system.addHostResource("QWScrollWheelManager.ui", file);
    host.load({host.record(true, 0, "zoom:")});
    QVERIFY(!manager().panel());
    QWScrollWheelManager::openPanel();
    QWScrollWheelManager::togglePanel();
    manager().addAction();
    manager().removeAction();
    QVERIFY(host.send(host.event(0, 1)));
    manager().applicationWillTerminate();
    QVERIFY(!host.system.userDefaults().isSet(host.frameKey));
    QCOMPARE(host.system.userDefaults().object(host.actionsKey).toList().size(), 2);
}

QW_TEST_MAIN(tst_ScrollWheelPanel)
#include "tst_ScrollWheelPanel.moc"
