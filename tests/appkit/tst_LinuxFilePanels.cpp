#include "PanelDriver.h"

#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWPlatform/linux/desktop/LinuxFilePanels.h>

#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <fakes/FakeSystem.h>

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

using platform::FilePanels;

namespace
{
/// Notes which files of a folder are opened, by whomever.
class OpenedFiles
{
public:
    explicit OpenedFiles(const QString &folder)
        : m_watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        ::inotify_add_watch(m_watch, QFile::encodeName(folder).constData(), IN_OPEN);
    }
    ~OpenedFiles() { ::close(m_watch); }
    OpenedFiles(const OpenedFiles &) = delete;
    OpenedFiles &operator=(const OpenedFiles &) = delete;

    QStringList names() const
    {
        alignas(inotify_event) char buffer[4096];
        QStringList names;
        for (ssize_t size; (size = ::read(m_watch, buffer, sizeof buffer)) > 0;) {
            for (const char *at = buffer; at < buffer + size;) {
                const auto &event = *reinterpret_cast<const inotify_event *>(at);
                if (event.len > 0 && !(event.mask & IN_ISDIR))
                    names.append(QFile::decodeName(event.name));
                at += sizeof event + event.len;
            }
        }
        return names;
    }

private:
    int m_watch;
};
} // namespace

/// One shown panel on the fake disk, and what it said.
class tst_LinuxFilePanels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void savePanelIsASheet();
    void extensionIsEnforced_data();
    void extensionIsEnforced();
    void otherExtensionsOfTheTypeAreKept_data();
    void otherExtensionsOfTheTypeAreKept();
    void cancelSaysSoOnce();
    void overwritingIsConfirmed_data();
    void overwritingIsConfirmed();
    void folderIsRemembered();
    void unusableRememberedFolderIsTheHome_data();
    void unusableRememberedFolderIsTheHome();
    void openPanelGivesPaths();
    void fileTypesHaveATitle();
    void folderCanBeChosen();
    void confirmingButtonHasItsTitle();
    void panelGoesWithItsWindow();
    void nothingIsProposedWithoutAName();
    void panelOpensNoFile_data();
    void panelOpensNoFile();
    void specialFilesAreRefused_data();
    void specialFilesAreRefused();

private:
    QFileDialog *_save(const QString &type = "pdf", const QStringList &others = {});
    QFileDialog *_panel() const { return m_window->findChild<QFileDialog *>(); }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_current;
    std::unique_ptr<QWidget> m_window;
    platform::LinuxFilePanels m_panels;
    QList<QPair<int, QString>> m_ends;
};

void tst_LinuxFilePanels::init()
{
    m_system = std::make_unique<FakeSystem>();
    m_current = std::make_unique<platform::SystemScope>(*m_system);
    m_window = std::make_unique<QWidget>();
    m_window->show();
    m_ends.clear();
}

void tst_LinuxFilePanels::cleanup()
{
    m_window.reset();
    m_current.reset();
    m_system.reset();
}

QFileDialog *tst_LinuxFilePanels::_save(const QString &type, const QStringList &others)
{
    m_panels.beginSavePanel({m_window.get(), "Save To PDF", "Host Manual", type, others},
                            [this](int code, const QString &path) {
                                m_ends.append({code, path});
                            });
    return _panel();
}

void tst_LinuxFilePanels::savePanelIsASheet()
{
    const QFileDialog *const panel = _save();
    QVERIFY(panel->isVisible());
    QCOMPARE(panel->windowModality(), Qt::WindowModal);
    QCOMPARE(panel->windowTitle(), QString("Save To PDF"));
    QCOMPARE(QFileInfo(panel->selectedFiles().value(0)).fileName(), QString("Host Manual.pdf"));
    QVERIFY(m_ends.isEmpty());
}

void tst_LinuxFilePanels::extensionIsEnforced_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("file");
    QTest::newRow("missing") << "pdf"
                             << "Notes"
                             << "Notes.pdf";
    QTest::newRow("there") << "pdf"
                           << "Notes.pdf"
                           << "Notes.pdf";
    QTest::newRow("capitals") << "pdf"
                              << "Notes.PDF"
                              << "Notes.PDF";
    QTest::newRow("another") << "pdf"
                             << "Notes.txt"
                             << "Notes.txt.pdf";
    QTest::newRow("any") << ""
                         << "Notes.txt"
                         << "Notes.txt";
}

void tst_LinuxFilePanels::extensionIsEnforced()
{
    QFETCH(QString, type);
    QFETCH(QString, typed);
    QFETCH(QString, file);
    QFileDialog *const panel = _save(type);
    panel->findChild<QLineEdit *>()->setText(typed);
    QTest::keyClick(panel->findChild<QLineEdit *>(), Qt::Key_Return);
    QCOMPARE(m_ends.size(), 1);
    QCOMPARE(m_ends.first().first, FilePanels::OK);
    QCOMPARE(m_ends.first().second, m_system->real("~/" + file));
}

void tst_LinuxFilePanels::otherExtensionsOfTheTypeAreKept_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("file");
    QTest::newRow("short") << "Bell.aif"
                           << "Bell.aif";
    QTest::newRow("capitals") << "Bell.AIF"
                              << "Bell.AIF";
    QTest::newRow("required") << "Bell.aiff"
                              << "Bell.aiff";
    QTest::newRow("missing") << "Bell"
                             << "Bell.aiff";
    QTest::newRow("none of them") << "Bell.mp3"
                                  << "Bell.mp3.aiff";
}

void tst_LinuxFilePanels::otherExtensionsOfTheTypeAreKept()
{
    QFETCH(QString, typed);
    QFETCH(QString, file);
    QFileDialog *const panel = _save("aiff", {"aif", "aiff"});
    QCOMPARE(panel->nameFilters(), QStringList("*.aiff *.aif"));
    panel->findChild<QLineEdit *>()->setText(typed);
    QTest::keyClick(panel->findChild<QLineEdit *>(), Qt::Key_Return);
    QCOMPARE(m_ends.size(), 1);
    QCOMPARE(m_ends.first().second, m_system->real("~/" + file));
}

void tst_LinuxFilePanels::cancelSaysSoOnce()
{
    QTest::keyClick(_save(), Qt::Key_Escape);
    QCOMPARE(m_ends, (QList<QPair<int, QString>>{{FilePanels::Cancel, ""}}));
    QTRY_VERIFY(!_panel());
    QCOMPARE(m_ends.size(), 1);
}

void tst_LinuxFilePanels::overwritingIsConfirmed_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("code");
    QTest::newRow("replace") << "Replace" << FilePanels::OK;
    QTest::newRow("cancel") << "Cancel" << FilePanels::Cancel;
}

/// The typed name does not exist; the one with its extension does.
void tst_LinuxFilePanels::overwritingIsConfirmed()
{
    QFETCH(QString, answer);
    m_system->writeFile("~/Notes.txt.pdf", "old");
    m_system->alerts.answerWith({answer});
    QFileDialog *const panel = _save();
    panel->findChild<QLineEdit *>()->setText("Notes.txt");
    QTest::keyClick(panel->findChild<QLineEdit *>(), Qt::Key_Return);
    QCOMPARE(m_system->alerts.shown.size(), 1);
    QVERIFY(m_system->alerts.shown.first().contains("Notes.txt.pdf"));
    QCOMPARE(m_ends.size(), 1);
    QTEST(m_ends.first().first, "code");
}

void tst_LinuxFilePanels::folderIsRemembered()
{
    m_system->makeDirectory("~/Documents/Songs");
    QFileDialog *const panel = _save();
    panel->setDirectory(m_system->real("~/Documents/Songs"));
    QTest::keyClick(panel->findChild<QLineEdit *>(), Qt::Key_Return);
    QCOMPARE(m_ends.value(0).first, FilePanels::OK);
    QCOMPARE(m_system->userDefaults().string("NSNavLastRootDirectory"), QString("~/Documents/Songs"));
    QTRY_VERIFY(!_panel());
    QCOMPARE(_save()->directory().absolutePath(), m_system->real("~/Documents/Songs"));
}

void tst_LinuxFilePanels::unusableRememberedFolderIsTheHome_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("gone") << QVariant("~/Gone");
    QTest::newRow("wrong type") << QVariant(QVariantList{1});
    QTest::newRow("empty") << QVariant("");
}

void tst_LinuxFilePanels::unusableRememberedFolderIsTheHome()
{
    QFETCH(QVariant, stored);
    m_system->userDefaults().setObject("NSNavLastRootDirectory", stored);
    QCOMPARE(_save()->directory().absolutePath(), m_system->real("~"));
}

void tst_LinuxFilePanels::openPanelGivesPaths()
{
    m_system->writeFile("~/tone.wav", "RIFF");
    QStringList chosen;
    int code = -1;
    m_panels.beginOpenPanel({m_window.get(), "Open", {"wav", "aiff"}}, [&](int c, const QStringList &paths) {
        code = c;
        chosen = paths;
    });
    _panel()->findChild<QLineEdit *>()->setText("tone.wav");
    QTest::keyClick(_panel()->findChild<QLineEdit *>(), Qt::Key_Return);
    QCOMPARE(code, FilePanels::OK);
    QCOMPARE(chosen, QStringList{m_system->real("~/tone.wav")});
}

void tst_LinuxFilePanels::fileTypesHaveATitle()
{
    platform::OpenPanelRequest request{m_window.get(), "Open", {"wav", "aiff"}};
    m_panels.beginOpenPanel(request, [](int, const QStringList &) {});
    QCOMPARE(_panel()->nameFilters(), QStringList("*.wav *.aiff"));
    delete _panel();
    request.fileTypesTitle = "Sound files";
    m_panels.beginOpenPanel(request, [](int, const QStringList &) {});
    QCOMPARE(_panel()->nameFilters(), QStringList("Sound files (*.wav *.aiff)"));
    QVERIFY(_panel()->testOption(QFileDialog::HideNameFilterDetails));
}

void tst_LinuxFilePanels::folderCanBeChosen()
{
    m_system->makeDirectory("~/Songs");
    QStringList chosen;
    m_panels.beginOpenPanel({m_window.get(), "Open", {}, true}, [&](int, const QStringList &paths) { chosen = paths; });
    _panel()->findChild<QLineEdit *>()->setText(m_system->real("~/Songs"));
    static_cast<QDialog *>(_panel())->accept();
    QCOMPARE(chosen, QStringList{m_system->real("~/Songs")});
}

void tst_LinuxFilePanels::confirmingButtonHasItsTitle()
{
    platform::OpenPanelRequest request;
    request.window = m_window.get();
    request.directories = true;
    request.confirmTitle = "Save";
    m_panels.beginOpenPanel(request, [](int, const QStringList &) {});
    const auto buttons = _panel()->findChildren<QPushButton *>();
    QCOMPARE(std::count_if(buttons.begin(), buttons.end(), [](auto *button) { return button->text() == u"Save"; }), 1);
}

void tst_LinuxFilePanels::panelGoesWithItsWindow()
{
    const QPointer<QFileDialog> panel(_save());
    m_window.reset();
    QVERIFY(!panel);
    QVERIFY(m_ends.isEmpty());
    m_window = std::make_unique<QWidget>();
}

/// Not the bare extension, which would be a hidden file.
void tst_LinuxFilePanels::nothingIsProposedWithoutAName()
{
    m_panels.beginSavePanel({m_window.get(), "Export", "", "pdf"}, [](int, const QString &) {});
    QCOMPARE(_panel()->findChild<QLineEdit *>()->text(), QString());
}

void tst_LinuxFilePanels::panelOpensNoFile_data()
{
    QTest::addColumn<bool>("remembered");
    QTest::newRow("chosen folder") << false;
    QTest::newRow("remembered folder") << true;
}

/// A name without extension says nothing of what a file is. The kernel's own, listed as common ones, may never end.
void tst_LinuxFilePanels::panelOpensNoFile()
{
    QFETCH(bool, remembered);
    for (const char *name : {"endless", "strange.xyzzy", "tone.wav"})
        m_system->writeFile(QString("~/Odd/") + name, "data");
    const QString folder = m_system->real("~/Odd");
    OpenedFiles opened(folder);
    if (remembered)
        m_system->userDefaults().setObject("NSNavLastRootDirectory", "~/Odd");
    m_panels.beginOpenPanel({m_window.get(), "Open", {}}, [](int, const QStringList &) {});
    if (!remembered)
        _panel()->setDirectory(folder);
    const auto *const model = _panel()->findChild<QFileSystemModel *>();
    for (const char *name : {"endless", "strange.xyzzy", "tone.wav"}) {
        const auto looked = [&] { return !model->type(model->index(folder + '/' + name)).isEmpty(); };
        QTRY_VERIFY2(looked(), name);
        QVERIFY(!model->fileIcon(model->index(folder + '/' + name)).isNull());
    }
    delete _panel(); // waits for those that still look
    QCOMPARE(opened.names(), QStringList());
}

void tst_LinuxFilePanels::specialFilesAreRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("saves");
    for (const bool saves : {false, true}) {
        QTest::addRow("pipe, %s", saves ? "save" : "open") << "~/pipe" << saves;
        QTest::addRow("endless device, %s", saves ? "save" : "open") << "/dev/zero" << saves;
    }
}

/// Nobody would ever answer.
void tst_LinuxFilePanels::specialFilesAreRefused()
{
    QFETCH(QString, path);
    QFETCH(bool, saves);
    m_system->makeDirectory("~");
    QCOMPARE(::mkfifo(QFile::encodeName(m_system->real("~/pipe")).constData(), 0600), 0);
    int code = -1;
    if (saves)
        m_panels.beginSavePanel({m_window.get(), "Save", "", ""}, [&](int c, const QString &) { code = c; });
    else
        m_panels.beginOpenPanel({m_window.get(), "Open", {}}, [&](int c, const QStringList &) { code = c; });
    const PanelDriver overwrite(
        [](QWidget &box) { dynamic_cast<QMessageBox &>(box).button(QMessageBox::Yes)->click(); });
    _panel()->findChild<QLineEdit *>()->setText(path.startsWith('~') ? m_system->real(path) : path);
    static_cast<QDialog *>(_panel())->accept();
    QTRY_COMPARE(code, FilePanels::Cancel);
    QCOMPARE(m_system->alerts.shown.size(), 1);
    QVERIFY(m_system->alerts.shown.first().endsWith("cannot be used."));
    QVERIFY(!m_system->userDefaults().object("NSNavLastRootDirectory").isValid());
}

QTEST_MAIN(tst_LinuxFilePanels)
#include "tst_LinuxFilePanels.moc"
