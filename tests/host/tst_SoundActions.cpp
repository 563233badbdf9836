#include "SoundActionsTest.h"

#include <fakes/QWTestMain.h>
#include <foundation/NoThreads.h>
#include <views/TransportLine.h>

#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/appkit/MenuItem.h>

#include <QLabel>
#include <QRegularExpression>

/// What is applied to the sound, and what takes its place.
class tst_SoundActions : public SoundActionsTest
{
    Q_OBJECT

private Q_SLOTS:
    void effectOfAnAudioUnitIsApplied();
    void effectOfAVSTIsApplied();
    void effectWithoutASoundUsesTheTestTone();
    void effectIsAppliedToTheSelectionOnly();
    void stepIsOfWhatWasSelectedWhenItBegan();
    void selectionBehindTheEndIsTold();
    void undoKeepsWhatWasChangedOnly();
    void plugInThatRefusesIsTold();
    void itemWithoutAPlugInDoesNothing();
    void instrumentReplacesTheSound();
    void fileThatIsNoSoundIsTold();
    void fileDuringOtherWorkIsOpenedAfterIt();
    void workForWhichThereIsNoThreadIsTold();
    void testToneThatCannotBeMadeIsTold();
    void menuItemsFollowTheDocument();
};

void tst_SoundActions::effectOfAnAudioUnitIsApplied()
{
    _open();
    _apply(QVariant::fromValue(unit()));
    QCOMPARE(m_document->steps().size(), size_t(1));
    QCOMPARE(m_document->steps()[0].name, "Echo & Co");
    QCOMPARE(m_document->steps()[0].vendor, "Tests");
    QCOMPARE(m_document->result()->store.sound().channels, m_document->source()->store.sound().channels);
    QVERIFY(m_window->isWindowModified());
}

void tst_SoundActions::effectOfAVSTIsApplied()
{
    QString opened;
    m_system->pluginLoader.makeVST = [&](const QString &path) {
        opened = path;
        return std::make_unique<ScriptedPlugin>(ScriptedPlugin::Script{}, m_report);
    };
    m_system->addVSTBundle("~/Library/Audio/Plug-Ins/VST/Echo.vst");
    _open();
    _apply(QVariant::fromValue(QWVSTDescription::descriptionWithPath("~/Library/Audio/Plug-Ins/VST/Echo.vst")));
    QCOMPARE(opened, "~/Library/Audio/Plug-Ins/VST/Echo.vst");
    QCOMPARE(m_document->steps().size(), size_t(1));
}

void tst_SoundActions::effectWithoutASoundUsesTheTestTone()
{
    _apply(QVariant::fromValue(unit()));
    QTRY_COMPARE_WITH_TIMEOUT(m_document->steps().size(), size_t(1), patience);
    QCOMPARE(m_document->title(), "Test Tone");
}

void tst_SoundActions::effectIsAppliedToTheSelectionOnly()
{
    m_script.echo = 100;
    _open(); // a tenth of a second at 48 kHz
    const auto before = m_document->source()->store.sound().channels;
    m_window->viewport().setSelection({0.025, 0.05});
    _apply(QVariant::fromValue(unit()));
    QCOMPARE(m_document->steps().size(), size_t(1));
    QCOMPARE(m_document->steps()[0].vendor, "Tests · Selection");
    const auto after = m_document->result()->store.sound().channels;
    QCOMPARE(after[0].size(), before[0].size());
    for (size_t frame = 0; frame < after[0].size(); ++frame)
        QCOMPARE(after[0][frame], frame >= 1300 && frame < 2400 ? 0.75f : 0.5f);
    QCOMPARE(m_window->viewport().selection(), (demo::TimeRange{0.025, 0.05}));
}

void tst_SoundActions::stepIsOfWhatWasSelectedWhenItBegan()
{
    _open();
    platform::MenuItem item("Echo");
    item.setRepresentedObject(QVariant::fromValue(unit()));
    m_actions->applyEffect(&item);
    m_window->viewport().setSelection({0.025, 0.05});
    _waitForWork();
    QCOMPARE(m_document->steps().back().vendor, "Tests");
    platform::MenuItem invert;
    invert.setRepresentedObject("invert");
    m_actions->applyEdit(&invert);
    m_window->viewport().setSelection({});
    _waitForWork();
    QCOMPARE(m_document->steps().back().vendor, "Selection");
}

/// Of an earlier, longer state of the sound.
void tst_SoundActions::selectionBehindTheEndIsTold()
{
    _open();
    m_window->viewport().setSelection({0, 0.05});
    platform::MenuItem trim;
    trim.setRepresentedObject("delete");
    m_actions->applyEdit(&trim);
    _waitForWork();
    m_window->viewport().setSelection({0.06, 0.1}); // "before" still shows it
    _apply(QVariant::fromValue(unit()));
    trim.setRepresentedObject("invert");
    m_actions->applyEdit(&trim);
    QVERIFY(!m_actions->work().isRunning());
    QCOMPARE(m_document->steps().size(), size_t(1));
    QCOMPARE(m_report.opened, 0);
    const auto texts = m_window->transport().findChildren<QLabel *>();
    QVERIFY(std::ranges::any_of(texts, [](const QLabel *label) {
        return label->text() == QString("The selection holds nothing of the result");
    }));
}

void tst_SoundActions::undoKeepsWhatWasChangedOnly()
{
    _open();
    m_window->viewport().setSelection({0.025, 0.05});
    platform::MenuItem invert;
    invert.setRepresentedObject("invert");
    m_actions->applyEdit(&invert);
    _waitForWork();
    QCOMPARE(m_document->result()->store.ownFrames(), 1200);
    _apply(QVariant::fromValue(unit())); // which gives back what it is given
    QCOMPARE(m_document->result()->store.ownFrames(), 0);
    QCOMPARE(m_document->steps().size(), size_t(2));
}

void tst_SoundActions::plugInThatRefusesIsTold()
{
    _open();
    m_system->pluginLoader.makeComponent = nullptr;
    _apply(QVariant::fromValue(unit()));
    QCOMPARE(m_system->alerts.shown, QStringList{"“Echo & Co” could not be applied."});
    QCOMPARE(m_system->alerts.alerts[0].informativeText, "The plug-in refused.");
    QVERIFY(m_document->steps().empty());
}

void tst_SoundActions::itemWithoutAPlugInDoesNothing()
{
    _open();
    _apply({});
    _apply(QVariant::fromValue(std::shared_ptr<QWVSTDescription>()));
    m_actions->applyEffect(nullptr);
    QVERIFY(m_document->steps().empty());
    QVERIFY(m_system->alerts.shown.isEmpty());
}

void tst_SoundActions::instrumentReplacesTheSound()
{
    _open();
    platform::MenuItem item("Piano");
    item.setRepresentedObject(QVariant::fromValue(unit()));
    m_actions->playInstrument(&item);
    _waitForWork();
    QCOMPARE(m_document->title(), "Piano");
    QVERIFY(!m_report.events.empty());
    m_actions->undoChange(nullptr);
    QCOMPARE(m_document->title(), "in.wav");
}

void tst_SoundActions::fileThatIsNoSoundIsTold()
{
    m_system->writeFile("~/words.wav", "no sound");
    m_actions->openFile(m_system->real("~/words.wav"));
    _waitForWork();
    QCOMPARE(m_system->alerts.shown, QStringList{"“words.wav” could not be opened."});
    QVERIFY(m_document->isEmpty());
}

/// As when takes arrive from a recorder one after another.
void tst_SoundActions::fileDuringOtherWorkIsOpenedAfterIt()
{
    _open("first.wav");
    platform::MenuItem item("Echo");
    item.setRepresentedObject(QVariant::fromValue(unit()));
    m_actions->applyEffect(&item);
    QVERIFY(m_actions->work().isRunning());
    for (const char *name : {"second.wav", "third.wav"}) {
        QVERIFY(QFile::copy(m_system->real("~/first.wav"), m_system->real(QString("~/") + name)));
        m_actions->openFile(m_system->real(QString("~/") + name));
    }
    QCOMPARE(m_document->title(), "first.wav");
    QTRY_COMPARE_WITH_TIMEOUT(m_document->title(), "third.wav", patience);
    QVERIFY(m_system->alerts.shown.isEmpty());
}

void tst_SoundActions::workForWhichThereIsNoThreadIsTold()
{
    {
        const NoThreads poverty;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Background work cannot be started: "));
        m_actions->openFile("in.wav");
    }
    _waitForWork();
    QCOMPARE(m_system->alerts.shown, QStringList("“in.wav” could not be opened."));
    QCOMPARE(m_system->alerts.alerts[0].informativeText, "There is no room for more work.");
    _open(); // the next one may have a thread
}

/// And nothing is applied to it.
void tst_SoundActions::testToneThatCannotBeMadeIsTold()
{
    {
        const NoThreads poverty;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Background work cannot be started: "));
        platform::MenuItem item("Echo");
        item.setRepresentedObject(QVariant::fromValue(unit()));
        m_actions->applyEffect(&item);
    }
    _waitForWork();
    QCOMPARE(m_system->alerts.shown, QStringList("The test tone could not be made."));
    QVERIFY(m_document->isEmpty());
    QVERIFY(!m_document->canUndo());
    QCOMPARE(m_report.opened, 0);
}

void tst_SoundActions::menuItemsFollowTheDocument()
{
    platform::MenuItem undo("Undo"), save("Save As…");
    undo.setAction("undoChange:");
    save.setAction("saveDocumentAs:");
    QVERIFY(!m_actions->validateMenuItem(&undo));
    QVERIFY(!m_actions->validateMenuItem(&save));
    _open();
    _apply(QVariant::fromValue(unit()));
    QVERIFY(m_actions->validateMenuItem(&undo));
    QCOMPARE(undo.title(), "Undo Echo & Co");
    QVERIFY(m_actions->validateMenuItem(&save));
}

QW_TEST_MAIN(tst_SoundActions)
#include "tst_SoundActions.moc"
