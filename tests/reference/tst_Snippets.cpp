#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <MeterPanel.h>
#include <NewsPage.h>
#include <RecentSounds.h>
#include <TakeImport.h>

#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/recorder/QWVeskBrowser.h>

#include <QMenu>

/// The code that the pages show does what they say.
class tst_Snippets : public QObject
{
    Q_OBJECT

private slots:
    void soundsOpenedLastComeFirstAndEachOnce();
    void noMoreSoundsAreKeptThanTheUserWants();
    void aListIsCarriedToAnotherMachine();
    void aPanelComesBackWhereItWasLeft();
    void newsAreShownWhenTheyCome();
    void linksOfNewsOpenInTheBrowser();
    void recordersAreLookedForFromTheMenu();
    void filesReachWhoeverImports();

private:
    FakeSystem m_system;
    platform::SystemScope m_scope{m_system};
};

void tst_Snippets::soundsOpenedLastComeFirstAndEachOnce()
{
    RecentSounds sounds;
    for (const char *path : {"a", "b", "a"})
        sounds.add(path);
    QCOMPARE(sounds.all(), (QVariantList{"a", "b"}));
}

void tst_Snippets::noMoreSoundsAreKeptThanTheUserWants()
{
    m_system.userDefaults().setObject("Recent Sounds Count", 1);
    RecentSounds sounds;
    sounds.add("a");
    sounds.add("b");
    QCOMPARE(sounds.all(), (QVariantList{"b"}));
}

void tst_Snippets::aListIsCarriedToAnotherMachine()
{
    RecentSounds sounds;
    m_system.userDefaults().setObject("Recent Sounds", QVariantList{"a", "b"});
    QVERIFY(sounds.exportTo("~/sounds.plist"));
    m_system.userDefaults().removeObject("Recent Sounds");
    QVERIFY(sounds.importFrom("~/sounds.plist"));
    QVERIFY(!sounds.importFrom("~/no such file.plist"));
    QCOMPARE(sounds.all(), (QVariantList{"a", "b"}));
}

void tst_Snippets::aPanelComesBackWhereItWasLeft()
{
    const QRect left(40, 60, 200, 120);
    {
        MeterPanel panel;
        panel.open();
        panel.setGeometry(left);
        panel.close();
    }
    MeterPanel panel;
    panel.open();
    QCOMPARE(panel.geometry(), left);
}

void tst_Snippets::newsAreShownWhenTheyCome()
{
    m_system.urlLoader.answer("http://news.test/", "<p>A new version</p>");
    NewsPage page(nullptr);
    page.load(QUrl("http://news.test/"));
    QTRY_COMPARE(static_cast<FakeWebView &>(page.view()).html, "<p>A new version</p>");
}

void tst_Snippets::linksOfNewsOpenInTheBrowser()
{
    NewsPage page(nullptr);
    auto &view = static_cast<FakeWebView &>(page.view());
    view.loadHtml("<a href='http://news.test/more'>More</a>", {});
    QVERIFY(!view.click(QUrl("http://news.test/more")));
    QCOMPARE(m_system.workspace.openedUrls, QStringList{"http://news.test/more"});
}

void tst_Snippets::recordersAreLookedForFromTheMenu()
{
    QMenu menu;
    const TakeImport import(menu, [](const QString &) { return true; });
    menu.actions().constFirst()->trigger();
    QVERIFY(QWVeskBrowser::sharedInstance().window()->isVisible());
    QCOMPARE(m_system.netServices.searching(), 1);
    QWVeskBrowser::sharedInstance().window()->close();
}

void tst_Snippets::filesReachWhoeverImports()
{
    QMenu menu;
    QStringList opened;
    const TakeImport import(menu, [&](const QString &path) { return opened.append(path), path.endsWith(".wav"); });
    QVERIFY(qobject_cast<QWApplication *>(qApp)->openFile("/takes/Take 1.wav"));
    QVERIFY(!qobject_cast<QWApplication *>(qApp)->openFile("/takes/Take 1.txt"));
    QCOMPARE(opened, (QStringList{"/takes/Take 1.wav", "/takes/Take 1.txt"}));
}

QW_TEST_MAIN(tst_Snippets)
#include "tst_Snippets.moc"
