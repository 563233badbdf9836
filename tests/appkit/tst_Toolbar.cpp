#include <QWPlatform/appkit/TintedIcon.h>
#include <QWPlatform/appkit/Toolbar.h>
#include <QWPlatform/appkit/ToolbarDelegate.h>
#include <QWPlatform/appkit/ToolbarItem.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QComboBox>
#include <QDialog>
#include <QListWidget>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <fakes/FakeSystem.h>

using platform::Toolbar;
using platform::ToolbarItem;

namespace
{
constexpr auto key = "NSToolbar Configuration manual";

const QStringList defaultItems{"back", "forward", "NSToolbarFlexibleSpaceItem", "print"};
const QStringList allowedItems{
    "back", "forward", "home", "print", "NSToolbarFlexibleSpaceItem", "NSToolbarSeparatorItem", "NSToolbarSpaceItem"};
} // namespace

/// A viewer with the four items back, forward, home and print, of which print may be disabled.
class Viewer : public QObject, public platform::ToolbarDelegate
{
    Q_OBJECT

public:
    QStringList toolbarAllowedItemIdentifiers(Toolbar &) override { return allowedItems; }
    QStringList toolbarDefaultItemIdentifiers(Toolbar &) override { return defaultItems; }
    QStringList toolbarSelectableItemIdentifiers(Toolbar &) override { return selectable; }

    std::unique_ptr<ToolbarItem> toolbarItemForItemIdentifier(Toolbar &, const QString &identifier, bool) override
    {
        if (!QStringList{"back", "forward", "home", "print"}.contains(identifier))
            return nullptr;
        auto item = std::make_unique<ToolbarItem>(identifier);
        item->setLabel(identifier.left(1).toUpper() + identifier.mid(1));
        item->setAction("choose:");
        item->setTarget(this);
        return item;
    }

    bool validateToolbarItem(ToolbarItem &item) override { return item.itemIdentifier() != "print" || canPrint; }

    Q_INVOKABLE void choose(QObject *sender) { chosen.append(qobject_cast<ToolbarItem *>(sender)->itemIdentifier()); }

    QStringList selectable;
    QStringList chosen;
    bool canPrint = true;
};

class tst_Toolbar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void defaultItemsShowFirst();
    void choosingAnItemSendsItsAction();
    void disabledItemsSendNothing();
    void itemsAreValidatedAgainWhenAsked();
    void iconOnlyItemsAreNamed();
    void oneSelectableItemIsSelected();
    void selectionSurvivesCustomization();
    void changesAreKept();
    void ownersDisplayModeCountsUntilTheUsersDoes();
    void withoutAutosaveNothingIsStoredOrRead();
    void unusableConfigurationGivesDefaults_data();
    void unusableConfigurationGivesDefaults();
    void unknownAndRepeatedItemsAreLeftOut();
    void hiddenToolbarStaysHidden();
    void foreignKeysOfTheConfigurationStay();
    void impossibleChangesChangeNothing();
    void itemsStandOnceAndSpacesOften();
    void panelAddsRemovesAndMovesByKeyboard();
    void panelAddsByDoubleClick();
    void panelRestoresDefaults();
    void panelChoosesTheDisplayMode();
    void panelIsASheetAndOpensOnce();
    void buttonsFollowThePalette();

private:
    Toolbar *_make(bool autosaves = true);
    QDialog *_openPanel(Toolbar &toolbar);
    QVariantMap _stored() const { return m_system->userDefaults().object(key).toMap(); }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::System::Scope> m_current;
    std::unique_ptr<Viewer> m_viewer;
    std::unique_ptr<QMainWindow> m_window;
};

void tst_Toolbar::init()
{
    m_system = std::make_unique<FakeSystem>();
    m_current = std::make_unique<platform::System::Scope>(*m_system);
    m_viewer = std::make_unique<Viewer>();
    m_window = std::make_unique<QMainWindow>();
}

void tst_Toolbar::cleanup()
{
    m_window.reset();
    m_viewer.reset();
    m_current.reset();
    m_system.reset();
}

Toolbar *tst_Toolbar::_make(bool autosaves)
{
    auto *const toolbar = new Toolbar("manual", m_window.get());
    toolbar->setAllowsUserCustomization(true);
    toolbar->setAutosavesConfiguration(autosaves);
    toolbar->setDisplayMode(Toolbar::IconOnly);
    toolbar->setToolbarDelegate(m_viewer.get());
    m_window->addToolBar(toolbar);
    return toolbar;
}

QDialog *tst_Toolbar::_openPanel(Toolbar &toolbar)
{
    m_window->show();
    toolbar.runCustomizationPalette();
    return m_window->findChild<QDialog *>();
}

namespace
{
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
} // namespace

void tst_Toolbar::defaultItemsShowFirst()
{
    const Toolbar *const toolbar = _make();
    QCOMPARE(toolbar->itemIdentifiers(), defaultItems);
    QCOMPARE(toolbar->items().size(), 3);
    QCOMPARE(toolbar->actions().size(), 4);
    QVERIFY(!_stored().contains("TB Item Identifiers")); // nothing was changed yet
}

void tst_Toolbar::choosingAnItemSendsItsAction()
{
    Toolbar *const toolbar = _make();
    m_window->show();
    QTest::mouseClick(toolbar->widgetForAction(toolbar->itemWithIdentifier("forward")), Qt::LeftButton);
    QTest::keyClick(toolbar->widgetForAction(toolbar->itemWithIdentifier("back")), Qt::Key_Space);
    QCOMPARE(m_viewer->chosen, (QStringList{"forward", "back"}));
}

void tst_Toolbar::disabledItemsSendNothing()
{
    m_viewer->canPrint = false;
    Toolbar *const toolbar = _make();
    m_window->show();
    QTest::mouseClick(toolbar->widgetForAction(toolbar->itemWithIdentifier("print")), Qt::LeftButton);
    QVERIFY(m_viewer->chosen.isEmpty());
}

void tst_Toolbar::itemsAreValidatedAgainWhenAsked()
{
    Toolbar *const toolbar = _make();
    QVERIFY(toolbar->itemWithIdentifier("print")->isEnabled());
    m_viewer->canPrint = false;
    toolbar->validateVisibleItems();
    QVERIFY(!toolbar->itemWithIdentifier("print")->isEnabled());
    QVERIFY(toolbar->itemWithIdentifier("back")->isEnabled());
}

void tst_Toolbar::iconOnlyItemsAreNamed()
{
    Toolbar *const toolbar = _make();
    const QWidget *const button = toolbar->widgetForAction(toolbar->itemWithIdentifier("print"));
    QCOMPARE(button->accessibleName(), QString("Print"));
    QCOMPARE(button->toolTip(), QString("Print"));
    QCOMPARE(toolbar->toolButtonStyle(), Qt::ToolButtonIconOnly);
}

void tst_Toolbar::oneSelectableItemIsSelected()
{
    m_viewer->selectable = QStringList{"back", "forward"};
    Toolbar *const toolbar = _make();
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
    m_viewer->selectable = QStringList{"back", "forward", "home"};
    Toolbar *const toolbar = _make();
    toolbar->setSelectedItemIdentifier("home"); // not shown yet
    QCOMPARE(toolbar->selectedItemIdentifier(), QString("home"));
    toolbar->insertItemWithItemIdentifierAtIndex("home", 0);
    QVERIFY(toolbar->itemWithIdentifier("home")->isChecked());
}

void tst_Toolbar::changesAreKept()
{
    Toolbar *toolbar = _make();
    toolbar->insertItemWithItemIdentifierAtIndex("home", 2);
    toolbar->removeItemAtIndex(0);
    toolbar->moveItem(0, 2);
    const QStringList changed{"home", "NSToolbarFlexibleSpaceItem", "forward", "print"};
    QCOMPARE(toolbar->itemIdentifiers(), changed);
    QCOMPARE(_stored().value("TB Item Identifiers").toStringList(), changed);
    QCOMPARE(_stored().value("TB Default Item Identifiers").toStringList(), defaultItems);
    QCOMPARE(_stored().value("TB Display Mode").toInt(), 0);
    QCOMPARE(_stored().value("TB Is Shown").toBool(), true);
    delete toolbar;
    QVERIFY(m_system->userDefaults().synchronize());
    toolbar = _make();
    QCOMPARE(toolbar->itemIdentifiers(), changed);
}

void tst_Toolbar::ownersDisplayModeCountsUntilTheUsersDoes()
{
    Toolbar *toolbar = _make();
    QCOMPARE(toolbar->displayMode(), Toolbar::IconOnly);
    toolbar->chooseDisplayMode(Toolbar::LabelOnly);
    QCOMPARE(_stored().value("TB Display Mode").toInt(), 3);
    delete toolbar;
    toolbar = _make();
    QCOMPARE(toolbar->displayMode(), Toolbar::LabelOnly);
    QCOMPARE(toolbar->toolButtonStyle(), Qt::ToolButtonTextOnly);
}

void tst_Toolbar::withoutAutosaveNothingIsStoredOrRead()
{
    m_system->userDefaults().setObject(key, QVariantMap{{"TB Item Identifiers", QVariantList{"home"}}});
    Toolbar *const toolbar = _make(false);
    QCOMPARE(toolbar->itemIdentifiers(), defaultItems);
    toolbar->removeItemAtIndex(0);
    QCOMPARE(_stored().value("TB Item Identifiers").toStringList(), QStringList{"home"});
}

void tst_Toolbar::unusableConfigurationGivesDefaults_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("a string") << QVariant("back");
    QTest::newRow("a list") << QVariant(QVariantList{"back"});
    QTest::newRow("empty") << QVariant(QVariantMap{});
    QTest::newRow("items are a string") << QVariant(QVariantMap{{"TB Item Identifiers", "home"}});
    QTest::newRow("items are numbers") << QVariant(QVariantMap{{"TB Item Identifiers", QVariantList{1, "home"}}});
    QTest::newRow("mode too large") << QVariant(QVariantMap{{"TB Display Mode", 9}});
    QTest::newRow("mode negative") << QVariant(QVariantMap{{"TB Display Mode", -1}});
    QTest::newRow("mode a string") << QVariant(QVariantMap{{"TB Display Mode", "3"}, {"TB Is Shown", "no"}});
}

void tst_Toolbar::unusableConfigurationGivesDefaults()
{
    QFETCH(QVariant, stored);
    m_system->userDefaults().setObject(key, stored);
    const Toolbar *const toolbar = _make();
    QCOMPARE(toolbar->itemIdentifiers(), defaultItems);
    QCOMPARE(toolbar->displayMode(), Toolbar::IconOnly);
    QVERIFY(!toolbar->isHidden());
}

void tst_Toolbar::unknownAndRepeatedItemsAreLeftOut()
{
    const QVariantList items{"back", "gone", "back", Toolbar::SpaceItem, Toolbar::SpaceItem, ""};
    m_system->userDefaults().setObject(key, QVariantMap{{"TB Item Identifiers", items}});
    QCOMPARE(_make()->itemIdentifiers(), (QStringList{"back", Toolbar::SpaceItem, Toolbar::SpaceItem}));
}

void tst_Toolbar::hiddenToolbarStaysHidden()
{
    m_system->userDefaults().setObject(key, QVariantMap{{"TB Is Shown", false}});
    const Toolbar *const toolbar = _make();
    m_window->show();
    QVERIFY(toolbar->isHidden());
}

void tst_Toolbar::foreignKeysOfTheConfigurationStay()
{
    m_system->userDefaults().setObject(key, QVariantMap{{"Other", "kept"}});
    _make()->removeItemAtIndex(0);
    QCOMPARE(_stored().value("Other").toString(), QString("kept"));
}

void tst_Toolbar::impossibleChangesChangeNothing()
{
    Toolbar *const toolbar = _make();
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
    Toolbar *const toolbar = _make();
    QVERIFY(!toolbar->canInsert("back"));
    QVERIFY(toolbar->canInsert("home"));
    QVERIFY(toolbar->canInsert(Toolbar::FlexibleSpaceItem));
}

void tst_Toolbar::panelAddsRemovesAndMovesByKeyboard()
{
    Toolbar *const toolbar = _make();
    QDialog *const panel = _openPanel(*toolbar);
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

void tst_Toolbar::panelAddsByDoubleClick()
{
    Toolbar *const toolbar = _make();
    QDialog *const panel = _openPanel(*toolbar);
    QListWidget *const available = listNamed(*panel, "Available items");
    const QListWidgetItem *const home = available->findItems("Home", Qt::MatchExactly).value(0);
    const QPoint place = available->visualItemRect(home).center();
    QTest::mouseClick(available->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(available->viewport(), Qt::LeftButton, {}, place);
    QVERIFY(toolbar->itemWithIdentifier("home"));
    QVERIFY(!buttonNamed(*panel, "Add")->isEnabled()); // it stands there once
}

void tst_Toolbar::panelRestoresDefaults()
{
    Toolbar *const toolbar = _make();
    toolbar->removeItemAtIndex(0);
    toolbar->chooseDisplayMode(Toolbar::LabelOnly);
    QDialog *const panel = _openPanel(*toolbar);
    QTest::mouseClick(buttonNamed(*panel, "Restore Defaults"), Qt::LeftButton);
    QCOMPARE(toolbar->itemIdentifiers(), defaultItems);
    QCOMPARE(toolbar->displayMode(), Toolbar::IconOnly);
    QCOMPARE(panel->findChild<QComboBox *>()->currentText(), QString("Icon Only"));
}

void tst_Toolbar::panelChoosesTheDisplayMode()
{
    Toolbar *const toolbar = _make();
    QDialog *const panel = _openPanel(*toolbar);
    auto *const modes = panel->findChild<QComboBox *>();
    QCOMPARE(modes->currentText(), QString("Icon Only"));
    QTest::keyClick(modes, Qt::Key_Down);
    QCOMPARE(toolbar->displayMode(), Toolbar::LabelOnly);
}

void tst_Toolbar::panelIsASheetAndOpensOnce()
{
    Toolbar *const toolbar = _make();
    QPointer<QDialog> panel = _openPanel(*toolbar);
    QCOMPARE(panel->windowModality(), Qt::WindowModal);
    toolbar->runCustomizationPalette();
    QCOMPARE(m_window->findChildren<QDialog *>().size(), 1);
    QTest::keyClick(panel, Qt::Key_Escape);
    QTRY_VERIFY(!panel);
}

void tst_Toolbar::buttonsFollowThePalette()
{
    Toolbar *const toolbar = _make();
    toolbar->itemWithIdentifier("back")->setImage(
        platform::tintedIconFromSvg("<svg xmlns='http://www.w3.org/2000/svg' width='24' height='24'><path d='M4 "
                                    "4h16v16H4z' fill='currentColor'/></svg>"));
    m_window->show();
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
