#include "ScriptedPlugin.h"
#include "Sounds.h"

#include <app/MainWindow.h>
#include <app/SoundActions.h>
#include <audio/SoundFile.h>
#include <audio/WorkProgress.h>
#include <fakes/FakeSystem.h>
#include <fakes/QWTestMain.h>
#include <foundation/NoThreads.h>
#include <views/TransportLine.h>

#include <QWBase/QWComponentDescription.h>
#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/FileDescriptor.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QLabel>
#include <QRegularExpression>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

using platform::System;

/// Long for work of half a second at most, but machines that build meanwhile are slow.
static constexpr int patience = 30'000; // milliseconds

/// The host's actions on the fake machine.
class tst_SoundActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
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
    void workForWhichThereIsNoThreadIsTold();
    void testToneThatCannotBeMadeIsTold();
    void resultIsSavedInTheChosenFormat();
    void savedSoundIsNamedAfterItsFile();
    void closingAsksForAnUnsavedResult();
    void closingAsksForASoundThatWasLeftBehind();
    void closingEndsWorkBeforeItSaves();
    void cancelledSaveClosesNothingLater();
    void menuItemsFollowTheDocument();

private:
    void _open(const QString &name = "in.wav");
    void _apply(const QVariant &plugIn);
    void _waitForWork() { QTRY_VERIFY_WITH_TIMEOUT(!m_actions->work().isRunning(), patience); }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<System::Scope> m_scope;
    std::unique_ptr<demo::AudioDocument> m_document;
    std::unique_ptr<demo::MainWindow> m_window;
    std::unique_ptr<demo::SoundActions> m_actions;
    ScriptedPlugin::Report m_report;
    ScriptedPlugin::Script m_script;
};

static const QWComponentDescription unit(platform::fourCharCode("aufx"), 1, 2);

void tst_SoundActions::init()
{
    m_report = {};
    m_script = {};
    m_system = std::make_unique<FakeSystem>();
    m_scope = std::make_unique<System::Scope>(*m_system);
    m_document = std::make_unique<demo::AudioDocument>();
    m_window = std::make_unique<demo::MainWindow>(*m_document);
    m_actions = std::make_unique<demo::SoundActions>(*m_document, *m_window);
    m_system->pluginLoader.makeComponent = [this](const platform::AudioComponent &component) {
        return component == unit.component() ? std::make_unique<ScriptedPlugin>(m_script, m_report) : nullptr;
    };
}

void tst_SoundActions::cleanup()
{
    m_actions.reset();
    m_window.reset();
    m_document.reset();
    m_scope.reset();
    m_system.reset();
}

void tst_SoundActions::_open(const QString &name)
{
    const QString path = m_system->real("~/" + name);
    QString error;
    demo::WorkProgress progress;
    QVERIFY(demo::SoundFile::write(path, sounds::constant({0.5f, -0.5f}, 4800), demo::SoundFile::Format::WavFloat,
                                   progress, &error));
    m_actions->openFile(path);
    _waitForWork();
    QCOMPARE(m_document->title(), name);
}

void tst_SoundActions::_apply(const QVariant &plugIn)
{
    platform::MenuItem item("Echo & Co");
    item.setRepresentedObject(plugIn);
    m_actions->applyEffect(&item);
    _waitForWork();
}

void tst_SoundActions::effectOfAnAudioUnitIsApplied()
{
    _open();
    _apply(QVariant::fromValue(unit));
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
    _apply(QVariant::fromValue(unit));
    QTRY_COMPARE_WITH_TIMEOUT(m_document->steps().size(), size_t(1), patience);
    QCOMPARE(m_document->title(), "Test Tone");
}

void tst_SoundActions::effectIsAppliedToTheSelectionOnly()
{
    m_script.echo = 100;
    _open(); // a tenth of a second at 48 kHz
    const auto before = m_document->source()->store.sound().channels;
    m_window->viewport().setSelection({0.025, 0.05});
    _apply(QVariant::fromValue(unit));
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
    item.setRepresentedObject(QVariant::fromValue(unit));
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
    _apply(QVariant::fromValue(unit));
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
    _apply(QVariant::fromValue(unit)); // which gives back what it is given
    QCOMPARE(m_document->result()->store.ownFrames(), 0);
    QCOMPARE(m_document->steps().size(), size_t(2));
}

void tst_SoundActions::plugInThatRefusesIsTold()
{
    _open();
    m_system->pluginLoader.makeComponent = nullptr;
    _apply(QVariant::fromValue(unit));
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
    item.setRepresentedObject(QVariant::fromValue(unit));
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
        item.setRepresentedObject(QVariant::fromValue(unit));
        m_actions->applyEffect(&item);
    }
    _waitForWork();
    QCOMPARE(m_system->alerts.shown, QStringList("The test tone could not be made."));
    QVERIFY(m_document->isEmpty());
    QVERIFY(!m_document->canUndo());
    QCOMPARE(m_report.opened, 0);
}

void tst_SoundActions::resultIsSavedInTheChosenFormat()
{
    _open();
    _apply(QVariant::fromValue(unit));
    platform::MenuItem format;
    format.setTag(static_cast<qlonglong>(demo::SoundFile::Format::Aiff24));
    m_actions->chooseSaveFormat(&format);
    const QString path = m_system->real("~/out.aiff");
    m_actions->saveDocumentAs(nullptr);
    QCOMPARE(m_system->filePanels.saves.back().suggestedName, "in Echo & Co");
    QCOMPARE(m_system->filePanels.saves.back().requiredFileType, "aiff");
    m_system->filePanels.endSave(platform::FilePanels::OK, path);
    QTRY_VERIFY_WITH_TIMEOUT(!m_document->isModified(), patience);
    demo::WorkProgress progress;
    QString error;
    const auto saved = demo::SoundFile::read(path, progress, &error);
    QVERIFY(saved);
    QCOMPARE(saved->frames(), 4800);
    QVERIFY(m_system->readFile("~/out.aiff")->startsWith("FORM"));
}

void tst_SoundActions::savedSoundIsNamedAfterItsFile()
{
    _open();
    _apply(QVariant::fromValue(unit));
    platform::MenuItem format;
    format.setTag(static_cast<qlonglong>(demo::SoundFile::Format::Wav16));
    m_actions->chooseSaveFormat(&format);
    m_actions->saveDocumentAs(nullptr);
    QVERIFY(m_system->filePanels.saves.back().otherFileTypes.contains("aif"));
    m_system->filePanels.endSave(platform::FilePanels::OK, m_system->real("~/out.aif"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_document->isModified(), patience);
    QCOMPARE(m_document->title(), "out.aif");
    QVERIFY(m_system->readFile("~/out.aif")->startsWith("FORM"));
    m_actions->saveDocumentAs(nullptr);
    QCOMPARE(m_system->filePanels.saves.back().suggestedName, "out"); // "Echo & Co" is in it already
    m_system->filePanels.endSave(platform::FilePanels::Cancel);
    _apply(QVariant::fromValue(unit));
    m_actions->saveDocumentAs(nullptr);
    QCOMPARE(m_system->filePanels.saves.back().suggestedName, "out Echo & Co");
    m_system->filePanels.endSave(platform::FilePanels::Cancel);
}

void tst_SoundActions::closingAsksForAnUnsavedResult()
{
    _open();
    _apply(QVariant::fromValue(unit));
    m_window->show();
    m_system->alerts.answerWith({"Cancel", "Don’t Save"});
    QVERIFY(!m_window->close());
    QVERIFY(m_window->close());
    QCOMPARE(m_system->alerts.shown.size(), 2);
}

void tst_SoundActions::closingAsksForASoundThatWasLeftBehind()
{
    _open();
    _apply(QVariant::fromValue(unit));
    _open("other.wav");
    m_window->show();
    m_system->alerts.answerWith({"Cancel", "Close Anyway"});
    QVERIFY(!m_window->close());
    QCOMPARE(m_system->alerts.shown.back(), "What was done to “in.wav” is not saved.");
    QVERIFY(m_window->close());
}

void tst_SoundActions::closingEndsWorkBeforeItSaves()
{
    _open();
    _apply(QVariant::fromValue(unit));
    m_window->show();
    m_actions->openTestTone(nullptr);
    m_system->alerts.answerWith({"Save As…", "Save As…"});
    QVERIFY(!m_window->close());
    QVERIFY(!m_window->close()); // again, since it takes its time
    QTRY_COMPARE_WITH_TIMEOUT(m_system->filePanels.saves.size(), 1, patience);
    m_system->filePanels.endSave(platform::FilePanels::OK, m_system->real("~/out.wav"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->isVisible(), patience);
    QCOMPARE(m_document->sourceTitle(), "in.wav");
}

void tst_SoundActions::cancelledSaveClosesNothingLater()
{
    _open();
    _apply(QVariant::fromValue(unit));
    m_window->show();
    m_system->alerts.answerWith({"Save As…"});
    QVERIFY(!m_window->close());
    const QByteArray part = QFile::encodeName(m_system->real("~/out.wav.part"));
    QCOMPARE(::mkfifo(part.constData(), 0600), 0); // it waits there until somebody reads
    m_system->filePanels.endSave(platform::FilePanels::OK, m_system->real("~/out.wav"));
    m_actions->cancelWork(nullptr);
    {
        const platform::FileDescriptor reader(::open(part.constData(), O_RDONLY | O_NONBLOCK));
        _waitForWork();
    }
    QVERIFY(m_document->isModified());
    m_actions->saveDocumentAs(nullptr);
    m_system->filePanels.endSave(platform::FilePanels::OK, m_system->real("~/out.wav"));
    _waitForWork();
    QVERIFY(!m_document->isModified());
    QVERIFY(m_window->isVisible());
}

void tst_SoundActions::menuItemsFollowTheDocument()
{
    platform::MenuItem undo("Undo"), save("Save As…");
    undo.setAction("undoChange:");
    save.setAction("saveDocumentAs:");
    QVERIFY(!m_actions->validateMenuItem(&undo));
    QVERIFY(!m_actions->validateMenuItem(&save));
    _open();
    _apply(QVariant::fromValue(unit));
    QVERIFY(m_actions->validateMenuItem(&undo));
    QCOMPARE(undo.title(), "Undo Echo & Co");
    QVERIFY(m_actions->validateMenuItem(&save));
}

QW_TEST_MAIN(tst_SoundActions)
#include "tst_SoundActions.moc"
