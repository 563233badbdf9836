#include "SoundActionsTest.h"

#include <audio/SoundFile.h>
#include <audio/WorkProgress.h>
#include <fakes/QWTestMain.h>

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/files/FileDescriptor.h>

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

/// Saving, and closing what is not saved.
class tst_SoundActionsSaving : public SoundActionsTest
{
    Q_OBJECT

private Q_SLOTS:
    void resultIsSavedInTheChosenFormat();
    void savedSoundIsNamedAfterItsFile();
    void closingAsksForAnUnsavedResult();
    void closingAsksForASoundThatWasLeftBehind();
    void closingEndsWorkBeforeItSaves();
    void cancelledSaveClosesNothingLater();
};

void tst_SoundActionsSaving::resultIsSavedInTheChosenFormat()
{
    _open();
    _apply(QVariant::fromValue(unit()));
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

void tst_SoundActionsSaving::savedSoundIsNamedAfterItsFile()
{
    _open();
    _apply(QVariant::fromValue(unit()));
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
    _apply(QVariant::fromValue(unit()));
    m_actions->saveDocumentAs(nullptr);
    QCOMPARE(m_system->filePanels.saves.back().suggestedName, "out Echo & Co");
    m_system->filePanels.endSave(platform::FilePanels::Cancel);
}

void tst_SoundActionsSaving::closingAsksForAnUnsavedResult()
{
    _open();
    _apply(QVariant::fromValue(unit()));
    m_window->show();
    m_system->alerts.answerWith({"Cancel", "Don’t Save"});
    QVERIFY(!m_window->close());
    QVERIFY(m_window->close());
    QCOMPARE(m_system->alerts.shown.size(), 2);
}

void tst_SoundActionsSaving::closingAsksForASoundThatWasLeftBehind()
{
    _open();
    _apply(QVariant::fromValue(unit()));
    _open("other.wav");
    m_window->show();
    m_system->alerts.answerWith({"Cancel", "Close Anyway"});
    QVERIFY(!m_window->close());
    QCOMPARE(m_system->alerts.shown.back(), "What was done to “in.wav” is not saved.");
    QVERIFY(m_window->close());
}

void tst_SoundActionsSaving::closingEndsWorkBeforeItSaves()
{
    _open();
    _apply(QVariant::fromValue(unit()));
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

void tst_SoundActionsSaving::cancelledSaveClosesNothingLater()
{
    _open();
    _apply(QVariant::fromValue(unit()));
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

QW_TEST_MAIN(tst_SoundActionsSaving)
#include "tst_SoundActionsSaving.moc"
