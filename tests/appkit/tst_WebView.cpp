#include "WebViewTest.h"

#include <simulators/HttpServer.h>

#include <QFile>
#include <QPushButton>
#include <QSignalSpy>

#include <optional>

using namespace platform;

namespace
{
bool engineIsMapped()
{
    QFile maps("/proc/self/maps");
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("WebEngineCore");
}

QByteArray fileContents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

/// Pages, shown, gone through, written and kept nowhere.
class tst_WebView : public WebViewTest
{
    Q_OBJECT

private Q_SLOTS:
    void engineIsNotMappedBeforeTheFirstView();
    void init();

    void filesAreShownWithTheirImagesAndStyles();
    void missingFileFinishesWithFailure();
    void failedLoadCanBeTriedAgain();
    void htmlIsShown();
    void longHtmlIsShown();
    void historyGoesBackAndForward();
    void scriptIsOff();
    void pdfIsWritten();
    void pdfToAFolderThatIsMissingFails();
    void viewIsUsableAfterThePageCrashed();
    void nothingIsKeptOnTheDisk();
    void parentMayGoFirst();
};

void tst_WebView::engineIsNotMappedBeforeTheFirstView()
{
    LinuxWebViews views;
    QVERIFY(!engineIsMapped()); // init() makes the view of this test elsewhere: see there
}

void tst_WebView::init()
{
    if (qstrcmp(QTest::currentTestFunction(), "engineIsNotMappedBeforeTheFirstView") == 0)
        return;
    WebViewTest::init();
    QVERIFY(engineIsMapped());
}

void tst_WebView::filesAreShownWithTheirImagesAndStyles()
{
    _write("style.css", "body { margin: 0; background: #102030 }");
    _write("dot.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'><rect width='10' height='10' "
                      "fill='#00ff00'/></svg>");
    _write("index.html", "<link rel=stylesheet href=style.css><img src=dot.svg style='width:100px;height:100px'>");
    _load(_url("index.html"));
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#102030"), patience);
    QTRY_COMPARE(m_view->widget()->grab().toImage().pixelColor(50, 50), QColor("#00ff00"));
    QCOMPARE(m_asked, QList<QUrl>{_url("index.html")});
}

void tst_WebView::missingFileFinishesWithFailure()
{
    QSignalSpy finished(m_view.get(), &WebView::loadFinished);
    m_view->load(_url("none.html"));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
    QVERIFY(!finished.front().front().toBool());
    QTRY_VERIFY(_messageIsShown());
    _loadHtml("<body style='background:#445566'>");
    QVERIFY(!_messageIsShown());
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#445566"), patience);
}

void tst_WebView::failedLoadCanBeTriedAgain()
{
    QSignalSpy finished(m_view.get(), &WebView::loadFinished);
    m_view->load(_url("late.html"));
    QTRY_VERIFY_WITH_TIMEOUT(_messageIsShown(), patience);
    _write("late.html", "<body style='background:#445566'>");
    auto *button = m_view->widget()->findChild<QPushButton *>();
    QVERIFY(button);
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#445566"), patience);
    QVERIFY(!_messageIsShown());
}

void tst_WebView::htmlIsShown()
{
    _loadHtml("<body style='background:#334455'>");
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#334455"), patience);
    QCOMPARE(m_asked.size(), 1);
    QCOMPARE(m_asked.front().scheme(), QString("data"));
}

void tst_WebView::longHtmlIsShown()
{
    _loadHtml("<body style='background:#334455'>" + QString("<!-- äöü -->").repeated(400'000));
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#334455"), patience);
    QCOMPARE(m_asked.size(), 1);
    QCOMPARE(m_asked.front().scheme(), QString("data"));
}

void tst_WebView::historyGoesBackAndForward()
{
    _write("first.html", "<body style='background:#111122'>");
    _write("second.html", "<body style='background:#222233'>");
    QSignalSpy changed(m_view.get(), &WebView::historyChanged);
    _load(_url("first.html"));
    QVERIFY(!m_view->canGoBack());
    _load(_url("second.html"));
    QTRY_VERIFY(m_view->canGoBack());
    QVERIFY(!m_view->canGoForward());
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#222233"), patience);
    m_asked.clear();
    changed.clear();
    m_view->goBack();
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#111122"), patience);
    QCOMPARE(m_asked, QList<QUrl>{_url("first.html")});
    QVERIFY(!changed.isEmpty());
    QVERIFY(m_view->canGoForward());
    m_view->goForward();
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#222233"), patience);
}

void tst_WebView::scriptIsOff()
{
    _loadHtml("<body style='background:#334455'><script>document.body.style.background = '#ff0000'</script>"
              "<noscript><div style='position:fixed;inset:0;background:#00ff00'></div></noscript>");
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#00ff00"), patience);
}

void tst_WebView::pdfIsWritten()
{
    _loadHtml("<h1>Manual</h1>" + QString("<p>A paragraph.</p>").repeated(200));
    const QString path = m_folder->filePath("Manual.pdf");
    std::optional<bool> ok;
    m_view->printToPdf(path, [&](bool done) { ok = done; });
    QTRY_VERIFY_WITH_TIMEOUT(ok.has_value(), patience);
    QVERIFY(*ok);
    const QByteArray pdf = fileContents(path);
    QVERIFY(pdf.startsWith("%PDF"));
    QVERIFY2(pdf.count("/Type /Page\n") + pdf.count("/Type /Page ") > 1, "paginated");
}

void tst_WebView::pdfToAFolderThatIsMissingFails()
{
    _loadHtml("<h1>Manual</h1>");
    std::optional<bool> ok;
    m_view->printToPdf(m_folder->filePath("none/Manual.pdf"), [&](bool done) { ok = done; });
    QTRY_VERIFY_WITH_TIMEOUT(ok.has_value(), patience);
    QVERIFY(!*ok);
}

void tst_WebView::viewIsUsableAfterThePageCrashed()
{
    _loadHtml("<body style='background:#334455'>");
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#334455"), patience);
    m_view->load(QUrl("chrome://crash")); // the engine's own way to end the page's process
    QTRY_VERIFY_WITH_TIMEOUT(_messageIsShown(), patience);
    _loadHtml("<body style='background:#556677'>");
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#556677"), patience);
    QVERIFY(!_messageIsShown());
}

void tst_WebView::nothingIsKeptOnTheDisk()
{
    HttpServer server;
    HttpReply reply = HttpReply::text("<p>hello");
    reply.headers.emplace_back("Set-Cookie", "a=b; Max-Age=100000");
    reply.headers.emplace_back("Cache-Control", "max-age=100000");
    server.answer("/page", reply);
    QVERIFY(server.listen());
    _load(server.url("/page"));
    m_view = m_views.make(m_window.get());
    _load(server.url("/page"));
    QCOMPARE(server.requests().size(), 2u);
    QVERIFY(!server.requests().back().headers.contains("cookie"));
}

void tst_WebView::parentMayGoFirst()
{
    _loadHtml("<p>hello");
    m_window.reset();
    QVERIFY(!m_view->widget());
    m_view->loadHtml("<p>again", {});
    m_view->print();
    m_view.reset();
}

int main(int argc, char **argv)
{
    return runWebViewTest<tst_WebView>(argc, argv);
}

#include "tst_WebView.moc"
