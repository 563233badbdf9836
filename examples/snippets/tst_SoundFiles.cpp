#include "SoundFiles.h"

#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

using platform::FilePanels;

class tst_SoundFiles : public QObject
{
    Q_OBJECT

private slots:
    void aCopyIsSaved()
    {
        m_system.writeFile("~/drums.wav", "RIFF");
        _open("~/drums.wav");
        _saveTo("~/copy.wav");
        QCOMPARE(m_system.readFile("~/copy.wav"), QByteArray("RIFF"));
        QVERIFY(m_system.alerts.shown.isEmpty());
    }

    void aCopyThatCannotBeSavedIsTold()
    {
        m_system.writeFile("~/drums.wav", "RIFF");
        _open("~/drums.wav");
        _saveTo("~/no such folder/copy.wav");
        QCOMPARE(m_system.alerts.shown.size(), 1);
    }

    void theUserDecidesOnChanges()
    {
        m_system.alerts.answerWith({"Cancel", "Discard"});
        QVERIFY(!m_files.mayDiscardChanges());
        QVERIFY(m_files.mayDiscardChanges());
    }

private:
    void _open(const QString &path)
    {
        m_files.openSound(nullptr);
        m_system.filePanels.endOpen(FilePanels::OK, {path});
    }

    void _saveTo(const QString &path)
    {
        m_files.saveCopy(nullptr);
        m_system.filePanels.endSave(FilePanels::OK, path);
    }

    FakeSystem m_system;
    platform::SystemScope m_scope{m_system};
    SoundFiles m_files;
};

QW_TEST_MAIN(tst_SoundFiles)
#include "tst_SoundFiles.moc"
