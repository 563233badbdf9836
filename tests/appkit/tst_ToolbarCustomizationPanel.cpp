#include "ToolbarFixture.h"

#include <QComboBox>
#include <QDialog>
#include <QListWidget>
#include <QPushButton>

using platform::Toolbar;

namespace
{
QDialog *openPanel(ToolbarFixture &host, Toolbar &toolbar)
{
    host.window.show();
    toolbar.runCustomizationPalette();
    return host.window.findChild<QDialog *>();
}

QListWidget *listNamed(QDialog &panel, const QString &name)
{
    const QList<QListWidget *> lists = panel.findChildren<QListWidget *>();
    const auto found =
        std::find_if(lists.begin(), lists.end(), [&](QListWidget *l) { return l->accessibleName() == name; });
    return found == lists.end() ? nullptr : *found;
}

QPushButton *buttonNamed(QDialog &panel, const QString &title)
{
    const QList<QPushButton *> buttons = panel.findChildren<QPushButton *>();
    const auto found = std::find_if(buttons.begin(), buttons.end(), [&](QPushButton *b) { return b->text() == title; });
    return found == buttons.end() ? nullptr : *found;
}

void setCurrentTitled(QListWidget &list, const QString &title)
{
    const QList<QListWidgetItem *> items = list.findItems(title, Qt::MatchExactly);
    QCOMPARE(items.size(), 1);
    list.setCurrentItem(items.first());
}

/// What the list tells when the user lets go of an item that was taken up at @p fromRow; -1: in another list.
void drop(QListWidget &list, const QString &identifier, int fromRow, int row)
{
    QVERIFY(QMetaObject::invokeMethod(&list, "itemDropped", Q_ARG(QString, identifier), Q_ARG(int, fromRow),
                                      Q_ARG(int, row)));
}
} // namespace

/// The panel in which the user chooses the items of a toolbar.
class tst_ToolbarCustomizationPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keysAddRemoveAndMove();
    void doubleClickAdds();
    void dropsAddMoveAndRemove();
    void defaultsAreRestored();
    void displayModeIsChosen();
    void isASheetAndOpensOnce();
};

void tst_ToolbarCustomizationPanel::keysAddRemoveAndMove()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    QDialog *const panel = openPanel(host, *toolbar);
    QListWidget *const available = listNamed(*panel, "Available items");
    QListWidget *const shown = listNamed(*panel, "Items in the toolbar");
    QCOMPARE(available->count(), allowedItems.size());
    setCurrentTitled(*shown, "Forward");
    setCurrentTitled(*available, "Home");
    QTest::keyClick(available, Qt::Key_Return);
    QCOMPARE(toolbar->itemIdentifiers(), (QStringList{"back", "forward", "home", Toolbar::FlexibleSpaceItem, "print"}));
    QVERIFY(panel->isVisible()); // Return is the list's, not the button's
    shown->setFocus();
    QTest::keyClick(shown, Qt::Key_Left, Qt::ControlModifier);
    QCOMPARE(toolbar->itemIdentifiers().value(1), QString("home"));
    QTest::keyClick(shown, Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(toolbar->itemIdentifiers().value(2), QString("home"));
    QTest::keyClick(shown, Qt::Key_Delete);
    QCOMPARE(toolbar->itemIdentifiers(), defaultItems);
}

void tst_ToolbarCustomizationPanel::doubleClickAdds()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    QDialog *const panel = openPanel(host, *toolbar);
    QListWidget *const available = listNamed(*panel, "Available items");
    const QListWidgetItem *const home = available->findItems("Home", Qt::MatchExactly).value(0);
    const QPoint place = available->visualItemRect(home).center();
    QTest::mouseClick(available->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(available->viewport(), Qt::LeftButton, {}, place);
    QVERIFY(toolbar->itemWithIdentifier("home"));
    QVERIFY(!buttonNamed(*panel, "Add")->isEnabled()); // it stands there once
}

void tst_ToolbarCustomizationPanel::dropsAddMoveAndRemove()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    QDialog *const panel = openPanel(host, *toolbar);
    QListWidget *const available = listNamed(*panel, "Available items");
    QListWidget *const shown = listNamed(*panel, "Items in the toolbar");
    constexpr int fromTheOtherList = -1;
    drop(*shown, "home", fromTheOtherList, 1);
    QCOMPARE(toolbar->itemIdentifiers(), (QStringList{"back", "home", "forward", Toolbar::FlexibleSpaceItem, "print"}));
    QCOMPARE(shown->currentRow(), 1);
    drop(*shown, "home", fromTheOtherList, 3); // it stands there already
    QCOMPARE(toolbar->itemIdentifiers().count("home"), 1);
    drop(*shown, "home", 1, 5); // behind the last one
    QCOMPARE(toolbar->itemIdentifiers(), (QStringList{"back", "forward", Toolbar::FlexibleSpaceItem, "print", "home"}));
    QCOMPARE(shown->currentRow(), 4);
    drop(*shown, "home", 4, 0);
    QCOMPARE(toolbar->itemIdentifiers().first(), QString("home"));
    drop(*shown, "nonsense", fromTheOtherList, 0);
    drop(*available, "back", 0, 2); // taken up and put back
    QCOMPARE(toolbar->itemIdentifiers().size(), 5);
    drop(*available, "home", fromTheOtherList, 2); // dragged out of the toolbar
    QCOMPARE(toolbar->itemIdentifiers(), defaultItems);
}

void tst_ToolbarCustomizationPanel::defaultsAreRestored()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    toolbar->removeItemAtIndex(0);
    toolbar->chooseDisplayMode(Toolbar::LabelOnly);
    QDialog *const panel = openPanel(host, *toolbar);
    QTest::mouseClick(buttonNamed(*panel, "Restore Defaults"), Qt::LeftButton);
    QCOMPARE(toolbar->itemIdentifiers(), defaultItems);
    QCOMPARE(toolbar->displayMode(), Toolbar::IconOnly);
    QCOMPARE(panel->findChild<QComboBox *>()->currentText(), QString("Icon Only"));
}

void tst_ToolbarCustomizationPanel::displayModeIsChosen()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    QDialog *const panel = openPanel(host, *toolbar);
    auto *const modes = panel->findChild<QComboBox *>();
    QCOMPARE(modes->currentText(), QString("Icon Only"));
    QTest::keyClick(modes, Qt::Key_Down);
    QCOMPARE(toolbar->displayMode(), Toolbar::LabelOnly);
}

void tst_ToolbarCustomizationPanel::isASheetAndOpensOnce()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    QPointer<QDialog> panel = openPanel(host, *toolbar);
    QCOMPARE(panel->windowModality(), Qt::WindowModal);
    toolbar->runCustomizationPalette();
    QCOMPARE(host.window.findChildren<QDialog *>().size(), 1);
    QTest::keyClick(panel, Qt::Key_Escape);
    QTRY_VERIFY(!panel);
}

QTEST_MAIN(tst_ToolbarCustomizationPanel)
#include "tst_ToolbarCustomizationPanel.moc"
