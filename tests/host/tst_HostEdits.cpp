#include "HostTest.h"
#include "ScriptedPlugin.h"

#include <QWBase/QWComponentDescription.h>
#include <QWPlatform/appkit/MenuItem.h>

#include <QMenuBar>

#include <semaphore>

/// The shortcuts that change the sound, edits and effects, pressed, and what comes of it.
class tst_HostEdits : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void editsCanBeUndoneAndRedone_data();
    void editsCanBeUndoneAndRedone();
    void editsOfAPartLeaveTheRest();
    void editsThatNeedASelectionRefuseWithout_data();
    void editsThatNeedASelectionRefuseWithout();
    void silenceIsNotTrimmedAway();
    void stationsAreWalkedThrough();
    void lastEffectIsAppliedAgain();
    void renderingIsCancelled();
    void openMenuFollowsTheWork();

private:
    static demo::Sound _result() { return _host().document().result()->store.sound(); }
};

void tst_HostEdits::editsCanBeUndoneAndRedone_data()
{
    QTest::addColumn<QString>("title");
    const std::pair<const char *, const char *> rows[] = {{"Trim>To Selection", "Trim"},
                                                          {"Trim>Delete Selection", "Delete"},
                                                          {"Trim>Silence at Both Ends", "Trim Silence"},
                                                          {"Level>Louder by 1 dB", "Louder by 1 dB"},
                                                          {"Level>Softer by 1 dB", "Softer by 1 dB"},
                                                          {"Level>Louder by 6 dB", "Louder by 6 dB"},
                                                          {"Level>Softer by 6 dB", "Softer by 6 dB"},
                                                          {"Level>Normalise", "Normalise"},
                                                          {"Level>Silence", "Silence"},
                                                          {"Level>Remove Offset", "Remove Offset"},
                                                          {"Fade>In", "Fade In"},
                                                          {"Fade>Out", "Fade Out"},
                                                          {"Channels>Swap", "Swap Channels"},
                                                          {"Channels>Mix to Mono", "Mix to Mono"},
                                                          {"Reverse", "Reverse"},
                                                          {"Invert", "Invert"}};
    for (const auto &[name, title] : rows)
        QTest::newRow(name) << title;
}

void tst_HostEdits::editsCanBeUndoneAndRedone()
{
    _viewport().setSelection({1, 2});
    const auto before = _result().channels;
    QVERIFY(_host().pressAndWait(QTest::currentDataTag()));
    const auto after = _result().channels;
    QVERIFY(after != before);
    QTEST(_host().document().steps().back().name, "title");
    QVERIFY(_host().press("Undo"));
    QCOMPARE(_result().channels, before);
    QVERIFY(_host().press("Redo"));
    QCOMPARE(_result().channels, after);
}

void tst_HostEdits::editsOfAPartLeaveTheRest()
{
    const auto before = _result().channels;
    _viewport().setSelection({1, 2});
    QVERIFY(_host().pressAndWait("Reverse"));
    const auto after = _result().channels;
    QVERIFY(std::equal(before[0].begin(), before[0].begin() + 8000, after[0].begin()));
    QCOMPARE(after[0][8000], before[0][15999]);
    QVERIFY(std::equal(before[0].begin() + 16000, before[0].end(), after[0].begin() + 16000));
    QCOMPARE(_host().document().steps().back().vendor, QString("Selection"));
    QCOMPARE(_viewport().selection(), (demo::TimeRange{1, 2}));
}

void tst_HostEdits::editsThatNeedASelectionRefuseWithout_data()
{
    QTest::addColumn<int>("unused");
    QTest::newRow("Trim>To Selection") << 0;
    QTest::newRow("Trim>Delete Selection") << 0;
}

void tst_HostEdits::editsThatNeedASelectionRefuseWithout()
{
    QVERIFY(!_host().press(QTest::currentDataTag()));
    QVERIFY(_host().document().steps().empty());
}

void tst_HostEdits::silenceIsNotTrimmedAway()
{
    QVERIFY(_host().pressAndWait("Level>Silence"));
    QVERIFY(_host().pressAndWait("Trim>Silence at Both Ends"));
    QCOMPARE(_host().document().steps().size(), size_t(1));
    _viewport().setSelection({0, 4});
    QVERIFY(_host().pressAndWait("Trim>Delete Selection"));
    QCOMPARE(_host().document().steps().size(), size_t(1));
}

void tst_HostEdits::stationsAreWalkedThrough()
{
    for (const char *name : {"Reverse", "Invert", "Fade>In"})
        QVERIFY(_host().pressAndWait(name));
    const auto stationAfter = [](const QString &name) {
        HostUnderTest::host().press(name);
        return HostUnderTest::host().window().station();
    };
    QCOMPARE(_host().window().station(), 3);
    QCOMPARE(stationAfter("Next Effect"), 3);
    QCOMPARE(stationAfter("Previous Effect"), 2);
    QCOMPARE(stationAfter("Show Source"), 0);
    QCOMPARE(stationAfter("Previous Effect"), 0);
    QCOMPARE(stationAfter("Next Effect"), 1);
    QCOMPARE(stationAfter("Show Result"), 3);
}

static const QWComponentDescription unit(platform::fourCharCode("aufx"), 1, 2);

void tst_HostEdits::lastEffectIsAppliedAgain()
{
    ScriptedPlugin::Report report;
    _host().system.pluginLoader.makeComponent = [&](const platform::AudioComponent &) {
        return std::make_unique<ScriptedPlugin>(ScriptedPlugin::Script{}, report);
    };
    platform::MenuItem item("Echo");
    item.setRepresentedObject(QVariant::fromValue(unit));
    _host().application.actions().applyEffect(&item);
    QTRY_COMPARE_WITH_TIMEOUT(_host().document().steps().size(), size_t(1), HostUnderTest::patience);
    QVERIFY(_host().pressAndWait("Apply Last Effect Again"));
    QCOMPARE(_host().document().steps().size(), size_t(2));
    QCOMPARE(_host().document().steps().back().name, QString("Echo"));
}

void tst_HostEdits::renderingIsCancelled()
{
    ScriptedPlugin::Report report;
    std::binary_semaphore mayOpen(0);
    _host().system.pluginLoader.makeComponent = [&](const platform::AudioComponent &) {
        mayOpen.acquire();
        return std::make_unique<ScriptedPlugin>(ScriptedPlugin::Script{}, report);
    };
    platform::MenuItem item("Slow");
    item.setRepresentedObject(QVariant::fromValue(unit));
    _host().application.actions().applyEffect(&item);
    QVERIFY(_host().application.actions().work().isRunning());
    QVERIFY(!_host().press("Reverse")); // one thing at a time
    QVERIFY(_host().press("Cancel Rendering"));
    mayOpen.release();
    QTRY_VERIFY_WITH_TIMEOUT(!_host().application.actions().work().isRunning(), HostUnderTest::patience);
    QVERIFY(_host().document().steps().empty());
}

static platform::MenuItem *itemTitled(const QMenu &menu, const QString &title)
{
    for (QAction *item : menu.actions()) {
        if (platform::titleOf(*item) == title)
            return qobject_cast<platform::MenuItem *>(item);
    }
    return nullptr;
}

void tst_HostEdits::openMenuFollowsTheWork()
{
    std::binary_semaphore mayOpen(0);
    _host().system.pluginLoader.makeComponent = [&](const platform::AudioComponent &) {
        mayOpen.acquire();
        return nullptr;
    };
    platform::MenuItem effect("Slow");
    effect.setRepresentedObject(QVariant::fromValue(unit));
    _host().application.actions().applyEffect(&effect);
    QMenu *const edit = _host().window().menuBar()->actions().at(1)->menu();
    edit->popup({0, 0});
    QTRY_VERIFY(edit->isVisible());
    const platform::MenuItem *const reverse = itemTitled(*edit, "Reverse");
    QVERIFY(!reverse->isEnabled());
    mayOpen.release();
    QTRY_VERIFY_WITH_TIMEOUT(!_host().application.actions().work().isRunning(), HostUnderTest::patience);
    QVERIFY(edit->isVisible());
    QVERIFY(reverse->isEnabled());
    edit->close();
}

QW_HOST_TEST_MAIN(tst_HostEdits)
#include "tst_HostEdits.moc"
