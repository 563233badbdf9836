#include "Sounds.h"

#include <audio/AudioDocument.h>

#include <QSignalSpy>
#include <QTest>

using demo::AudioDocument;

class tst_AudioDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newDocumentIsEmptyAndHasNothingToUndo();
    void stepsChainFromResultToResult();
    void undoTakesBackTheLastStepAndRedoBringsItAgain();
    void aNewStepForgetsWhatCouldBeRedone();
    void instrumentThatReplacesTheSoundCanBeUndone();
    void onlyWhatPlugInsMadeIsWorthSaving();
    void savedSoundHasTheNameOfItsFile();
    void historyHasAnEnd();
    void soundLeftBehindUnsavedIsKnown();
};

void tst_AudioDocument::newDocumentIsEmptyAndHasNothingToUndo()
{
    AudioDocument document;
    QVERIFY(document.isEmpty());
    QVERIFY(!document.result());
    QVERIFY(!document.canUndo() && !document.canRedo());
    document.undo();
    document.redo();
    QVERIFY(document.isEmpty());
}

void tst_AudioDocument::stepsChainFromResultToResult()
{
    AudioDocument document;
    QSignalSpy changed(&document, &AudioDocument::changed);
    const auto source = sounds::clip(), first = sounds::clip(), second = sounds::clip();
    document.setSource("Tone", "Built-in", source);
    document.addStep({"Delay", "Acme", first});
    document.addStep({"Reverb", "", second});
    QCOMPARE(changed.size(), 3);
    QCOMPARE(document.before(0), source);
    QCOMPARE(document.before(1), first);
    QCOMPARE(document.result(), second);
}

void tst_AudioDocument::undoTakesBackTheLastStepAndRedoBringsItAgain()
{
    AudioDocument document;
    const auto source = sounds::clip(), first = sounds::clip();
    document.setSource("Tone", "Built-in", source);
    document.addStep({"Delay", "Acme", first});
    QCOMPARE(document.undoName(), "Delay");
    document.undo();
    QCOMPARE(document.result(), source);
    QCOMPARE(document.redoName(), "Delay");
    document.redo();
    QCOMPARE(document.result(), first);
    QCOMPARE(document.redoName(), QString());
}

void tst_AudioDocument::aNewStepForgetsWhatCouldBeRedone()
{
    AudioDocument document;
    document.setSource("Tone", "Built-in", sounds::clip());
    document.addStep({"Delay", "Acme", sounds::clip()});
    document.undo();
    document.addStep({"Reverb", "Acme", sounds::clip()});
    QVERIFY(!document.canRedo());
    QCOMPARE(document.steps().size(), size_t(1));
    QCOMPARE(document.steps()[0].name, "Reverb");
}

void tst_AudioDocument::instrumentThatReplacesTheSoundCanBeUndone()
{
    AudioDocument document;
    document.setSource("Tone", "Built-in", sounds::clip());
    document.addStep({"Delay", "Acme", sounds::clip()});
    document.setSource("Piano", "Acme", sounds::clip());
    QVERIFY(document.steps().empty());
    document.undo();
    QCOMPARE(document.title(), "Tone");
    QCOMPARE(document.steps().size(), size_t(1));
}

void tst_AudioDocument::onlyWhatPlugInsMadeIsWorthSaving()
{
    AudioDocument document;
    document.setSource("Tone", "Built-in", sounds::clip());
    QVERIFY(!document.isModified());
    document.addStep({"Delay", "Acme", sounds::clip()});
    QVERIFY(document.isModified());
    document.setSaved();
    QVERIFY(!document.isModified());
    document.addStep({"Reverb", "Acme", sounds::clip()});
    QVERIFY(document.isModified());
    document.undo();
    QVERIFY(!document.isModified());
}

void tst_AudioDocument::savedSoundHasTheNameOfItsFile()
{
    AudioDocument document;
    document.setSource("Bell.wav", "File", sounds::clip());
    document.addStep({"Delay", "Acme", sounds::clip()});
    document.addStep({"Reverb", "Acme", sounds::clip()});
    document.undo();
    document.setSaved("Late Bell.wav");
    QCOMPARE(document.title(), "Late Bell.wav");
    QCOMPARE(document.sourceTitle(), "Bell.wav");
    document.redo();
    QCOMPARE(document.title(), "Late Bell.wav");
    QVERIFY(document.isModified());
    document.undo();
    document.undo();
    QCOMPARE(document.title(), "Bell.wav"); // which is what that file holds
    QVERIFY(!document.isModified());
}

void tst_AudioDocument::historyHasAnEnd()
{
    AudioDocument document;
    for (size_t i = 0; i < AudioDocument::longestHistory + 10; ++i)
        document.setSource(QString::number(i), "Built-in", sounds::clip());
    size_t undone = 0;
    for (; document.canUndo(); ++undone)
        document.undo();
    QCOMPARE(undone, AudioDocument::longestHistory);
}

void tst_AudioDocument::soundLeftBehindUnsavedIsKnown()
{
    AudioDocument document;
    document.setSource("Tone", "Built-in", sounds::clip());
    document.addStep({"Delay", "Acme", sounds::clip()});
    QCOMPARE(document.replacedUnsaved(), "");
    document.setSource("Bell", "File", sounds::clip());
    document.addStep({"Reverb", "Acme", sounds::clip()});
    QCOMPARE(document.replacedUnsaved(), "Tone");
    document.undo();
    document.undo();
    QCOMPARE(document.replacedUnsaved(), "");
    document.setSaved();
    document.setSource("Gong", "File", sounds::clip());
    QCOMPARE(document.replacedUnsaved(), "");
}

QTEST_APPLESS_MAIN(tst_AudioDocument)
#include "tst_AudioDocument.moc"
