#include "Sounds.h"

#include <app/MainWindow.h>
#include <audio/AudioDocument.h>
#include <fakes/FakeSystem.h>
#include <fakes/QWTestMain.h>
#include <views/ChainChip.h>
#include <views/ChainStrip.h>
#include <views/TransportLine.h>

#include <QWPlatform/foundation/TextForms.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QFocusEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScreen>

/// Where the window stands.
class tst_MainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void firstStartIsCentred();
    void frameOfTheLastRunComesBack();
    void frameIsFittedToTheScreen_data();
    void frameIsFittedToTheScreen();
    void frameThatNoScreenShowsIsForgotten();
    void fittedFrameIsNotRemembered();
    void fittedFrameThatWasMovedIsRemembered();
    void windowThatDoesNotRestoreRemembersNothing();
    void maximisedWindowIsMaximisedAgain();
    void anotherSoundIsShownFromItsStart();
    void editLeavesTheViewWhereItIs();
    void savedSoundIsInTheTitle();
    void lengthOfTheSelectionIsShown();
    void buttonComesUpWhenItsMenuCloses();
    void longChainShowsTheStationOfTheMoment();

private:
    static QRect _room() { return QGuiApplication::primaryScreen()->availableGeometry(); }
    QString _stored() const { return m_system->userDefaults().string(m_key); }
    void _store(const QRect &frame)
    {
        m_system->userDefaults().setObject(m_key, platform::TextForms::stringFromRect(frame));
    }

    const QString m_key = QGuiApplication::applicationDisplayName() + " Frame";
    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
    std::unique_ptr<demo::AudioDocument> m_document;
    std::unique_ptr<demo::MainWindow> m_window;
};

void tst_MainWindow::init()
{
    m_system = std::make_unique<FakeSystem>();
    m_scope = std::make_unique<platform::SystemScope>(*m_system);
    m_document = std::make_unique<demo::AudioDocument>();
    m_window = std::make_unique<demo::MainWindow>(*m_document);
}

void tst_MainWindow::cleanup()
{
    m_window.reset();
    m_document.reset();
    m_scope.reset();
    m_system.reset();
}

void tst_MainWindow::firstStartIsCentred()
{
    m_window->resize(600, 420);
    m_window->restoreFrame();
    QCOMPARE(m_window->size(), QSize(600, 420));
    QCOMPARE(m_window->geometry().center(), _room().center());
}

void tst_MainWindow::frameOfTheLastRunComesBack()
{
    const QRect frame(20, 60, 620, 440);
    _store(frame);
    m_window->restoreFrame();
    QCOMPARE(m_window->geometry(), frame);
}

void tst_MainWindow::frameIsFittedToTheScreen_data()
{
    QTest::addColumn<QRect>("frame");
    const QRect room = _room();
    QTest::newRow("too large") << QRect(0, 0, room.width() * 2, room.height() * 2);
    QTest::newRow("half outside on the right") << QRect(room.right() - 100, 60, 600, 420);
    QTest::newRow("half outside at the bottom") << QRect(60, room.bottom() - 50, 600, 420);
    QTest::newRow("half outside on the left") << QRect(room.left() - 300, 60, 600, 420);
    QTest::newRow("title bar above the screen") << QRect(60, room.top() - 40, 600, 420);
}

void tst_MainWindow::frameIsFittedToTheScreen()
{
    QFETCH(QRect, frame);
    _store(frame);
    m_window->setMinimumSize(1, 1); // the screen of a test may be small
    m_window->restoreFrame();
    QVERIFY(_room().contains(m_window->geometry()));
    QVERIFY(m_window->geometry().top() >= _room().top() + 32); // room for the title bar
    QVERIFY(m_window->width() <= frame.width() && m_window->height() <= frame.height());
}

void tst_MainWindow::frameThatNoScreenShowsIsForgotten()
{
    _store(QRect(100'000, 100'000, 600, 420));
    m_window->resize(600, 420);
    m_window->restoreFrame();
    QCOMPARE(m_window->geometry().center(), _room().center());
}

void tst_MainWindow::fittedFrameIsNotRemembered()
{
    _store(QRect(0, 0, 5000, 4000));
    const QString before = _stored();
    m_window->restoreFrame();
    QVERIFY(m_window->close());
    QCOMPARE(_stored(), before);
}

void tst_MainWindow::fittedFrameThatWasMovedIsRemembered()
{
    _store(QRect(0, 0, 5000, 4000));
    m_window->restoreFrame();
    m_window->setGeometry(30, 70, 610, 430);
    QVERIFY(m_window->close());
    QCOMPARE(_stored(), platform::TextForms::stringFromRect(QRect(30, 70, 610, 430)));
}

void tst_MainWindow::windowThatDoesNotRestoreRemembersNothing()
{
    m_window->show();
    QVERIFY(m_window->close());
    QCOMPARE(_stored(), QString());
}

void tst_MainWindow::maximisedWindowIsMaximisedAgain()
{
    const QRect frame(20, 60, 620, 440);
    _store(frame);
    m_window->restoreFrame();
    m_window->showMaximized();
    QTRY_VERIFY(m_window->isMaximized());
    QVERIFY(m_window->close());
    QCOMPARE(_stored(), platform::TextForms::stringFromRect(frame));
    demo::MainWindow next(*m_document);
    next.restoreFrame();
    next.show();
    QTRY_VERIFY(next.isMaximized());
    next.showNormal();
    QTRY_COMPARE(next.geometry(), frame);
    QVERIFY(next.close());
    demo::MainWindow last(*m_document);
    last.restoreFrame();
    QVERIFY(!last.isMaximized());
}

void tst_MainWindow::anotherSoundIsShownFromItsStart()
{
    demo::Viewport &viewport = m_window->viewport();
    m_document->setSource("Sample", "Test", sounds::clip());
    viewport.setPosition(0.008);
    viewport.setVisible({0.002, 0.008});
    viewport.setSelection({0.002, 0.004});
    m_document->setSource("Other", "Test", sounds::clip());
    QVERIFY(viewport.showsAll());
    QVERIFY(viewport.selection().isEmpty());
    QCOMPARE(viewport.position(), 0.0);
}

void tst_MainWindow::editLeavesTheViewWhereItIs()
{
    demo::Viewport &viewport = m_window->viewport();
    m_document->setSource("Sample", "Test", sounds::clip());
    viewport.setPosition(0);
    viewport.setVisible({0.002, 0.008});
    m_document->addStep({"Reverse", "Whole sound", sounds::clip()});
    QCOMPARE(viewport.visible(), (demo::TimeRange{0.002, 0.008}));
    m_document->undo();
    m_document->redo();
    QCOMPARE(viewport.visible(), (demo::TimeRange{0.002, 0.008}));
}

void tst_MainWindow::savedSoundIsInTheTitle()
{
    m_document->setSource("Sample.wav", "Test", sounds::clip());
    m_document->addStep({"Echo", "Test", sounds::clip()});
    QVERIFY(m_window->isWindowModified());
    m_document->setSaved("Saved.wav");
    QVERIFY(m_window->windowTitle().startsWith("Saved.wav[*] — "));
    QVERIFY(!m_window->isWindowModified());
}

void tst_MainWindow::lengthOfTheSelectionIsShown()
{
    m_document->setSource("Sample.wav", "Test", sounds::clip());
    const auto shows = [this](const QString &facts) {
        const auto labels = m_window->transport().findChildren<QLabel *>();
        return std::ranges::any_of(labels, [&](const QLabel *label) { return label->text() == facts; });
    };
    QVERIFY(shows("0:00.010 · 48 kHz · Mono"));
    m_window->viewport().setSelection({0.002, 0.006});
    QVERIFY(shows("0:00.010 · 48 kHz · Mono · 0:00.004 selected"));
    m_document->addStep({"Echo", "Test", sounds::clip()});
    QVERIFY(shows("0:00.010 · 48 kHz · Mono · 0:00.004 selected"));
    m_window->viewport().setSelection({});
    QVERIFY(shows("0:00.010 · 48 kHz · Mono"));
}

/// The menus of the buttons are those of the menu bar.
void tst_MainWindow::buttonComesUpWhenItsMenuCloses()
{
    QMenu effects, instruments;
    effects.addAction("Echo");
    m_window->setPlugInMenus(&effects, &instruments);
    m_document->setSource("Sample", "Test", sounds::clip());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QPushButton *const add = m_window->findChild<demo::ChainStrip *>()->addButton();
    add->setFocus();
    effects.popup({100, 100});
    QTRY_VERIFY(effects.isVisible());
    QFocusEvent out(QEvent::FocusOut, Qt::PopupFocusReason);
    QCoreApplication::sendEvent(add, &out);
    QVERIFY(add->isDown());
    effects.close();
    QTRY_VERIFY(!add->isDown());
}

void tst_MainWindow::longChainShowsTheStationOfTheMoment()
{
    m_document->setSource("Sample", "Test", sounds::clip());
    m_window->show();
    for (int i = 0; i < 12; ++i)
        m_document->addStep({"An effect", "Somebody", sounds::clip()});
    auto *const strip = m_window->findChild<demo::ChainStrip *>();
    const auto isInView = [&](const QWidget &widget) {
        const QRect place(widget.mapTo(strip->viewport(), QPoint()), widget.size());
        return strip->viewport()->rect().contains(place);
    };
    QVERIFY(isInView(*strip->addButton()));
    m_window->showStation(0);
    QVERIFY(isInView(*strip->findChild<demo::ChainChip *>()));
    QVERIFY(!isInView(*strip->addButton()));
}

QW_TEST_MAIN(tst_MainWindow)
#include "tst_MainWindow.moc"
