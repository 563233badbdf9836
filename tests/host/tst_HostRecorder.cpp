#include "HostTest.h"

#include <audio/SoundFile.h>

#include <QWPlatform/foundation/PropertyList.h>

#include <QTemporaryDir>

namespace
{
QString shownTitle()
{
    return HostUnderTest::host().document().title();
}

QWidget *recorderWindow()
{
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->objectName() == "window" && window->findChild<QWidget *>("deviceTable"))
            return window;
    return nullptr;
}
} // namespace

/// Takes come from a recorder into the host.
class tst_HostRecorder : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void menuOpensTheBrowser();
    void keysOfTheBrowserAreItsOwn();
    void whatTheHostReadsIsItsDocument();
    void savedTakeOpensInTheWaveform();

private:
    void _close();
};

void tst_HostRecorder::_close()
{
    recorderWindow()->close();
    QTRY_VERIFY(!recorderWindow()->isVisible());
    _host().window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&_host().window()));
}

void tst_HostRecorder::menuOpensTheBrowser()
{
    QVERIFY(!recorderWindow());
    QVERIFY(_host().press("Import from Recorder…"));
    QVERIFY(recorderWindow() && recorderWindow()->isVisible());
    QCOMPARE(_host().system.netServices.searching(), 1);
    _close();
    QCOMPARE(_host().system.netServices.searching(), 0);
}

/// "Reload" has a key that does something to the sound elsewhere.
void tst_HostRecorder::keysOfTheBrowserAreItsOwn()
{
    QVERIFY(_host().press("Import from Recorder…"));
    QVERIFY(QTest::qWaitForWindowActive(recorderWindow()));
    const auto searches = _host().system.netServices.searches.size();
    QTest::keyClick(recorderWindow()->windowHandle(), Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(_host().system.netServices.searches.size(), searches + 1);
    QVERIFY(!_host().application.actions().work().isRunning());
    _close();
}

void tst_HostRecorder::whatTheHostReadsIsItsDocument()
{
    const auto info = platform::PropertyList::fromFile(QString(QW_DEMO_BUNDLE) + "/Info.plist.in");
    QVERIFY(info);
    QStringList extensions;
    for (const QVariant &type : info->toMap().value("CFBundleDocumentTypes").toList())
        extensions += type.toMap().value("CFBundleTypeExtensions").toStringList();
    QCOMPARE(extensions, demo::SoundActions::readableTypes());
    for (const char *other : {"m4a", "xml", "txt"}) // the desktop's programs open these
        QVERIFY(!extensions.contains(other));
}

void tst_HostRecorder::savedTakeOpensInTheWaveform()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("Take 1.wav");
    demo::WorkProgress progress;
    QString error;
    const demo::Sound sound = sounds::constant({0.5f}, 4800);
    QVERIFY(demo::SoundFile::write(path, sound, demo::SoundFile::Format::Wav16, progress, &error));
    QVERIFY(_host().application.openFile(path));
    QTRY_COMPARE_WITH_TIMEOUT(shownTitle(), "Take 1.wav", HostUnderTest::patience);
}

QW_HOST_TEST_MAIN(tst_HostRecorder)
#include "tst_HostRecorder.moc"
