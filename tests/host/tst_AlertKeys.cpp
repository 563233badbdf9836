#include "HostUnderTest.h"

#include "appkit/PanelDriver.h"
#include "plugins/PluginTestSupport.h"
#include "shell/ManualFixture.h"
#include "shortcuts/FakeShortcutEditor.h"

#include <QWBase/QWError.h>
#include <QWPlatform/linux/desktop/LinuxAlerts.h>
#include <QWPlatform/linux/desktop/LinuxFilePanels.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <QDirIterator>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>

#include <sys/stat.h>

using platform::Alert;
using platform::SystemScope;

namespace
{
/// What the user sees and what the keys choose; no button for a key that does nothing.
struct Row
{
    QString message; ///< As it begins.
    QStringList buttons;
    QString onReturn;
    QString onEscape;
    void (*provoke)();
};

HostUnderTest &host()
{
    return HostUnderTest::host();
}

/// Of the System on which the alert is provoked.
std::function<int(const Alert &)> answer;

void closeWithUnsavedResult()
{
    host().openSound();
    QVERIFY(host().pressAndWait("Reverse"));
    host().window().close();
}

void closeWithSoundLeftBehind()
{
    host().openSound();
    QVERIFY(host().pressAndWait("Reverse"));
    host().document().setSource("Other", "Test", host().document().result());
    host().window().close();
}

void openWhatIsNoSound()
{
    host().system.writeFile("~/broken.wav", "no sound");
    host().application.actions().openFile(host().system.real("~/broken.wav"));
    QTRY_VERIFY_WITH_TIMEOUT(!host().application.actions().work().isRunning(), HostUnderTest::patience);
}

void resetShortcuts()
{
    host().registry().loadFactoryPreset(nullptr);
}

void savePresetTwice()
{
    FakeShortcutEditor &editor = addEditor(host().registry());
    editor.name = "Mine";
    for (int i = 0; i < 2; ++i)
        host().registry().saveShortcutPanelDidEnd(1);
    qw::ShortcutEditor::setOf(host().registry(), nullptr);
}

/// Types a name into the file panel, which adds the extension "pdf".
void saveAs(const QString &name)
{
    platform::LinuxFilePanels panels;
    panels.beginSavePanel({&host().window(), "Save", "Notes", "pdf"}, [](int, const QString &) {});
    auto *const panel = host().window().findChild<QFileDialog *>();
    QVERIFY(panel);
    panel->findChild<QLineEdit *>()->setText(name);
    QTest::keyClick(panel->findChild<QLineEdit *>(), Qt::Key_Return);
    panel->reject();
    QTRY_VERIFY(!host().window().findChild<QFileDialog *>());
}

void saveOverAFile()
{
    host().system.writeFile("~/Notes.txt.pdf", "old");
    saveAs("Notes.txt");
}

void saveOverAPipe()
{
    const QString pipe = host().system.real("~/Pipe.txt.pdf");
    QVERIFY(QFileInfo::exists(pipe) || ::mkfifo(QFile::encodeName(pipe).constData(), 0600) == 0);
    saveAs("Pipe.txt");
}

void saveShortcutsWhereAFolderIs()
{
    const QString path = host().registry().currentShortcutsPath();
    const QString aside = path + ".aside";
    QVERIFY(QFile::rename(path, aside) && QDir().mkdir(path));
    host().registry().setAlertsFailures(true);
    host().registry().saveToDefaults();
    QVERIFY(QDir().rmdir(path) && QFile::rename(aside, path));
}

void offerManual()
{
    ManualFixture fixture;
    fixture.system.alerts.answer = answer;
    fixture.install(ManualFixture::pageWithVersion("2.1"));
    fixture.siteOffers("2.2");
    fixture.open();
}

void failDownload()
{
    ManualFixture fixture;
    fixture.system.alerts.answer = answer;
    fixture.startUpdate();
    fixture.system.urlDownloads.fail("The server hung up.");
}

void useManual(const std::function<void(const ManualFixture &)> &use)
{
    ManualFixture fixture;
    fixture.system.alerts.answer = answer;
    fixture.install(ManualFixture::pageWithVersion("2.1"));
    fixture.open();
    use(fixture);
    QTRY_COMPARE(fixture.system.alerts.shown.size(), 1); // told from the event loop
}

void failPrint()
{
    useManual([](const ManualFixture &fixture) { Q_EMIT fixture.view().printFinished(false); });
}

void failPdf()
{
    useManual([](const ManualFixture &fixture) {
        fixture.view().writesPdfs = false;
        QWManual::manual().printToPDF();
        fixture.system.filePanels.endSave(platform::FilePanels::OK, "/none/Book.pdf");
    });
}

void failLink()
{
    useManual([](const ManualFixture &fixture) {
        fixture.system.workspace.succeeds = false;
        fixture.view().click(QUrl("https://example.com/"));
    });
}

/// On a machine of its own, whose validator says nothing unless told otherwise.
template <class Manager>
void scan(const std::function<void(FakeSystem &)> &furnish)
{
    FakeSystem system;
    const SystemScope scope(system);
    system.alerts.answer = answer;
    furnish(system);
    Manager().validate();
}

void scanKnownUnit()
{
    scan<QWAUManager>([](FakeSystem &s) { s.components.add("aufx", "wbDl", "Glmf", "Glimmerfrog: Own Name"); });
}

void scanBrokenUnit()
{
    scan<QWAUManager>([](FakeSystem &s) { s.components.add("aufx", "Dlay", "Acme", "Acme: Delay"); });
}

void scanUnitThatCannotBeOpened()
{
    scan<QWAUManager>([](FakeSystem &s) { s.components.add("aufx", "Dlay", "Acme", ""); });
}

void scanWhereNoResultCanBeKept()
{
    scan<QWAUManager>([](FakeSystem &s) {
        s.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
        s.writeFile("~/Library/Application Support/Quorwell", "in the folder's place");
    });
}

void scanKnownBundle()
{
    scan<QWVSTManager>([](FakeSystem &s) {
        s.addVSTBundle("/Library/Audio/Plug-Ins/VST/Own Name.vst", "com.glimmerfrog.wobbledelay");
    });
}

void scanBrokenBundle()
{
    scan<QWVSTManager>([](FakeSystem &s) { s.addVSTBundle("/Library/Audio/Plug-Ins/VST/Echo.vst"); });
}

void showError()
{
    QWError("The folder could not be made.", "Permission denied").alert();
}

const QList<Row> &table()
{
    static const QList<Row> rows{
        {"Do you want to save the result before closing?",
         {"Save As…", "Don’t Save", "Cancel"},
         "Save As…",
         "Cancel",
         closeWithUnsavedResult},
        {"What was done to “Sample” is not saved.",
         {"Cancel", "Close Anyway"},
         "Cancel",
         "Cancel",
         closeWithSoundLeftBehind},
        {"“broken.wav” could not be opened.", {}, "OK", "OK", openWhatIsNoSound},
        {"Are you sure you want to reset your keyboard shortcuts",
         {"Reset", "Cancel"},
         "Reset",
         "Cancel",
         resetShortcuts},
        {"“Mine” already exists.", {"Replace", "Cancel"}, "Replace", "Cancel", savePresetTwice},
        {"“Notes.txt.pdf” already exists.", {"Replace", "Cancel"}, "Replace", "Cancel", saveOverAFile},
        {"“Pipe.txt.pdf” cannot be used.", {}, "OK", "OK", saveOverAPipe},
        {"The keyboard shortcuts could not be saved.", {}, "OK", "OK", saveShortcutsWhereAFolderIs},
        {"A newer version of the manual is available", {"Download", "Later"}, "Download", "", offerManual},
        {"The downloading of the manual failed", {}, "OK", "OK", failDownload},
        {"The manual could not be printed", {}, "OK", "OK", failPrint},
        {"The manual could not be saved as a PDF", {}, "OK", "OK", failPdf},
        {"“https://example.com/” could not be opened.", {}, "OK", "OK", failLink},
        {"The 'Wobbledelay' Audio Unit has been known", {"Ignore", "Use"}, "Ignore", "", scanKnownUnit},
        {"The 'Own Name' VST has been known", {"Ignore", "Use"}, "Ignore", "", scanKnownBundle},
        {"The 'Delay' Audio Unit failed to validate", {}, "OK", "OK", scanBrokenUnit},
        {"The 'Echo' VST failed to validate", {}, "OK", "OK", scanBrokenBundle},
        {"An Audio Unit failed to validate because it could not be opened.",
         {},
         "OK",
         "OK",
         scanUnitThatCannotBeOpened},
        {"New plug-ins cannot be tried.", {}, "OK", "OK", scanWhereNoResultCanBeKept},
        {"The folder could not be made.", {}, "OK", "OK", showError},
    };
    return rows;
}

/// The texts of the braces that hold nothing but localized texts.
QList<QStringList> buttonListsOf(const QString &source)
{
    static const QString call = "(?:platform::)?localized\\(\"[^\"]*\"\\)";
    static const QRegularExpression list("\\{\\s*" + call + "(?:\\s*,\\s*" + call + ")+\\s*\\}");
    static const QRegularExpression text("\"([^\"]*)\"");
    QList<QStringList> lists;
    for (auto found = list.globalMatch(source); found.hasNext();) {
        lists.emplace_back();
        for (auto title = text.globalMatch(found.next().captured()); title.hasNext();)
            lists.back().append(title.next().captured(1));
    }
    return lists;
}
} // namespace

/// Every alert of library and demo host, as it comes about, on a real panel: what Return and Escape do there.
class tst_AlertKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void keysChooseAsTheTableSays_data();
    void keysChooseAsTheTableSays();
    void tableHoldsEveryAlertOfSeveralButtons();

private:
    int _answer(const Alert &alert, const Row &row, Qt::Key key);

    int m_shown = 0;
    QString m_chosen;
};

void tst_AlertKeys::initTestCase()
{
    host().window().show();
    QVERIFY(QTest::qWaitForWindowActive(&host().window()));
}

void tst_AlertKeys::cleanup()
{
    host().system.alerts.answer = {};
    answer = {};
    for (; host().document().canUndo();)
        host().document().undo();
    host().window().show();
}

/// Presses @p key on the real panel of the alert of @p row; other alerts choose their default button.
int tst_AlertKeys::_answer(const Alert &alert, const Row &row, Qt::Key key)
{
    if (!alert.messageText.startsWith(row.message))
        return 0;
    ++m_shown;
    bool isAnswered = false;
    const PanelDriver driver([&](QWidget &panel) {
        QTest::keyClick(panel.focusWidget() ? panel.focusWidget() : &panel, key);
        isAnswered = !panel.isVisible();
        if (!isAnswered)
            panel.findChildren<QPushButton *>().last()->click();
    });
    const int choice = platform::LinuxAlerts().run(alert);
    m_chosen = isAnswered ? alert.buttons.value(choice, "OK") : QString();
    [&] { QCOMPARE(alert.buttons, row.buttons); }();
    return choice;
}

void tst_AlertKeys::keysChooseAsTheTableSays_data()
{
    QTest::addColumn<qsizetype>("row");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("chosen");
    for (qsizetype i = 0; i < table().size(); ++i) {
        const Row &row = table().at(i);
        QTest::newRow(qPrintable(row.message + " Return")) << i << Qt::Key_Return << row.onReturn;
        QTest::newRow(qPrintable(row.message + " Escape")) << i << Qt::Key_Escape << row.onEscape;
    }
}

void tst_AlertKeys::keysChooseAsTheTableSays()
{
    QFETCH(const qsizetype, row);
    QFETCH(const Qt::Key, key);
    m_shown = 0;
    answer = [this, row, key](const Alert &alert) { return _answer(alert, table().at(row), key); };
    host().system.alerts.answer = answer;
    table().at(row).provoke();
    QVERIFY(m_shown > 0);
    QTEST(m_chosen, "chosen");
}

void tst_AlertKeys::tableHoldsEveryAlertOfSeveralButtons()
{
    int calls = 0;
    for (const char *const folder : {"QWCore", "examples/host", "examples/guide"}) { // what a user meets
        QDirIterator files(QW_SOURCE_DIR + QString("/") + folder, {"*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString source = QString::fromUtf8(file.readAll());
            if (!source.contains("runAlert("))
                continue;
            ++calls;
            for (const QStringList &buttons : buttonListsOf(source)) {
                QVERIFY2(
                    std::any_of(table().begin(), table().end(), [&](const Row &r) { return r.buttons == buttons; }),
                    qPrintable(file.fileName() + ": " + buttons.join(", ")));
            }
        }
    }
    QVERIFY(calls >= 6);
}

QW_HOST_TEST_MAIN(tst_AlertKeys)
#include "tst_AlertKeys.moc"
