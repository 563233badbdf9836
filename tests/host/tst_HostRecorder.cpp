#include "HostTest.h"

#include <audio/SoundFile.h>

#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

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
    void takesOpenWhereTheirTypesSay();
    void quitEndsADownloadAndIsNotRefused();

private:
    void _close();
    bool _listTakes();
    bool _save(const QString &format);
    QByteArray _wave() const;
};

void tst_HostRecorder::_close()
{
    recorderWindow()->close();
    QTRY_VERIFY(!recorderWindow()->isVisible());
    _host().window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&_host().window()));
}

/// Two takes, "Take 1" and "Take 2", of a recorder that is found.
bool tst_HostRecorder::_listTakes()
{
    FakeSystem &system = _host().system;
    const QVariantMap first{{"title", "Take 1"}, {"filename", "one"}, {"formats", QVariantList{"aac"}}};
    const QVariantMap second{{"title", "Take 2"}, {"filename", "two"}, {"formats", QVariantList{"aac"}}};
    system.urlLoader.answer("http://192.0.2.7:8123/list.plist",
                            platform::PropertyList::toXml(QVariantList{first, second}));
    system.netServices.announce("Vesk on Studio");
    system.makeDirectory("~/Music");
    if (!_host().press("Import from Recorder…"))
        return false;
    const auto &takes = *recorderWindow()->findChild<QAbstractItemView *>("recordingTable");
    return QTest::qWaitFor([&] {
        system.netServices.resolve("Vesk on Studio"); // nothing where it is known from before
        return takes.model()->rowCount() == 2;
    });
}

/// Begins to save all takes.
bool tst_HostRecorder::_save(const QString &format)
{
    recorderWindow()->findChild<QAbstractItemView *>("recordingTable")->selectAll();
    auto &formats = *recorderWindow()->findChild<QComboBox *>("formatPopup");
    formats.setCurrentIndex(formats.findData(format));
    recorderWindow()->findChild<QPushButton *>("saveButton")->click();
    _host().system.filePanels.endOpen(platform::FilePanels::OK, {_host().system.real("~/Music")});
    return formats.currentData() == format && recorderWindow()->findChild<QWidget *>("progressPanel")->isVisible();
}

QByteArray tst_HostRecorder::_wave() const
{
    QTemporaryDir folder;
    demo::WorkProgress progress;
    QString error;
    const demo::Sound sound = sounds::constant({0.5f}, 4800);
    if (!demo::SoundFile::write(folder.filePath("a.wav"), sound, demo::SoundFile::Format::Wav16, progress, &error))
        return {};
    QFile file(folder.filePath("a.wav"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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

void tst_HostRecorder::takesOpenWhereTheirTypesSay()
{
    FakeSystem &system = _host().system;
    QVERIFY(_listTakes());
    recorderWindow()->findChild<QCheckBox *>("openAfterSaveButton")->setChecked(true);
    system.workspace.openedFiles.clear();
    QVERIFY(_save("WAVE"));
    const QByteArray wave = _wave();
    for (int take = 0; take < 2; ++take) {
        system.urlDownloads.respond(wave.size());
        system.urlDownloads.receive(wave);
        system.urlDownloads.finish();
    }
    QCOMPARE(system.workspace.openedWith.size(), 2);
    QVERIFY(system.workspace.openedFiles.isEmpty());
    const auto &[path, name] = system.workspace.openedWith.back();
    QCOMPARE(name, _host().application.name());
    QVERIFY(_host().application.openFile(path));
    QTRY_COMPARE_WITH_TIMEOUT(shownTitle(), "Take 2.wav", HostUnderTest::patience);
    QVERIFY(_save("AAC"));
    system.urlDownloads.respond(1);
    system.urlDownloads.receive("1");
    system.urlDownloads.finish();
    QCOMPARE(system.workspace.openedFiles, QStringList{system.real("~/Music/Take 1.m4a")});
    QCOMPARE(system.workspace.openedWith.size(), 2);
    recorderWindow()->findChild<QCheckBox *>("openAfterSaveButton")->setChecked(false);
    _close();
}

/// The last, since the host ends.
void tst_HostRecorder::quitEndsADownloadAndIsNotRefused()
{
    QVERIFY(_listTakes());
    QVERIFY(_save("WAVE"));
    _host().system.urlDownloads.respond(4);
    _host().system.urlDownloads.receive("da");
    _host().document().setSaved();
    QTimer::singleShot(0, qApp, [] { HostUnderTest::host().application.terminate(nullptr); });
    QTimer::singleShot(HostUnderTest::patience, qApp, [] { QCoreApplication::exit(1); }); // refused
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(_host().system.urlDownloads.started.back()->cancelled);
    QVERIFY(!recorderWindow()->isVisible() && !_host().window().isVisible());
}

QW_HOST_TEST_MAIN(tst_HostRecorder)
#include "tst_HostRecorder.moc"
