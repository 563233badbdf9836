#include "Sounds.h"
#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include "app/HostSettings.h"
#include "app/MainWindow.h"
#include "app/SaveRequest.h"
#include "app/SoundActions.h"
#include "app/WheelActions.h"
#include "preferences/HostPreferences.h"
#include "views/Viewport.h"
#include "views/WaveformView.h"

#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/Theme.h>
#include <QWPlatform/appkit/toolbar/Toolbar.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/controllers/QWScrollWheelManager.h>

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QWheelEvent>

using namespace demo;

/// The host's window with the wheel bindings and preferences that it ships.
struct ControlledHost
{
    FakeSystem system;
    platform::SystemScope scope{system};
    AudioDocument document;
    MainWindow window{document};
    SoundActions actions{document, window};
    std::unique_ptr<WheelActions> wheel;

    ControlledHost()
    {
        for (const char *name : {"scrollWheelActions.xml", "scrollWheelActionDefaults.xml", "TinePreferences.ui"}) {
            QFile file(QString(QW_DEMO_BUNDLE) + "/" + name);
            if (!file.open(QIODevice::ReadOnly))
                qFatal("%s cannot be read", name);
            system.addHostResource(name, file.readAll());
        }
        HostSettings::registerDefaults();
        QWPreferencesPanel::install<HostPreferences>();
        QWScrollWheelManager::loadActions();
        Sound sound = sounds::constant({0.25f}, 48000);
        sound.sampleRate = 48000; // one second
        document.setSource("Sample", "Test", std::make_shared<const Clip>(sound));
        wheel = std::make_unique<WheelActions>(window, actions);
        window.show();
    }

    ~ControlledHost() { document.setSaved(); }

    Viewport &viewport() { return window.viewport(); }

    /// Over the middle of the waveform, in notches.
    bool turn(double x, double y, Qt::KeyboardModifiers modifiers = {})
    {
        WaveformView *shown = nullptr;
        for (WaveformView *view : window.findChildren<WaveformView *>())
            shown = view->isVisible() ? view : shown;
        const QPointF place = QRectF(shown->rect()).center();
        const QPoint angle(static_cast<int>(x * 120), static_cast<int>(y * 120));
        QWheelEvent event(place, shown->mapToGlobal(place), {}, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(shown, &event);
        return event.isAccepted();
    }

    /// The control of a setting, in its pane.
    template <class Control>
    static Control &control(const QString &key)
    {
        for (QWPreferencesPane *pane : QWPreferencesPanel::sharedInstance().panes()) {
            for (Control *found : pane->findChildren<Control *>()) {
                if (found->property("defaultsKey").toString() == key)
                    return *found;
            }
        }
        qFatal("no control for %s", qPrintable(key));
    }
};

class tst_HostControllers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wheelZoomsAboutThePointer();
    void wheelScrolls();
    void wheelMovesThePlayHead();
    void wheelChangesTheLevelWhenItRests();
    void wheelWithoutBindingIsLeftToOthers();
    void panesShowTheSettings();
    void boxesAreKeptAtOnce_data();
    void boxesAreKeptAtOnce();
    void choicesAreKeptAtOnce();
    void mainWindowFollowsAtOnce();
    void closingAsksOnlyWhenWanted();
    void everyPaneOpens();
    void screenReadersHearTheLabelOfEachChoice();
};

void tst_HostControllers::wheelZoomsAboutThePointer()
{
    ControlledHost host;
    QVERIFY(host.turn(0, 2));
    const TimeRange &visible = host.viewport().visible();
    QVERIFY(qAbs(visible.length() - 1 / (1.25 * 1.25)) < 1e-6);
    QVERIFY(qAbs((visible.begin + visible.end) / 2 - 0.5) < 0.01);
    QVERIFY(host.turn(0, -20));
    QVERIFY(host.viewport().showsAll());
    QVERIFY(host.turn(0, 1000));
    QVERIFY(visible.length() > Viewport::shortestVisible - 1e-9);
}

void tst_HostControllers::wheelScrolls()
{
    ControlledHost host;
    host.viewport().setVisible({0.4, 0.6});
    QVERIFY(host.turn(1, 0));
    QVERIFY(host.viewport().visible().begin < 0.4);
    host.viewport().setVisible({0.4, 0.6});
    QVERIFY(host.turn(0, -1, Qt::ShiftModifier));
    QVERIFY(host.viewport().visible().begin > 0.4);
}

void tst_HostControllers::wheelMovesThePlayHead()
{
    ControlledHost host;
    QVERIFY(host.turn(0, -2, Qt::AltModifier));
    QVERIFY(qAbs(host.viewport().position() - 0.16) < 1e-6);
}

void tst_HostControllers::wheelChangesTheLevelWhenItRests()
{
    ControlledHost host;
    for (int i = 0; i < 8; ++i)
        QVERIFY(host.turn(0, -0.75, Qt::ControlModifier));
    QVERIFY(host.document.steps().empty());
    QTRY_COMPARE(host.document.steps().size(), std::size_t(1)); // one step for all
    QVERIFY(qAbs(host.document.result()->peak - 0.25f * 0.501f) < 0.001f);
}

void tst_HostControllers::wheelWithoutBindingIsLeftToOthers()
{
    ControlledHost host;
    host.system.keyboard.capsLock = true;
    QVERIFY(!host.turn(0, 1));
    QVERIFY(host.viewport().showsAll());
}

void tst_HostControllers::panesShowTheSettings()
{
    ControlledHost host;
    host.system.userDefaults().setObject(HostSettings::askKey, false);
    host.system.userDefaults().setObject("Save Format", 2);
    host.system.userDefaults().setObject(HostSettings::launchKey, "nonsense");
    QWPreferencesPanel::open();
    QVERIFY(!host.control<QCheckBox>(HostSettings::askKey).isChecked());
    QVERIFY(host.control<QCheckBox>(HostSettings::effectNameKey).isChecked());
    QCOMPARE(host.control<QComboBox>("Save Format").currentText(), QString("AIFF, 32-bit float"));
    QCOMPARE(host.control<QComboBox>(HostSettings::launchKey).currentIndex(), 0);
    host.system.userDefaults().setObject(HostSettings::askKey, true);
    QWPreferencesPanel::update();
    QVERIFY(host.control<QCheckBox>(HostSettings::askKey).isChecked());
}

void tst_HostControllers::boxesAreKeptAtOnce_data()
{
    QTest::addColumn<QString>("key");
    for (const char *key :
         {HostSettings::askKey, HostSettings::rememberFrameKey, HostSettings::effectNameKey, HostSettings::showSavedKey,
          HostSettings::rulerKey, HostSettings::chainKey, HostSettings::gridKey, HostSettings::remoteKey})
        QTest::newRow(key) << key;
}

void tst_HostControllers::boxesAreKeptAtOnce()
{
    QFETCH(QString, key);
    ControlledHost host;
    QWPreferencesPanel::open();
    auto &box = host.control<QCheckBox>(key);
    const bool before = box.isChecked();
    box.click();
    QVERIFY(host.system.userDefaults().isSet(key));
    QCOMPARE(host.system.userDefaults().boolean(key), !before);
    QCOMPARE(HostSettings::isOn(key.toLatin1().constData()), !before);
}

void tst_HostControllers::choicesAreKeptAtOnce()
{
    ControlledHost host;
    QWPreferencesPanel::open();
    auto &format = host.control<QComboBox>("Save Format");
    format.setFocus();
    QTest::keyClick(&format, Qt::Key_Down);
    QCOMPARE(demo::SaveRequest::format(), SoundFile::Format::Wav24);
    QTest::keyClick(&format, Qt::Key_Down); // the list is in the order of the menu, not of the numbers
    QCOMPARE(demo::SaveRequest::format(), SoundFile::Format::Wav16);
    QWPreferencesPanel::update();
    QCOMPARE(format.currentText(), QString("WAV, 16-bit"));
    auto &launch = host.control<QComboBox>(HostSettings::launchKey);
    QTest::keyClick(&launch, Qt::Key_Down);
    QCOMPARE(HostSettings::launch(), HostSettings::Launch::TestTone);
}

void tst_HostControllers::mainWindowFollowsAtOnce()
{
    ControlledHost host;
    QWPreferencesPanel::open();
    QVERIFY(host.window.showsRuler());
    host.control<QCheckBox>(HostSettings::rulerKey).click();
    QVERIFY(!host.window.showsRuler());
    host.control<QCheckBox>(HostSettings::chainKey).click();
    QVERIFY(!host.window.showsChain());
}

void tst_HostControllers::closingAsksOnlyWhenWanted()
{
    ControlledHost host;
    host.document.addStep({"Effect", "", host.document.source()});
    host.system.userDefaults().setObject(HostSettings::askKey, false);
    host.window.close();
    QVERIFY(host.system.alerts.shown.isEmpty());
    QVERIFY(!host.window.isVisible());
}

void tst_HostControllers::everyPaneOpens()
{
    ControlledHost host;
    for (const char *name : {"general", "files", "controllers", "appearance"}) {
        QWPreferencesPanel::openPane(name);
        QCOMPARE(QWPreferencesPanel::sharedInstance().currentPane()->identifier(), name);
        QVERIFY(!QWPreferencesPanel::sharedInstance().currentPane()->title().isEmpty());
    }
    QWPreferencesPanel::sharedInstance().panel()->close();
}

void tst_HostControllers::screenReadersHearTheLabelOfEachChoice()
{
    ControlledHost host;
    QWPreferencesPanel::open();
    int labelled = 0;
    for (QWPreferencesPane *pane : QWPreferencesPanel::sharedInstance().panes())
        for (QComboBox *choice : pane->findChildren<QComboBox *>()) {
            const auto relations = QAccessible::queryAccessibleInterface(choice)->relations(QAccessible::Label);
            QCOMPARE(relations.size(), 1);
            QVERIFY(relations.first().first->text(QAccessible::Name).startsWith(choice->accessibleName()));
            ++labelled;
        }
    QCOMPARE(labelled, 3);
    QWPreferencesPanel::sharedInstance().panel()->close();
}

QW_TEST_MAIN(tst_HostControllers)

#include "tst_HostControllers.moc"
