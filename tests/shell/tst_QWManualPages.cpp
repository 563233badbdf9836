#include "ManualFixture.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/toolbar/ToolbarItem.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWUtilities/shell/manual/ManualToolbar.h>

using platform::Toolbar;

/// What the reader of an open manual does: links, toolbar, keys, printing.
class tst_QWManualPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linksToTheWebOpenOutside_data();
    void linksToTheWebOpenOutside();
    void whatAPageWantsByItselfOpensOneWindow();
    void legalTextNamesTheApplication();
    void legalTextCarriesThePageStyle();
    void acknowledgementsAreAPageOfTheManual();
    void pdfIsWrittenWhereTheUserSays();
    void toolbarHoldsItsItems();
    void toolbarItemsAreEnabledWhenTheyWork();
    void toolbarLeadsThroughThePages();
    void keysLeadThroughThePages();
    void pdfThatCannotBeWrittenIsTold();
    void printThatFailsIsTold();
    void linkThatNothingOpensIsTold();
    void linksThatNothingOpensAreToldOneAtATime();
};

void tst_QWManualPages::linksToTheWebOpenOutside_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<bool>("outside");
    QTest::newRow("http") << QUrl("http://example.com/a") << true;
    QTest::newRow("https") << QUrl("https://example.com/a?b#c") << true;
    QTest::newRow("file") << QUrl("file:///tmp/a.html") << false;
    QTest::newRow("about") << QUrl("about:blank") << false;
    QTest::newRow("data") << QUrl("data:text/html,a") << false;
}

void tst_QWManualPages::linksToTheWebOpenOutside()
{
    QFETCH(const QUrl, url);
    QFETCH(const bool, outside);
    const ManualFixture host;
    host.install("page");
    host.open();
    QCOMPARE(host.view().click(url), !outside);
    QCOMPARE(host.view().url(), outside ? host.indexUrl() : url);
    QCOMPARE(host.system.workspace.openedUrls, outside ? QStringList(url.toString()) : QStringList());
}

void tst_QWManualPages::whatAPageWantsByItselfOpensOneWindow()
{
    const ManualFixture host;
    host.install("page");
    host.open();
    for (int i = 0; i < 50; ++i) {
        const QUrl url(QString("https://example.com/%1").arg(i));
        QVERIFY(!host.view().showFrame(url));
        QVERIFY(!host.view().refresh(url));
    }
    QCOMPARE(host.system.workspace.openedUrls, QStringList("https://example.com/0"));
    QVERIFY(host.view().showFrame(QUrl("file:///tmp/frame.html")));
    QVERIFY(host.view().refresh(QUrl("file:///tmp/next.html")));
    QVERIFY(!host.view().refresh(QUrl("https://example.com/again"))); // nobody has asked for anything meanwhile
    QVERIFY(!host.view().click(QUrl("https://example.com/clicked")));
    QVERIFY(!host.view().click(QUrl("https://example.com/clicked")));
    QVERIFY(!host.view().refresh(QUrl("https://example.com/after")));
    QCOMPARE(host.system.workspace.openedUrls,
             QStringList({"https://example.com/0", "https://example.com/clicked", "https://example.com/clicked",
                          "https://example.com/after"}));
    QVERIFY(!host.view().allowsRemoteParts);
}

void tst_QWManualPages::legalTextNamesTheApplication()
{
    const ManualFixture host;
    QWManual::openLegal();
    QVERIFY(QWManual::manual().window()->isVisible());
    QVERIFY(host.view().html.contains("Test Host"));
    QVERIFY(!host.view().html.contains("%CFBundleName%"));
    QVERIFY(host.view().baseUrl.isEmpty());
}

void tst_QWManualPages::legalTextCarriesThePageStyle()
{
    const platform::Bundle bundle = platform::Bundle::forClassOf(QWManual::manual());
    QFile style(bundle.pathForResource("page", "css"));
    QFile text(bundle.pathForResource("EULA", "html"));
    QVERIFY(style.open(QIODevice::ReadOnly));
    QVERIFY(text.open(QIODevice::ReadOnly));
    const QByteArray html = text.readAll();
    QVERIFY(html.contains(style.readAll().trimmed()));
    QVERIFY(!html.contains("<script"));
    QVERIFY(!html.contains("http"));
}

void tst_QWManualPages::acknowledgementsAreAPageOfTheManual()
{
    const ManualFixture host;
    QWManual::openAcknowledgements();
    QCOMPARE(host.view().url(),
             QUrl::fromLocalFile(host.system.real(ManualFixture::folder) + "/acknowledgements.html"));
}

void tst_QWManualPages::pdfIsWrittenWhereTheUserSays()
{
    const ManualFixture host;
    host.install("page");
    host.open();
    QWManual::manual().printToPDF();
    QCOMPARE(host.system.filePanels.saves.size(), 1U);
    const platform::SavePanelRequest &request = host.system.filePanels.saves.front();
    QCOMPARE(request.window, QWManual::manual().window());
    QCOMPARE(request.suggestedName, "Test Host Manual");
    QCOMPARE(request.requiredFileType, "pdf");

    host.system.filePanels.endSave(platform::FilePanels::Cancel);
    QVERIFY(host.view().pdfs.isEmpty());
    QWManual::manual().printToPDF();
    host.system.filePanels.endSave(platform::FilePanels::OK, "/tmp/a.pdf");
    QCOMPARE(host.view().pdfs, QStringList("/tmp/a.pdf"));
}

void tst_QWManualPages::toolbarHoldsItsItems()
{
    const ManualFixture host;
    host.open();
    Toolbar &toolbar = host.toolbar();
    QWManual &manual = QWManual::manual();
    const QStringList all{"QWManualBackButtonIdentifier",
                          "QWManualForwardButtonIdentifier",
                          "QWManualHomeButtonIdentifier",
                          "QWManualPrintButtonIdentifier",
                          "QWManualPrintToPDFButtonIdentifier",
                          "NSToolbarFlexibleSpaceItem",
                          "NSToolbarSeparatorItem",
                          "NSToolbarSpaceItem"};
    QCOMPARE(toolbar.identifier(), "QWManualToolbar2");
    QVERIFY(toolbar.allowsUserCustomization());
    QVERIFY(toolbar.autosavesConfiguration());
    QCOMPARE(toolbar.displayMode(), Toolbar::IconOnly);
    QCOMPARE(toolbar.allowedItemIdentifiers(), all);
    QCOMPARE(toolbar.itemIdentifiers(), QStringList({all[0], all[1], all[2], all[5], all[3]}));

    const QStringList labels{"Back", "Forward", "Home", "Print", "Save To PDF"};
    const QStringList actions{"back:", "forward:", "home:", "print:", "printToPDF:"};
    for (int i = 0; i < labels.size(); ++i) {
        const auto item = toolbar.paletteItem(all[i]);
        QCOMPARE(item->label(), labels[i]);
        QCOMPARE(item->paletteLabel(), labels[i]);
        QCOMPARE(item->action().name(), actions[i]);
        QCOMPARE(item->target(), &manual);
        QVERIFY(!item->icon().isNull());
        QVERIFY(platform::respondsTo(&manual, item->action()));
    }
    QVERIFY(!toolbar.paletteItem("SomethingElse"));
}

void tst_QWManualPages::toolbarItemsAreEnabledWhenTheyWork()
{
    const ManualFixture host;
    host.install("page");
    host.open();
    const auto enabled = [&](const char *name) {
        return host.toolbar().itemWithIdentifier("QWManual" + QString(name) + "ButtonIdentifier")->isEnabled();
    };
    QVERIFY(enabled("Home"));
    QVERIFY(enabled("Print"));
    QVERIFY(!enabled("Back"));
    QVERIFY(!enabled("Forward"));
    host.view().click(QUrl("file:///other.html"));
    QVERIFY(enabled("Back"));
    QWManual::manual().back();
    QVERIFY(!enabled("Back"));
    QVERIFY(enabled("Forward"));

    platform::ToolbarItem stranger("SomethingElse");
    QVERIFY(qw::ManualToolbar(QWManual::manual()).validateToolbarItem(stranger));
}

void tst_QWManualPages::toolbarLeadsThroughThePages()
{
    const ManualFixture host;
    host.install("page");
    host.open();
    const QUrl other("file:///other.html");
    host.view().click(other);
    const auto choose = [&](const char *name) {
        host.toolbar().itemWithIdentifier("QWManual" + QString(name) + "ButtonIdentifier")->trigger();
    };
    choose("Back");
    QCOMPARE(host.view().url(), host.indexUrl());
    choose("Forward");
    QCOMPARE(host.view().url(), other);
    choose("Home");
    QCOMPARE(host.view().url(), host.indexUrl());
    choose("Print");
    QCOMPARE(host.view().prints, 1);
}

void tst_QWManualPages::keysLeadThroughThePages()
{
    const ManualFixture host;
    host.install("page");
    host.open();
    platform::Panel *const window = QWManual::manual().window();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window));
    host.view().click(QUrl("file:///other.html"));

    QTest::keyClick(window, Qt::Key_Left, Qt::AltModifier);
    QCOMPARE(host.view().url(), host.indexUrl());
    QTest::keyClick(window, Qt::Key_Left, Qt::AltModifier); // there is nothing before
    QTest::keyClick(window, Qt::Key_Right, Qt::AltModifier);
    QCOMPARE(host.view().url(), QUrl("file:///other.html"));
    QTest::keyClick(window, Qt::Key_P, Qt::ControlModifier);
    QCOMPARE(host.view().prints, 1);
    QTest::keyClick(window, Qt::Key_W, Qt::ControlModifier);
    QVERIFY(!window->isVisible());
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window));
    QTest::keyClick(window, Qt::Key_Escape);
    QVERIFY(!window->isVisible());
}

void tst_QWManualPages::pdfThatCannotBeWrittenIsTold()
{
    const ManualFixture host;
    host.install("page");
    host.open();
    host.view().writesPdfs = false;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("could not be written to"));
    QWManual::manual().printToPDF();
    host.system.filePanels.endSave(platform::FilePanels::OK, "/none/Book.pdf");
    QVERIFY(host.system.alerts.shown.isEmpty()); // not within the engine's call
    QTRY_COMPARE(host.system.alerts.shown, QStringList("The manual could not be saved as a PDF"));
    QVERIFY(host.system.alerts.alerts.front().informativeText.contains("“Book.pdf”"));
}

void tst_QWManualPages::printThatFailsIsTold()
{
    const ManualFixture host;
    host.install("page");
    host.open();
    QWManual::manual().print();
    Q_EMIT host.view().printFinished(true);
    Q_EMIT host.view().printFinished(false);
    QVERIFY(host.system.alerts.shown.isEmpty()); // not within the engine's call
    QTRY_COMPARE(host.system.alerts.shown, QStringList("The manual could not be printed"));
}

/// Not from within the navigation, which the engine waits for.
void tst_QWManualPages::linkThatNothingOpensIsTold()
{
    const ManualFixture host;
    host.install("page");
    host.open();
    host.system.workspace.succeeds = false;
    QVERIFY(!host.view().click(QUrl("https://example.com/a")));
    QVERIFY(host.system.alerts.shown.isEmpty());
    QTRY_COMPARE(host.system.alerts.shown, QStringList("“https://example.com/a” could not be opened."));
}

void tst_QWManualPages::linksThatNothingOpensAreToldOneAtATime()
{
    const ManualFixture host;
    host.install("page");
    host.open();
    host.system.workspace.succeeds = false;
    host.system.alerts.whileShown = [&] { host.view().click(QUrl("https://example.com/while-it-is-up")); };
    for (int i = 0; i < 50; ++i)
        host.view().click(QUrl("https://example.com/a"));
    QTRY_COMPARE(host.system.alerts.shown.size(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(host.system.alerts.shown.size(), 1);
    host.system.alerts.whileShown = {};
    host.view().click(QUrl("https://example.com/b"));
    QTRY_COMPARE(host.system.alerts.shown.size(), 2);
}

QW_TEST_MAIN(tst_QWManualPages)
#include "tst_QWManualPages.moc"
