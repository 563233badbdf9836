#include "ManualArchives.h"
#include "RealManualTest.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/WebView.h>
#include <QWUtilities/shell/QWManual.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>

using namespace manuals;

namespace
{
/// The archive with its entries marked as encrypted.
QByteArray encrypted(QByteArray archive)
{
    for (const auto &[signature, flags] : {std::pair("PK\x03\x04", 6), std::pair("PK\x01\x02", 8)})
        for (auto at = archive.indexOf(signature); at >= 0; at = archive.indexOf(signature, at + 1))
            archive[at + flags] = static_cast<char>(archive[at + flags] | 1);
    return archive;
}
} // namespace

/// The archive that the host carries, and the page that comes of it.
class tst_QWManualReal : public RealManualTest
{
    Q_OBJECT

private Q_SLOTS:
    void hostsArchiveIsUnpackedAndShown();
    void brokenArchiveDoesNoHarm_data();
    void brokenArchiveDoesNoHarm();
    void archiveCannotLeaveItsFolder_data();
    void archiveCannotLeaveItsFolder();
    void pdfHoldsThePage();
    void escapeInThePageClosesTheWindow();
};

void tst_QWManualReal::hostsArchiveIsUnpackedAndShown()
{
    hostCarries(goodArchive("2.1"));
    QWManual::openManual();
    QCOMPARE(contentsOf(index()), pageWithVersion("2.1"));
    QCOMPARE(contentsOf(supportFolder() + "/Manual/more/b.html"), "b");
    QSignalSpy loaded(QWManual::manual().contentView(), &platform::WebView::loadFinished);
    QVERIFY(loaded.wait(20'000));
    QVERIFY(loaded.last().first().toBool());
    QVERIFY(m_alerts.isEmpty());
}

void tst_QWManualReal::brokenArchiveDoesNoHarm_data()
{
    QTest::addColumn<QByteArray>("archive");
    const QByteArray good = goodArchive("2.1");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("garbage") << QByteArray("not an archive at all");
    QTest::newRow("cut short") << good.left(good.size() / 2);
    QTest::newRow("without its beginning") << good.mid(good.size() / 2);
    QByteArray damaged = good;
    damaged.replace(40, 40, QByteArray(40, '\xff'));
    QTest::newRow("damaged in the middle") << damaged;
    QTest::newRow("asking for a password") << encrypted(good);
    QTest::newRow("without an index page") << archiveOf("z.writestr('other.html','b')");
}

void tst_QWManualReal::brokenArchiveDoesNoHarm()
{
    QFETCH(const QByteArray, archive);
    hostCarries(archive);
    openAndWaitForCheck();
    QVERIFY(QWManual::manual().window()->isVisible());
    QVERIFY(m_alerts.isEmpty());
}

void tst_QWManualReal::archiveCannotLeaveItsFolder_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("parent folder") << QByteArray("z.writestr('../escaped.html','x')");
    QTest::newRow("far up") << QByteArray("z.writestr('a/../../../escaped.html','x')");
    QTest::newRow("absolute name") << QByteArray("z.writestr('/TARGET/escaped.html','x')");
    QTest::newRow("backslashes") << QByteArray("z.writestr('..\\\\escaped.html','x')");
    QTest::newRow("through a link to the parent") << QByteArray("link('up','..')\nz.writestr('up/escaped.html','x')");
    QTest::newRow("through an absolute link") << QByteArray("link('up','/TARGET')\nz.writestr('up/escaped.html','x')");
    QTest::newRow("over a link to a file")
        << QByteArray("link('page.html','/TARGET/precious')\nz.writestr('page.html','x')");
    QTest::newRow("link given as a folder") << QByteArray("link('up/','..')\nz.writestr('up/escaped.html','x')");
}

void tst_QWManualReal::archiveCannotLeaveItsFolder()
{
    QFETCH(QByteArray, script);
    const QString outside = QFileInfo(supportFolder()).absoluteFilePath();
    writeTo(outside + "/precious", "kept");
    script.replace("TARGET", outside.mid(1).toUtf8());
    hostCarries(archiveOf(script + "\nz.writestr('index.html','''" + pageWithVersion("2.1") + "''')"));
    openAndWaitForCheck();

    QCOMPARE(contentsOf(outside + "/precious"), "kept");
    QCOMPARE(QDir(outside).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList({"Manual", "precious"}));
    QVERIFY(!QFile::exists(QFileInfo(outside).path() + "/escaped.html"));
    QVERIFY(QWManual::manual().window()->isVisible());
}

void tst_QWManualReal::pdfHoldsThePage()
{
    hostCarries(goodArchive("2.1"));
    QWManual::openManual();
    QSignalSpy loaded(QWManual::manual().contentView(), &platform::WebView::loadFinished);
    QVERIFY(loaded.wait(20'000));
    const QString path = QDir::homePath() + "/manual.pdf";
    std::optional<bool> written;
    QWManual::manual().contentView()->printToPdf(path, [&](bool ok) { written = ok; });
    QTRY_VERIFY(written);
    QVERIFY(*written);
    QVERIFY(contentsOf(path).startsWith("%PDF-"));
}

void tst_QWManualReal::escapeInThePageClosesTheWindow()
{
    hostCarries(goodArchive("2.1"));
    QWManual::openManual();
    platform::Panel *const window = QWManual::manual().window();
    platform::WebView *const view = QWManual::manual().contentView();
    QSignalSpy loaded(view, &platform::WebView::loadFinished);
    QVERIFY(loaded.wait(20'000));
    QVERIFY(QTest::qWaitForWindowActive(window));
    view->widget()->setFocus();
    QTRY_VERIFY(QApplication::focusWidget());
    QVERIFY(view->widget() == QApplication::focusWidget() || view->widget()->isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    QTRY_VERIFY(!window->isVisible());
}

QW_TEST_MAIN(tst_QWManualReal)
#include "tst_QWManualReal.moc"
