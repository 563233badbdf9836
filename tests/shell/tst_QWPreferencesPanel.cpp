#include "PreferencesFixture.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/ResponderChain.h>

#include <QLabel>
#include <QProxyStyle>
#include <QScreen>
#include <QToolButton>
#include <QVBoxLayout>

using platform::Toolbar;

namespace
{
/// A desktop that says how long animations take; 0: it wants none.
class MotionStyle : public QProxyStyle
{
public:
    explicit MotionStyle(int milliseconds)
        : QProxyStyle("Fusion")
        , m_milliseconds(milliseconds)
    {
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration ? m_milliseconds
                                                    : QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    int m_milliseconds;
};

QRect screen()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}
} // namespace

class tst_QWPreferencesPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QApplication::setStyle(new MotionStyle(0)); }
    void firstInstalledIsTheSharedOne();
    void hostWithoutPanelOpensNothing();
    void toolbarIsThatOfThePanes();
    void toolTipIsTheViews();
    void firstOpeningShowsTheFirstPane();
    void secondOpeningKeepsThePane();
    void openingWithAPaneShowsIt();
    void openingTheCurrentPaneOnlyCentres();
    void unknownPaneIsNone();
    void hooksComeInOrder();
    void currentPaneIsNotChangedAgain();
    void contentTakesTheSizeOfThePane();
    void visiblePanelKeepsItsTopEdge();
    void hiddenPanelKeepsItsBottomLeftCorner();
    void resizingIsAnimated();
    void choiceDuringTheAnimationWins();
    void wideToolbarWidensThePanel();
    void paneGrowsWithItsLayout();
    void panesAreFoundInOrder();
    void updateReachesEveryPane();
    void closingEndsEditing();
    void closingHides();
    void panelComesBackFromALostScreen();
    void hostWithoutPanesGetsAnEmptyToolbar();
    void incompleteInterfaceOpensNothing_data();
    void incompleteInterfaceOpensNothing();
    void baseOperationsDoNothing();
    void controlsSendItemChanged();
    void otherSendersChangeNothing();
};

void tst_QWPreferencesPanel::firstInstalledIsTheSharedOne()
{
    const PreferencesFixture host;
    auto *const first = &host.controller();
    QVERIFY(qobject_cast<TestPreferences *>(first));
    QCOMPARE(&QWPreferencesPanel::install<TestPreferences>(), first);
    QCOMPARE(&QWPreferencesPanel::sharedInstance(), first);
}

void tst_QWPreferencesPanel::hostWithoutPanelOpensNothing()
{
    FakeSystem system;
    const platform::System::Scope scope(system);
    QWPreferencesPanel::open();
    QWPreferencesPanel::openPane("general");
    QWPreferencesPanel::update();
    QVERIFY(!QWPreferencesPanel::sharedInstance().panel());
    QVERIFY(!QWPreferencesPanel::sharedInstance().paneForIdentifier("general"));
}

void tst_QWPreferencesPanel::toolbarIsThatOfThePanes()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    Toolbar &toolbar = host.toolbar();
    const QStringList all{"general", "files", "wide"};
    QCOMPARE(toolbar.identifier(), "preferencesToolbar");
    QVERIFY(!toolbar.allowsUserCustomization());
    QVERIFY(!toolbar.autosavesConfiguration());
    QCOMPARE(toolbar.displayMode(), Toolbar::IconAndLabel);
    QVERIFY(toolbar.isVisible());
    QCOMPARE(host.controller().toolbarItemIdentifiers(), all);
    QCOMPARE(toolbar.itemIdentifiers(), all);
    QCOMPARE(host.controller().toolbarAllowedItemIdentifiers(toolbar), all);
    QCOMPARE(host.controller().toolbarDefaultItemIdentifiers(toolbar), all);
    QCOMPARE(host.controller().toolbarSelectableItemIdentifiers(toolbar), all);
    const platform::ToolbarItem &item = *toolbar.itemWithIdentifier("files");
    QCOMPARE(item.label(), "Title of files");
    QVERIFY(!item.icon().isNull());
    QCOMPARE(item.target(), &host.controller());
    QCOMPARE(item.action().name(), "changePane:");
    QVERIFY(!host.controller().toolbarItemForItemIdentifier(toolbar, "unknown", true));
}

void tst_QWPreferencesPanel::toolTipIsTheViews()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.controller().paneForIdentifier("files")->setToolTip("Sound files");
    const auto item = host.controller().toolbarItemForItemIdentifier(host.toolbar(), "files", true);
    QCOMPARE(item->toolTip(), "Sound files");
}

void tst_QWPreferencesPanel::firstOpeningShowsTheFirstPane()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QVERIFY(host.panel().isVisible());
    QVERIFY(platform::isPanel(&host.panel()));
    QVERIFY(!platform::isFloatingPanel(&host.panel()));
    QTRY_COMPARE(platform::keyWindow(), &host.panel());
    QCOMPARE(host.current(), "general");
    QCOMPARE(host.toolbar().selectedItemIdentifier(), "general");
    QVERIFY(host.toolbar().itemWithIdentifier("general")->isChecked());
    QVERIFY(host.controller().currentPane()->isVisible());
    const QPoint off = host.panel().geometry().center() - screen().center();
    QVERIFY(off.manhattanLength() <= 8);
    QCOMPARE(host.noted(), QStringList({"general update -", "files update -", "wide update -", "general will become -",
                                        "general did become +"}));
}

void tst_QWPreferencesPanel::secondOpeningKeepsThePane()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.choose("files");
    host.panel().move(30, 40);
    host.panel().close();
    host.noted();
    QWPreferencesPanel::open();
    QVERIFY(host.panel().isVisible());
    QCOMPARE(host.current(), "files");
    QCOMPARE(host.panel().pos(), QPoint(30, 40));
    QVERIFY(host.noted().isEmpty());
}

void tst_QWPreferencesPanel::openingWithAPaneShowsIt()
{
    const PreferencesFixture host;
    QWPreferencesPanel::openPane("files");
    QCOMPARE(host.current(), "files");
    QCOMPARE(host.toolbar().selectedItemIdentifier(), "files");
    host.panel().move(0, 0);
    QWPreferencesPanel::openPane("wide");
    QCOMPARE(host.current(), "wide");
    QCOMPARE(host.toolbar().selectedItemIdentifier(), "wide");
    QVERIFY((host.panel().geometry().center() - screen().center()).manhattanLength() <= 8);
}

void tst_QWPreferencesPanel::openingTheCurrentPaneOnlyCentres()
{
    const PreferencesFixture host;
    QWPreferencesPanel::openPane("files");
    host.panel().move(0, 0);
    host.noted();
    QWPreferencesPanel::openPane("files");
    QVERIFY((host.panel().geometry().center() - screen().center()).manhattanLength() <= 8);
    QVERIFY(host.noted().isEmpty());
}

void tst_QWPreferencesPanel::unknownPaneIsNone()
{
    const PreferencesFixture host;
    QWPreferencesPanel::openPane("unknown");
    QCOMPARE(host.current(), "general");
    host.choose("files");
    QWPreferencesPanel::openPane("unknown");
    QCOMPARE(host.current(), "files");
    QCOMPARE(host.toolbar().selectedItemIdentifier(), "files");
}

void tst_QWPreferencesPanel::hooksComeInOrder()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.noted();
    host.choose("files");
    QCOMPARE(host.noted(), QStringList({"general will resign +", "files will become -", "general did resign -",
                                        "files did become +"}));
    QCOMPARE(host.content().findChildren<QWPreferencesPane *>().size(), 1);
    QVERIFY(!host.controller().paneForIdentifier("general")->isVisible());
    host.choose("general");
    QCOMPARE(host.noted(), QStringList({"files will resign +", "general will become -", "files did resign -",
                                        "general did become +"}));
}

void tst_QWPreferencesPanel::currentPaneIsNotChangedAgain()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.noted();
    host.choose("general");
    QVERIFY(host.noted().isEmpty());
    QVERIFY(host.toolbar().itemWithIdentifier("general")->isChecked());
}

void tst_QWPreferencesPanel::contentTakesTheSizeOfThePane()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QCoreApplication::processEvents();
    QCOMPARE(host.content().size(), QSize(400, 200));
    QCOMPARE(host.controller().currentPane()->geometry(), QRect(0, 0, 400, 200));
    host.choose("wide");
    QCoreApplication::processEvents();
    QCOMPARE(host.content().size(), QSize(520, 120));
    QCOMPARE(host.controller().currentPane()->geometry(), QRect(0, 0, 520, 120));
}

void tst_QWPreferencesPanel::visiblePanelKeepsItsTopEdge()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    const QRect before = host.panel().geometry();
    host.choose("files");
    QCOMPARE(host.panel().geometry(), QRect(before.topLeft(), before.size() + QSize(0, 120)));
    host.choose("wide");
    QCOMPARE(host.panel().geometry(), QRect(before.topLeft(), before.size() + QSize(120, -80)));
}

void tst_QWPreferencesPanel::hiddenPanelKeepsItsBottomLeftCorner()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.panel().close();
    const QRect before = host.panel().geometry();
    host.choose("files");
    QCOMPARE(host.panel().geometry().bottomLeft(), before.bottomLeft());
    QCOMPARE(host.panel().size(), before.size() + QSize(0, 120));
    QVERIFY(!host.panel().isVisible());
}

void tst_QWPreferencesPanel::resizingIsAnimated()
{
    QApplication::setStyle(new MotionStyle(150));
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    const QRect before = host.panel().geometry();
    host.choose("files");
    QVERIFY(host.panel().height() < before.height() + 120); // on its way
    QCOMPARE(host.noted().last(), "files did become +");    // but the pane is there
    QTRY_COMPARE(host.panel().geometry(), QRect(before.topLeft(), before.size() + QSize(0, 120)));
    QTRY_COMPARE(host.content().size(), QSize(400, 320));
}

void tst_QWPreferencesPanel::choiceDuringTheAnimationWins()
{
    QApplication::setStyle(new MotionStyle(150));
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    const QRect before = host.panel().geometry();
    host.choose("files");
    host.choose("wide");
    QWPreferencesPanel::openPane("wide"); // centred for the size to come
    QTRY_COMPARE(host.panel().size(), before.size() + QSize(120, -80));
    QVERIFY((host.panel().geometry().center() - screen().center()).manhattanLength() <= 8);
    QCOMPARE(host.current(), "wide");
}

void tst_QWPreferencesPanel::wideToolbarWidensThePanel()
{
    const PreferencesFixture host;
    QFont large = QApplication::font();
    const QFont usual = large;
    large.setPointSize(40);
    QApplication::setFont(large);
    QWPreferencesPanel::open();
    QVERIFY(host.panel().width() >= host.toolbar().sizeHint().width());
    QCOMPARE(host.controller().currentPane()->width(), host.panel().width());
    QApplication::setFont(usual);
}

void tst_QWPreferencesPanel::paneGrowsWithItsLayout()
{
    const PreferencesFixture host;
    NotingPane pane;
    pane.resize(300, 20);
    QCOMPARE(pane.paneSize(), QSize(300, 20));
    auto *const column = new QVBoxLayout(&pane);
    auto *const text = new QLabel(QString("word ").repeated(100));
    text->setWordWrap(true);
    column->addWidget(text);
    QCOMPARE(pane.paneSize().width(), 300);
    QVERIFY(pane.paneSize().height() >= text->heightForWidth(300));
}

void tst_QWPreferencesPanel::panesAreFoundInOrder()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QCOMPARE(host.controller().paneForIdentifier("files")->objectName(), "files");
    QVERIFY(!host.controller().paneForIdentifier("Files"));
    host.controller().panes().at(2)->setObjectName("files"); // a second one of that name
    QCOMPARE(host.controller().paneForIdentifier("files"), host.controller().panes().at(1));
}

void tst_QWPreferencesPanel::updateReachesEveryPane()
{
    const PreferencesFixture host;
    QWPreferencesPanel::update();
    QVERIFY(host.noted().isEmpty()); // there are none yet
    QWPreferencesPanel::open();
    host.noted();
    QWPreferencesPanel::update();
    QCOMPARE(host.noted(), QStringList({"general update +", "files update -", "wide update -"}));
}

void tst_QWPreferencesPanel::closingEndsEditing()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QVERIFY(QTest::qWaitForWindowActive(&host.panel()));
    auto *const field = host.panel().findChild<QLineEdit *>("nameField");
    connect(field, &QLineEdit::editingFinished, host.controller().currentPane(),
            [&] { host.controller().currentPane()->itemChanged(field); });
    field->setFocus();
    QTest::keyClicks(field, "Ada");
    QVERIFY(!host.system.userDefaults().isSet("Name"));
    host.panel().close();
    QCOMPARE(host.system.userDefaults().string("Name"), "Ada");
    QVERIFY(!field->hasFocus());
}

void tst_QWPreferencesPanel::closingHides()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    const auto *const panel = &host.panel();
    QTest::keyClick(&host.panel(), Qt::Key_Escape);
    QVERIFY(!panel->isVisible());
    QCOMPARE(host.current(), "general");
    QWPreferencesPanel::open();
    QCOMPARE(&host.panel(), panel);
}

void tst_QWPreferencesPanel::panelComesBackFromALostScreen()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.panel().close();
    host.panel().move(-4000, 9000);
    QWPreferencesPanel::open();
    QVERIFY(screen().contains(host.panel().geometry()));
}

void tst_QWPreferencesPanel::hostWithoutPanesGetsAnEmptyToolbar()
{
    const PreferencesFixture host(false);
    QWPreferencesPanel::open();
    QVERIFY(host.panel().isVisible());
    QVERIFY(host.toolbar().itemIdentifiers().isEmpty());
    QVERIFY(!host.controller().currentPane());
    QWPreferencesPanel::openPane("general");
    QWPreferencesPanel::update();
    host.panel().close();
    QVERIFY(!host.controller().currentPane());
}

void tst_QWPreferencesPanel::incompleteInterfaceOpensNothing_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("broken") << QByteArray("<ui>");
    QTest::newRow("without panel") << QByteArray("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"nib\"/></ui>");
    QTest::newRow("without panes") << QByteArray("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"nib\"><widget "
                                                 "class=\"platform::Panel\" name=\"panel\"/></widget></ui>");
    QTest::newRow("panel of another class")
        << QByteArray("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"panel\"/></ui>");
}

void tst_QWPreferencesPanel::incompleteInterfaceOpensNothing()
{
    QFETCH(QByteArray, file);
    const PreferencesFixture host;
    host.system.addHostResource("TestPreferences.ui", file);
    QWPreferencesPanel::open();
    QVERIFY(!host.controller().panel());
    QWPreferencesPanel::update();
    host.system.addHostResource("TestPreferences.ui", host.file()); // put right
    QWPreferencesPanel::open();
    QVERIFY(host.panel().isVisible());
}

void tst_QWPreferencesPanel::baseOperationsDoNothing()
{
    FakeSystem system;
    const platform::System::Scope scope(system);
    QWPreferencesPane pane;
    QCOMPARE(pane.identifier(), "");
    QCOMPARE(pane.title(), "");
    QCOMPARE(pane.tooltip(), "");
    QVERIFY(pane.image().isNull());
    pane.paneWillBecomeFront();
    pane.paneDidBecomeFront();
    pane.paneWillResignFront();
    pane.paneDidResignFront();
    pane.updateControls();
    pane.itemChanged(&pane);
    const QWPreferencesPanel &panel = QWPreferencesPanel::sharedInstance();
    QCOMPARE(panel.panelNibName(), "");
    QVERIFY(panel.panes().isEmpty());
}

void tst_QWPreferencesPanel::controlsSendItemChanged()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QLineEdit field("Ada");
    QVERIFY(platform::sendAction("itemChanged:", host.controller().currentPane(), &field));
    QCOMPARE(host.system.userDefaults().string("Name"), "Ada");
}

void tst_QWPreferencesPanel::otherSendersChangeNothing()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    host.noted();
    QObject other;
    platform::ToolbarItem unknown("unknown");
    host.controller().changePane(&other);
    host.controller().changePane(nullptr);
    host.controller().changePane(&unknown);
    QVERIFY(host.noted().isEmpty());
    QCOMPARE(host.current(), "general");
}

QW_TEST_MAIN(tst_QWPreferencesPanel)

#include "tst_QWPreferencesPanel.moc"
