#include "HostTest.h"

#include <app/SaveRequest.h>
#include <views/TransportLine.h>

#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/Theme.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/plugins/QWVSTWrapping.h>
#include <QWUtilities/shell/QWAboutPanel.h>
#include <QWUtilities/shell/QWManual.h>
#include <QWUtilities/shell/QWSplashScreen.h>
#include <QWUtilities/shortcuts/editor/ShortcutEditor.h>

#include <QDir>
#include <QSemaphore>
#include <QToolButton>

/// The shortcuts that leave the sound as it is, those of the view, playback and windows, pressed, and what comes of it.
class tst_HostActions : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void zoomAndScroll();
    void positionMoves_data();
    void positionMoves();
    void selectionsAreMade_data();
    void selectionsAreMade();
    void playbackRunsAndStops();
    void playbackTurnsThePage();
    void playButtonPlaysAndStops();
    void playbackOfTheSelection();
    void viewsAreToggled_data();
    void viewsAreToggled();
    void themeIsChosenAndRemembered();
    void formatsAreChosen();
    void filePanelsAndToneAreAskedFor();
    void windowsOpen();
    void plugInsAreLookedFor();
    void editorIsOpenedAndClosed();
    void quitAsksForAnUnsavedResult();
};

void tst_HostActions::zoomAndScroll()
{
    QVERIFY(_host().press("Zoom>In"));
    QCOMPARE(_viewport().visible(), (demo::TimeRange{0, 2.5}));
    QVERIFY(_host().press("Scroll>Right"));
    QCOMPARE(_viewport().visible(), (demo::TimeRange{1.25, 3.75}));
    QVERIFY(_host().press("Scroll>Left"));
    QCOMPARE(_viewport().visible(), (demo::TimeRange{0, 2.5}));
    QVERIFY(_host().press("Zoom>Out"));
    QVERIFY(_viewport().showsAll());
    QVERIFY(!_host().press("Zoom>To Selection")); // there is none
    _viewport().setSelection({1, 2});
    QVERIFY(_host().press("Zoom>To Selection"));
    QCOMPARE(_viewport().visible(), (demo::TimeRange{1, 2}));
    QVERIFY(_host().press("Zoom>To Fit"));
    QVERIFY(_viewport().showsAll());
}

void tst_HostActions::positionMoves_data()
{
    QTest::addColumn<double>("position"); // from 2 on, with 1 to 3 selected
    QTest::newRow("Back") << 1.96;
    QTest::newRow("Forward") << 2.04;
    QTest::newRow("Far Back") << 1.6;
    QTest::newRow("Far Forward") << 2.4;
    QTest::newRow("Go to Start") << 0.0;
    QTest::newRow("Go to End") << 4.0;
    QTest::newRow("Go to Start of Selection") << 1.0;
    QTest::newRow("Go to End of Selection") << 3.0;
}

void tst_HostActions::positionMoves()
{
    _viewport().setSelection({1, 3});
    _viewport().setPosition(2);
    QVERIFY(_host().press(QTest::currentDataTag()));
    QTEST(_viewport().position(), "position");
}

void tst_HostActions::selectionsAreMade_data()
{
    QTest::addColumn<double>("begin"); // from 2 on, with 1 to 3 selected
    QTest::addColumn<double>("end");
    QTest::newRow("Select All") << 0.0 << 4.0;
    QTest::newRow("Select Nothing") << 0.0 << 0.0;
    QTest::newRow("Select to Start") << 0.0 << 2.0;
    QTest::newRow("Select to End") << 2.0 << 4.0;
    QTest::newRow("Longer Selection") << 1.0 << 3.08;
    QTest::newRow("Shorter Selection") << 1.0 << 2.92;
}

void tst_HostActions::selectionsAreMade()
{
    _viewport().setSelection({1, 3});
    _viewport().setPosition(2);
    QVERIFY(_host().press(QTest::currentDataTag()));
    QTEST(_viewport().selection().begin, "begin");
    QTEST(_viewport().selection().end, "end");
}

void tst_HostActions::playbackRunsAndStops()
{
    using namespace std::chrono_literals;
    const demo::Playback &playback = _host().application.viewActions().playback();
    _viewport().setPosition(1);
    QVERIFY(_host().press("Play or Stop"));
    _host().system.clock.advance(500ms);
    QTRY_COMPARE(_viewport().position(), 1.5);
    QVERIFY(_host().press("Play or Stop"));
    QVERIFY(!playback.isPlaying());
    _viewport().setPosition(4);
    QVERIFY(_host().press("Play or Stop")); // from the start again
    QCOMPARE(_viewport().position(), 0.0);
    QVERIFY(_host().pressAndWait("Reverse")); // another sound ends it
    QVERIFY(!playback.isPlaying());
}

void tst_HostActions::playbackTurnsThePage()
{
    using namespace std::chrono_literals;
    _viewport().setVisible({0, 1});
    _viewport().setPosition(0.9);
    QVERIFY(_host().press("Play or Stop"));
    _host().system.clock.advance(200ms);
    QTRY_COMPARE(_viewport().visible(), (demo::TimeRange{1, 2}));
    QVERIFY(_host().press("Play or Stop"));
}

void tst_HostActions::playButtonPlaysAndStops()
{
    const demo::Playback &playback = _host().application.viewActions().playback();
    auto *const button = _host().window().transport().findChild<QToolButton *>();
    QVERIFY(button->isVisible());
    QCOMPARE(button->text(), QString("Play"));
    button->click();
    QVERIFY(playback.isPlaying());
    QCOMPARE(button->text(), QString("Stop"));
    button->click();
    QVERIFY(!playback.isPlaying());
    QCOMPARE(button->text(), QString("Play"));
}

void tst_HostActions::playbackOfTheSelection()
{
    using namespace std::chrono_literals;
    _viewport().setSelection({1, 2});
    QVERIFY(_host().press("Play Selection"));
    QCOMPARE(_viewport().position(), 1.0);
    _host().system.clock.advance(5s);
    QTRY_COMPARE(_viewport().position(), 2.0);
    QVERIFY(!_host().application.viewActions().playback().isPlaying());
}

void tst_HostActions::viewsAreToggled_data()
{
    QTest::addColumn<bool>("atFirst");
    QTest::newRow("Time Ruler") << true;
    QTest::newRow("Chain") << true;
    QTest::newRow("Full Screen") << false;
}

void tst_HostActions::viewsAreToggled()
{
    const QString name = QTest::currentDataTag();
    const auto isShown = [&] {
        const demo::MainWindow &window = HostUnderTest::host().window();
        return name == "Full Screen" ? window.isFullScreen()
                                     : (name == "Chain" ? window.showsChain() : window.showsRuler());
    };
    QTEST(isShown(), "atFirst");
    const bool before = isShown();
    QVERIFY(_host().press(name));
    QCOMPARE(isShown(), !before);
    QVERIFY(_host().press(name));
    QCOMPARE(isShown(), before);
}

void tst_HostActions::themeIsChosenAndRemembered()
{
    const auto windowColour = [] { return qApp->palette().color(QPalette::Window); };
    QVERIFY(_host().press("Theme>Dark"));
    QCOMPARE(windowColour(), platform::themePalette(platform::ThemeChoice::Dark).color(QPalette::Window));
    QVERIFY(demo::ViewActions::storedTheme() == platform::ThemeChoice::Dark);
    QVERIFY(_host().press("Theme>Light"));
    QCOMPARE(windowColour(), platform::themePalette(platform::ThemeChoice::Light).color(QPalette::Window));
    QVERIFY(_host().press("Theme>As the Desktop"));
    QVERIFY(demo::ViewActions::storedTheme() == platform::ThemeChoice::System);
}

void tst_HostActions::formatsAreChosen()
{
    using Format = demo::SoundFile::Format;
    const std::pair<const char *, Format> formats[] = {
        {"Format for Saving>WAV, 24-bit", Format::Wav24},   {"Format for Saving>AIFF, 32-bit float", Format::AiffFloat},
        {"Format for Saving>AIFF, 24-bit", Format::Aiff24}, {"Format for Saving>WAV, 16-bit", Format::Wav16},
        {"Format for Saving>AIFF, 16-bit", Format::Aiff16}, {"Format for Saving>WAV, 32-bit float", Format::WavFloat}};
    for (const auto &[name, format] : formats) {
        QVERIFY(_host().press(name));
        QVERIFY(demo::SaveRequest::format() == format);
    }
}

void tst_HostActions::filePanelsAndToneAreAskedFor()
{
    auto &panels = _host().system.filePanels;
    const auto opens = panels.opens.size();
    QVERIFY(_host().press("Open…"));
    QCOMPARE(panels.opens.size(), opens + 1);
    panels.endOpen(platform::FilePanels::Cancel);
    QVERIFY(_host().press("Save As…"));
    QCOMPARE(panels.saves.back().suggestedName, QString("Sample"));
    panels.endSave(platform::FilePanels::Cancel);
    QVERIFY(_host().pressAndWait("Built-in Test Tone"));
    QCOMPARE(_host().document().title(), QString("Test Tone"));
}

void tst_HostActions::windowsOpen()
{
    QVERIFY(_host().press("About"));
    QTRY_VERIFY(QWAboutPanel::aboutPanel().window()->isVisible());
    QWAboutPanel::aboutPanel().close();
    for (const char *name : {"Manual", "Legal", "Acknowledgements"}) {
        QVERIFY(_host().press(name));
        QVERIFY2(QWManual::manual().window() && QWManual::manual().window()->isVisible(), name);
        QWManual::manual().window()->close();
    }
}

// What the wrapping brings is found by the scan that follows; the window stays at work until then.
void tst_HostActions::plugInsAreLookedFor()
{
    auto &system = _host().system;
    const QString bundle = system.locations().mapped("~/Library/Audio/Plug-Ins/VST/Just Installed.vst");
    QSemaphore mayEnd;
    QStringList programs;
    system.processes.handler = [&](const platform::ChildProcessRequest &request) {
        programs += request.launchPath.section('/', -1);
        if (programs.size() == 1) {
            mayEnd.acquire();
            QDir().mkpath(bundle);
        }
        return platform::ChildProcessResult{.started = true, .exited = true, .status = 0, .output = {}};
    };
    QTRY_VERIFY(!QWSplashScreen::isVisible());
    QVERIFY(_host().press("Look for New Plug-ins"));
    QVERIFY(_host().press("Look for New Plug-ins")); // once more does no harm
    QVERIFY(!QWSplashScreen::isVisible());
    mayEnd.release();
    QTRY_VERIFY_WITH_TIMEOUT(!QWVSTWrapping::sharedInstance().isUnderWay(), HostUnderTest::patience);
    QCOMPARE(programs, QStringList({"qw-wrap-vst", "VST Validator"}));
    QVERIFY(QDir(bundle).removeRecursively());
    system.processes.handler = {};
    QTRY_VERIFY(_host().window().isVisible());
}

void tst_HostActions::editorIsOpenedAndClosed()
{
    const auto isLeftOpen = [] {
        return HostUnderTest::host().system.userDefaults().boolean("Keyboard Shortcuts Open");
    };
    QVERIFY(_host().press("Keyboard Shortcuts…"));
    QVERIFY(qw::ShortcutEditor::of(_host().registry()));
    QWidget *const window = qw::ShortcutEditor::of(_host().registry())->window();
    QVERIFY(QTest::qWaitForWindowActive(window));
    QVERIFY(isLeftOpen());
    QVERIFY(_host().pressAndWait("Reverse")); // the editor floats: it leaves shortcuts working
    QCOMPARE(_host().document().steps().size(), size_t(1));
    QVERIFY(_host().press("Keyboard Shortcuts…"));
    QTRY_VERIFY(!window->isVisible());
    QVERIFY(!isLeftOpen());
    _host().system.userDefaults().setObject("Keyboard Shortcuts Open", true);
    QWKeyboardShortcuts::loadShortcuts(); // as at the next start
    QTRY_VERIFY(window->isVisible());
    window->close();
    _host().window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&_host().window()));
}

void tst_HostActions::quitAsksForAnUnsavedResult()
{
    QVERIFY(_host().pressAndWait("Reverse"));
    _host().system.alerts.answerWith({"Cancel", "Don’t Save"});
    QVERIFY(_host().press("Quit"));
    QVERIFY(_host().window().isVisible());
    QVERIFY(_host().press("Quit"));
    QVERIFY(!_host().window().isVisible());
    QCOMPARE(_host().system.alerts.shown.size(), 2);
    _host().window().show();
}

QW_HOST_TEST_MAIN(tst_HostActions)
#include "tst_HostActions.moc"
