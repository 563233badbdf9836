#include "ManualFixture.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/toolbar/ToolbarItem.h>
#include <QWPlatform/foundation/Bundle.h>

namespace
{
void useEverything()
{
    QWManual &manual = QWManual::manual();
    manual.back();
    manual.forward();
    manual.home();
    manual.print();
    manual.printToPDF();
    manual.legal();
    manual.acknowledgements();
    manual.stopProgress();
}
} // namespace

/// How the manual is set up and opened.
class tst_QWManual : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isOnePerMachine();
    void isCarriedByHostsWithAnArchive();
    void firstOpeningUnpacksTheArchive();
    void laterOpeningsUseTheUnpackedManual();
    void leftoversAreRemovedBeforeUnpacking();
    void brokenArchiveLeavesNoManual();
    void hostWithoutArchiveHasNoManual();
    void manualIsLookedForAtTheFirstOpeningOnly();
    void folderThatCannotBeMadeEndsTheSetUp();
    void folderThatCannotBeEmptiedEndsTheSetUp();
    void windowIsCentredNormalAndOnlyHiddenByClosing();
    void incompleteInterfaceOpensNothing();
    void nothingHappensBeforeTheWindowIsMade();
};

void tst_QWManual::isOnePerMachine()
{
    const ManualFixture outer;
    QWManual *const first = &QWManual::manual();
    QCOMPARE(&QWManual::manual(), first);
    {
        const ManualFixture inner;
        QVERIFY(&QWManual::manual() != first);
    }
    QCOMPARE(&QWManual::manual(), first);
}

void tst_QWManual::isCarriedByHostsWithAnArchive()
{
    const ManualFixture host;
    QVERIFY(!QWManual::appUsesQWManual());

    const ManualFixture other;
    other.system.addHostResource("Manual.zip", "PK");
    QVERIFY(QWManual::appUsesQWManual());
}

void tst_QWManual::firstOpeningUnpacksTheArchive()
{
    const ManualFixture host;
    host.system.addHostResource("Manual.zip", "PK");
    host.open();

    QCOMPARE(host.system.processes.runs.size(), 1U);
    const auto &run = host.system.processes.runs.front();
    QCOMPARE(run.launchPath, "/usr/bin/unzip");
    const QString archive = host.system.mainBundle().pathForResource("Manual", "zip");
    QCOMPARE(run.arguments, QStringList({"-q", archive, "-d", host.system.real(ManualFixture::folder)}));
    QCOMPARE(host.view().url(), host.indexUrl());
    QCOMPARE(QWManual::manual().window()->windowTitle(), "Test Host Manual");
    QVERIFY(QWManual::manual().window()->isVisible());
}

void tst_QWManual::laterOpeningsUseTheUnpackedManual()
{
    const ManualFixture host;
    host.system.addHostResource("Manual.zip", "PK");
    host.install(ManualFixture::pageWithVersion("3.0"));
    host.open();

    QVERIFY(host.system.processes.runs.empty());
    QCOMPARE(host.view().url(), host.indexUrl());
}

void tst_QWManual::leftoversAreRemovedBeforeUnpacking()
{
    const ManualFixture host;
    host.system.addHostResource("Manual.zip", "PK");
    host.system.writeFile(ManualFixture::folder + QString("/pages/old.html"), "old");
    host.system.writeFile(ManualFixture::folder + QString("/.hidden"), "old");
    host.open();

    QCOMPARE(host.entriesBeforeUnpacking, QStringList());
    QCOMPARE(host.view().url(), host.indexUrl());
}

void tst_QWManual::brokenArchiveLeavesNoManual()
{
    ManualFixture host;
    host.archiveIsGood = false;
    host.system.addHostResource("Manual.zip", "not an archive");
    host.open();

    QVERIFY(host.view().url().isEmpty());
    QVERIFY(host.system.alerts.shown.isEmpty());
    QVERIFY(QWManual::manual().window()->isVisible());
}

void tst_QWManual::hostWithoutArchiveHasNoManual()
{
    const ManualFixture host;
    host.open();

    QVERIFY(host.system.processes.runs.empty());
    QVERIFY(QDir(host.system.real(ManualFixture::folder)).exists());
    QVERIFY(host.view().url().isEmpty());
    QVERIFY(!host.toolbar().itemWithIdentifier("QWManualHomeButtonIdentifier")->isEnabled());
}

void tst_QWManual::manualIsLookedForAtTheFirstOpeningOnly()
{
    const ManualFixture host;
    host.open();
    host.install(ManualFixture::pageWithVersion("1"));
    QWManual::manual().window()->close();
    host.open();

    QVERIFY(!host.toolbar().itemWithIdentifier("QWManualHomeButtonIdentifier")->isEnabled());
    QCOMPARE(host.system.webViews.views.size(), 1U);
    QCOMPARE(host.system.urlLoader.requestedUrls().size(), 1);
}

void tst_QWManual::folderThatCannotBeMadeEndsTheSetUp()
{
    const ManualFixture host;
    host.system.addHostResource("Manual.zip", "PK");
    host.system.writeFile(ManualFixture::folder, "a file is in the way");
    host.open();

    QCOMPARE(host.system.alerts.shown.size(), 1);
    QVERIFY(host.system.processes.runs.empty());
    QVERIFY(host.system.urlLoader.requests().empty());
    QCOMPARE(QWManual::manual().window()->windowTitle(), "");
    QVERIFY(QWManual::manual().window()->isVisible());
}

void tst_QWManual::folderThatCannotBeEmptiedEndsTheSetUp()
{
    const ManualFixture host;
    host.system.addHostResource("Manual.zip", "PK");
    host.leadFolderToOneThatCannotBeEmptied();
    host.open();

    QCOMPARE(host.system.alerts.shown.size(), 1);
    QVERIFY2(host.system.alerts.shown.first().contains("could not be emptied"),
             qPrintable(host.system.alerts.shown[0]));
    QVERIFY(host.system.processes.runs.empty());
    QVERIFY(host.system.urlLoader.requests().empty());
    QCOMPARE(QWManual::manual().window()->windowTitle(), "");
    QVERIFY(QWManual::manual().window()->isVisible());
}

void tst_QWManual::windowIsCentredNormalAndOnlyHiddenByClosing()
{
    const ManualFixture host;
    host.open();
    platform::Panel *const window = QWManual::manual().window();
    QVERIFY(!window->isFloating());
    const QPoint off = window->frameGeometry().center() - window->screen()->availableGeometry().center();
    QVERIFY(off.manhattanLength() <= 8); // the frame comes after the window was placed

    window->move(11, 22);
    window->close();
    QVERIFY(!window->isVisible());
    QWManual::openManual();
    QCOMPARE(QWManual::manual().window(), window);
    QVERIFY(window->isVisible());
    QCOMPARE(window->pos(), QPoint(11, 22));
}

void tst_QWManual::incompleteInterfaceOpensNothing()
{
    const ManualFixture host;
    host.system.addHostResource("QWManual.ui", "<ui version=\"4.0\"><widget class=\"QWidget\" name=\"window\"/></ui>");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("the outlet \"window\""));
    for (const char *outlet : {"contentView", "progressText", "progressBar", "progressStopButton"})
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QString("no outlet \"%1\"").arg(outlet)));
    host.open();
    QWManual::openLegal();
    QVERIFY(!QWManual::manual().window());
    QVERIFY(host.system.alerts.shown.isEmpty());
    useEverything();
}

/// A host may wire the actions to menu items of its own.
void tst_QWManual::nothingHappensBeforeTheWindowIsMade()
{
    const ManualFixture host;
    useEverything();
    QVERIFY(host.system.filePanels.saves.empty());
    host.install("page");
    host.open();
    QCOMPARE(host.view().url(), host.indexUrl());
}

QW_TEST_MAIN(tst_QWManual)
#include "tst_QWManual.moc"
