#include "PreferencesFixture.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/ResponderChain.h>

#include <QLabel>
#include <QVBoxLayout>

/// What a pane is by itself and to its panel.
class tst_QWPreferencesPane : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void baseOperationsDoNothing();
    void panesAreFoundInOrder();
    void updateReachesEveryPane();
    void controlsSendItemChanged();
    void paneGrowsWithItsLayout();
};

void tst_QWPreferencesPane::baseOperationsDoNothing()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
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

void tst_QWPreferencesPane::panesAreFoundInOrder()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QCOMPARE(host.controller().paneForIdentifier("files")->objectName(), "files");
    QVERIFY(!host.controller().paneForIdentifier("Files"));
    host.controller().panes().at(2)->setObjectName("files"); // a second one of that name
    QCOMPARE(host.controller().paneForIdentifier("files"), host.controller().panes().at(1));
}

void tst_QWPreferencesPane::updateReachesEveryPane()
{
    const PreferencesFixture host;
    QWPreferencesPanel::update();
    QVERIFY(host.noted().isEmpty()); // there are none yet
    QWPreferencesPanel::open();
    host.noted();
    QWPreferencesPanel::update();
    QCOMPARE(host.noted(), QStringList({"general update +", "files update -", "wide update -"}));
}

void tst_QWPreferencesPane::controlsSendItemChanged()
{
    const PreferencesFixture host;
    QWPreferencesPanel::open();
    QLineEdit field("Ada");
    QVERIFY(platform::sendAction("itemChanged:", host.controller().currentPane(), &field));
    QCOMPARE(host.system.userDefaults().string("Name"), "Ada");
}

void tst_QWPreferencesPane::paneGrowsWithItsLayout()
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

QW_TEST_MAIN(tst_QWPreferencesPane)
#include "tst_QWPreferencesPane.moc"
