#include "ScrollWheelFixture.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/ResponderChain.h>

#include <QScreen>
#include <QTimer>

namespace
{
QWScrollWheelManager &manager()
{
    return QWScrollWheelManager::defaultManager();
}

QRect screen()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}
} // namespace

/// What is kept between two runs, and the panel as a window.
class tst_ScrollWheelDefaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isOnePerMachine();
    void storedBindingsComeBeforeTheHosts_data();
    void storedBindingsComeBeforeTheHosts();
    void loadingTwiceChangesNothing();
    void frameIsRestored_data();
    void frameIsRestored();
    void frameOutsideEveryScreenIsBroughtBack();
    void panelOpensWhenItWasOpen_data();
    void panelOpensWhenItWasOpen();
    void panelFloats();
    void openBringsThePanelToTheFront();
    void toggleClosesTheKeyPanelOnly();
    void everythingIsSavedAtTermination();
    void nothingIsSavedEarlier();
    void nothingIsSavedThatWasNotLoaded();
    void quitSavesThePanelAsOpen();
    void quitThatIsCalledOffChangesNothing();
    void unknownEntriesSurvive();
};

void tst_ScrollWheelDefaults::isOnePerMachine()
{
    const ScrollWheelFixture outer;
    QWScrollWheelManager *const first = &manager();
    QCOMPARE(&manager(), first);
    {
        const ScrollWheelFixture inner;
        QVERIFY(&manager() != first);
    }
    QCOMPARE(&manager(), first);
}

void tst_ScrollWheelDefaults::storedBindingsComeBeforeTheHosts_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("action");
    const auto record = ScrollWheelFixture::record(true, 0, "stored:");
    QTest::newRow("none stored") << QVariant() << "shipped:";
    QTest::newRow("stored") << QVariant(QVariantList{record}) << "stored:";
    QTest::newRow("all removed") << QVariant(QVariantList{}) << "";
    QTest::newRow("text") << QVariant("damaged") << "shipped:";
    QTest::newRow("dictionary") << QVariant(record) << "shipped:";
    QTest::newRow("number") << QVariant(3) << "shipped:";
}

void tst_ScrollWheelDefaults::storedBindingsComeBeforeTheHosts()
{
    QFETCH(QVariant, stored);
    const ScrollWheelFixture host;
    host.ship({host.record(true, 0, "shipped:")});
    if (stored.isValid())
        host.store(stored);
    const QVariantList actions = host.load().actions();
    QTEST(actions.value(0).toMap().value("action").toString(), "action");
}

void tst_ScrollWheelDefaults::loadingTwiceChangesNothing()
{
    const ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:")});
    const auto *const panel = manager().panel();
    host.load();
    QCOMPARE(manager().panel(), panel);
    QCOMPARE(manager().actions().size(), 1);
}

void tst_ScrollWheelDefaults::frameIsRestored_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QRect>("frame");
    QTest::newRow("none") << QVariant() << QRect(217, 544, 411, 187);
    QTest::newRow("narrow") << QVariant("{{100, 120}, {300, 250}}") << QRect(100, 120, 411, 250);
    QTest::newRow("wide") << QVariant("{{100, 120}, {900, 250}}") << QRect(100, 120, 411, 250);
    QTest::newRow("no text") << QVariant(7) << QRect(217, 544, 411, 187);
    QTest::newRow("unreadable") << QVariant("here") << QRect(217, 544, 411, 187);
    QTest::newRow("empty") << QVariant("{{100, 120}, {0, 0}}") << QRect(217, 544, 411, 187);
    QTest::newRow("flat") << QVariant("{{100, 120}, {411, 1}}") << QRect(100, 120, 411, 120);
}

void tst_ScrollWheelDefaults::frameIsRestored()
{
    QFETCH(QVariant, stored);
    QFETCH(QRect, frame);
    const ScrollWheelFixture host;
    if (stored.isValid())
        host.system.userDefaults().setObject(host.frameKey, stored);
    host.load();
    QWScrollWheelManager::openPanel();
    const QRect shown = manager().panel()->geometry();
    QCOMPARE(shown.size(), frame.size());
    if (screen().contains(frame))
        QCOMPARE(shown.topLeft(), frame.topLeft());
    QVERIFY(screen().contains(shown));
}

void tst_ScrollWheelDefaults::frameOutsideEveryScreenIsBroughtBack()
{
    const ScrollWheelFixture host;
    host.system.userDefaults().setObject(host.frameKey, "{{9000, -4000}, {411, 100000}}");
    host.load();
    QWScrollWheelManager::openPanel();
    QVERIFY(screen().contains(manager().panel()->geometry()));
    manager().panel()->close();
    manager().panel()->move(-5000, 20);
    QWScrollWheelManager::openPanel();
    QVERIFY(screen().contains(manager().panel()->geometry()));
}

void tst_ScrollWheelDefaults::panelOpensWhenItWasOpen_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("opens");
    QTest::newRow("none") << QVariant() << false;
    QTest::newRow("open") << QVariant(true) << true;
    QTest::newRow("closed") << QVariant(false) << false;
    QTest::newRow("no truth") << QVariant(QVariantList{}) << false;
}

void tst_ScrollWheelDefaults::panelOpensWhenItWasOpen()
{
    QFETCH(QVariant, stored);
    const ScrollWheelFixture host;
    if (stored.isValid())
        host.system.userDefaults().setObject(host.openKey, stored);
    host.load();
    QTEST(manager().panel()->isVisible(), "opens");
}

void tst_ScrollWheelDefaults::panelFloats()
{
    const ScrollWheelFixture host;
    host.load();
    QVERIFY(platform::isFloatingPanel(manager().panel()));
    QCOMPARE(manager().panel()->minimumWidth(), 411);
    QCOMPARE(manager().panel()->maximumWidth(), 411);
    QVERIFY(!manager().panel()->windowTitle().isEmpty());
}

void tst_ScrollWheelDefaults::openBringsThePanelToTheFront()
{
    const ScrollWheelFixture host;
    host.load();
    QWScrollWheelManager::openPanel();
    QTRY_COMPARE(platform::keyWindow(), manager().panel());
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_COMPARE(platform::keyWindow(), &other);
    QWScrollWheelManager::openPanel();
    QTRY_COMPARE(platform::keyWindow(), manager().panel());
}

void tst_ScrollWheelDefaults::toggleClosesTheKeyPanelOnly()
{
    const ScrollWheelFixture host;
    host.load();
    int closings = 0;
    connect(manager().panel(), &platform::Panel::willClose, this, [&] { ++closings; });
    QWScrollWheelManager::togglePanel();
    QTRY_COMPARE(platform::keyWindow(), manager().panel());
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_COMPARE(platform::keyWindow(), &other);
    QWScrollWheelManager::togglePanel();
    QVERIFY(manager().panel()->isVisible());
    QTRY_COMPARE(platform::keyWindow(), manager().panel());
    QCOMPARE(closings, 0);
    QWScrollWheelManager::togglePanel();
    QVERIFY(!manager().panel()->isVisible());
    QCOMPARE(closings, 1); // as by its close button
}

void tst_ScrollWheelDefaults::everythingIsSavedAtTermination()
{
    const ScrollWheelFixture host;
    host.open({host.record(true, 0, "zoom:")});
    manager().panel()->setGeometry(50, 60, 411, 300);
    host.edit("shift", true);
    manager().applicationWillTerminate();
    const auto &defaults = host.system.userDefaults();
    QCOMPARE(defaults.object(host.openKey), true);
    QCOMPARE(defaults.string(host.frameKey), "{{50, 60}, {411, 300}}");
    QCOMPARE(defaults.object(host.actionsKey).toList(), QVariantList{host.record(true, 0x20000, "zoom:")});
    manager().panel()->close();
    manager().applicationWillTerminate();
    QCOMPARE(defaults.object(host.openKey), false);
}

void tst_ScrollWheelDefaults::nothingIsSavedEarlier()
{
    ScrollWheelFixture host;
    host.open({host.record(true, 0, "zoom:")});
    host.edit("shift", true);
    manager().addAction();
    manager().panel()->resize(411, 400);
    manager().panel()->close();
    host.system.release<QWScrollWheelManager>(); // a run that does not end normally
    for (const char *key : {host.actionsKey, host.frameKey, host.openKey})
        QVERIFY(!host.system.userDefaults().isSet(key));
}

void tst_ScrollWheelDefaults::nothingIsSavedThatWasNotLoaded()
{
    const ScrollWheelFixture host;
    host.store(QVariantList{host.record(true, 0, "zoom:")});
    manager().applicationWillTerminate();
    QCOMPARE(host.system.userDefaults().object(host.actionsKey).toList().size(), 1);
}

/// Qt closes all windows before it says that the application ends.
void tst_ScrollWheelDefaults::quitSavesThePanelAsOpen()
{
    const ScrollWheelFixture host;
    host.load();
    QWScrollWheelManager::openPanel();
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(!manager().panel()->isVisible());
    QCOMPARE(host.system.userDefaults().object(host.openKey), true);
    QVERIFY(host.system.userDefaults().isSet(host.frameKey));

    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCOMPARE(QCoreApplication::exec(), 0);
    QCOMPARE(host.system.userDefaults().object(host.openKey), false);
}

void tst_ScrollWheelDefaults::quitThatIsCalledOffChangesNothing()
{
    const ScrollWheelFixture host;
    host.load();
    QWScrollWheelManager::openPanel();
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(qApp, &quit); // closes the panel, as before a window that refuses
    QVERIFY(!manager().panel()->isVisible());
    QWScrollWheelManager::openPanel();
    manager().panel()->close();
    manager().applicationWillTerminate();
    QCOMPARE(host.system.userDefaults().object(host.openKey), false);
}

void tst_ScrollWheelDefaults::unknownEntriesSurvive()
{
    const ScrollWheelFixture host;
    QVariantMap newer = host.record(true, 0, "zoom:");
    newer.insert("speed", 2.5);
    host.store(QVariantList{newer});
    host.load();
    host.edit("reverse", true);
    newer.insert("reverse", true);
    manager().applicationWillTerminate();
    QCOMPARE(host.system.userDefaults().object(host.actionsKey).toList(), QVariantList{newer});
}

QW_TEST_MAIN(tst_ScrollWheelDefaults)

#include "tst_ScrollWheelDefaults.moc"
