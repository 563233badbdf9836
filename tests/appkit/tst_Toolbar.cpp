#include "ToolbarFixture.h"

#include <QWPlatform/appkit/TintedIcon.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

using platform::Toolbar;

/// Which items a toolbar shows, and what they do.
class tst_Toolbar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultItemsShowFirst();
    void choosingAnItemSendsItsAction();
    void disabledItemsSendNothing();
    void itemsAreValidatedAgainWhenAsked();
    void iconOnlyItemsAreNamed();
    void oneSelectableItemIsSelected();
    void selectionSurvivesCustomization();
    void impossibleChangesChangeNothing();
    void itemsStandOnceAndSpacesOften();
    void keyboardBeginsInTheContent();
    void focusShowsOnEveryButton_data();
    void focusShowsOnEveryButton();
    void buttonsFollowThePalette();
};

void tst_Toolbar::defaultItemsShowFirst()
{
    ToolbarFixture host;
    const Toolbar *const toolbar = host.make();
    QCOMPARE(toolbar->itemIdentifiers(), defaultItems);
    QCOMPARE(toolbar->items().size(), 3);
    QCOMPARE(toolbar->actions().size(), 4);
    QVERIFY(!host.stored().contains("TB Item Identifiers")); // nothing was changed yet
}

void tst_Toolbar::choosingAnItemSendsItsAction()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    host.window.show();
    QTest::mouseClick(toolbar->widgetForAction(toolbar->itemWithIdentifier("forward")), Qt::LeftButton);
    QTest::keyClick(toolbar->widgetForAction(toolbar->itemWithIdentifier("back")), Qt::Key_Space);
    QCOMPARE(host.viewer.chosen, (QStringList{"forward", "back"}));
}

void tst_Toolbar::disabledItemsSendNothing()
{
    ToolbarFixture host;
    host.viewer.canPrint = false;
    Toolbar *const toolbar = host.make();
    host.window.show();
    QTest::mouseClick(toolbar->widgetForAction(toolbar->itemWithIdentifier("print")), Qt::LeftButton);
    QVERIFY(host.viewer.chosen.isEmpty());
}

void tst_Toolbar::itemsAreValidatedAgainWhenAsked()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    QVERIFY(toolbar->itemWithIdentifier("print")->isEnabled());
    host.viewer.canPrint = false;
    toolbar->validateVisibleItems();
    QVERIFY(!toolbar->itemWithIdentifier("print")->isEnabled());
    QVERIFY(toolbar->itemWithIdentifier("back")->isEnabled());
}

void tst_Toolbar::iconOnlyItemsAreNamed()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    const QWidget *const button = toolbar->widgetForAction(toolbar->itemWithIdentifier("print"));
    QCOMPARE(button->accessibleName(), QString("Print"));
    QCOMPARE(button->toolTip(), QString("Print"));
    QCOMPARE(toolbar->toolButtonStyle(), Qt::ToolButtonIconOnly);
}

void tst_Toolbar::oneSelectableItemIsSelected()
{
    ToolbarFixture host;
    host.viewer.selectable = QStringList{"back", "forward"};
    Toolbar *const toolbar = host.make();
    toolbar->setSelectedItemIdentifier("back");
    QVERIFY(toolbar->itemWithIdentifier("back")->isChecked());
    toolbar->itemWithIdentifier("forward")->trigger();
    QCOMPARE(toolbar->selectedItemIdentifier(), QString("forward"));
    QVERIFY(!toolbar->itemWithIdentifier("back")->isChecked());
    toolbar->itemWithIdentifier("print")->trigger();
    QCOMPARE(toolbar->selectedItemIdentifier(), QString("forward"));
}

void tst_Toolbar::selectionSurvivesCustomization()
{
    ToolbarFixture host;
    host.viewer.selectable = QStringList{"back", "forward", "home"};
    Toolbar *const toolbar = host.make();
    toolbar->setSelectedItemIdentifier("home"); // not shown yet
    QCOMPARE(toolbar->selectedItemIdentifier(), QString("home"));
    toolbar->insertItemWithItemIdentifierAtIndex("home", 0);
    QVERIFY(toolbar->itemWithIdentifier("home")->isChecked());
}

void tst_Toolbar::impossibleChangesChangeNothing()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    toolbar->insertItemWithItemIdentifierAtIndex("home", -1);
    toolbar->insertItemWithItemIdentifierAtIndex("home", 5);
    toolbar->insertItemWithItemIdentifierAtIndex("back", 0);
    toolbar->insertItemWithItemIdentifierAtIndex("nonsense", 0);
    toolbar->removeItemAtIndex(4);
    toolbar->removeItemAtIndex(-1);
    toolbar->moveItem(0, 4);
    toolbar->moveItem(-1, 0);
    QCOMPARE(toolbar->itemIdentifiers(), defaultItems);
}

void tst_Toolbar::itemsStandOnceAndSpacesOften()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    QVERIFY(!toolbar->canInsert("back"));
    QVERIFY(toolbar->canInsert("home"));
    QVERIFY(toolbar->canInsert(Toolbar::FlexibleSpaceItem));
}

void tst_Toolbar::keyboardBeginsInTheContent()
{
    ToolbarFixture host;
    const Toolbar *const toolbar = host.make();
    auto *const content = new QWidget;
    auto *const column = new QVBoxLayout(content);
    auto *const field = new QLineEdit;
    column->addWidget(field);
    column->addWidget(new QLabel("a note, which takes no focus, comes last"));
    host.window.setCentralWidget(content);
    host.window.show();
    QVERIFY(QTest::qWaitForWindowActive(&host.window));
    QCOMPARE(QApplication::focusWidget(), field);
    QTest::keyClick(host.window.windowHandle(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), toolbar->widgetForAction(toolbar->itemWithIdentifier("back")));
}

void tst_Toolbar::focusShowsOnEveryButton_data()
{
    QTest::addColumn<bool>("selected");
    QTest::newRow("plain") << false;
    QTest::newRow("selected") << true;
}

void tst_Toolbar::focusShowsOnEveryButton()
{
    QFETCH(const bool, selected);
    ToolbarFixture host;
    host.viewer.selectable = QStringList{"back"};
    Toolbar *const toolbar = host.make();
    toolbar->setSelectedItemIdentifier(selected ? "back" : "");
    host.window.setCentralWidget(new QLineEdit);
    host.window.show();
    QVERIFY(QTest::qWaitForWindowActive(&host.window));
    QWidget *const button = toolbar->widgetForAction(toolbar->itemWithIdentifier("back"));
    const QImage without = button->grab().toImage();
    QTest::keyClick(host.window.windowHandle(), Qt::Key_Tab);
    QVERIFY(button->hasFocus());
    QVERIFY(button->grab().toImage() != without);
}

void tst_Toolbar::buttonsFollowThePalette()
{
    ToolbarFixture host;
    Toolbar *const toolbar = host.make();
    toolbar->itemWithIdentifier("back")->setImage(
        platform::tintedIconFromSvg("<svg xmlns='http://www.w3.org/2000/svg' width='24' height='24'><path d='M4 "
                                    "4h16v16H4z' fill='currentColor'/></svg>"));
    host.window.show();
    QWidget *const button = toolbar->widgetForAction(toolbar->itemWithIdentifier("back"));
    const QPalette before = QApplication::palette();
    for (const QColor &color : {QColor(200, 10, 10), QColor(10, 10, 200)}) {
        QPalette palette = before;
        palette.setColor(QPalette::WindowText, color);
        QApplication::setPalette(palette);
        const QImage image = button->grab().toImage();
        QCOMPARE(image.pixelColor(image.rect().center()), color);
    }
    QApplication::setPalette(before);
}

QTEST_MAIN(tst_Toolbar)
#include "tst_Toolbar.moc"
