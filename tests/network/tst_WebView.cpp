#include <QWPlatform/linux/LinuxWebViews.h>
#include <simulators/HttpServer.h>

#include <QApplication>
#include <QFile>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace platform;

namespace
{
constexpr int patience = 20'000; // the engine starts processes

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

/// A page of one colour that is a link all over.
QString linkPage(const QString &target, const QString &colour, const QString &attributes = {})
{
    return QString("<body style='margin:0;background:%2'><a href='%1' %3 style='display:block;height:100vh'>&nbsp;</a>")
        .arg(target, colour, attributes);
}
} // namespace

/// A view in a window, with a policy that writes down what it is asked.
class tst_WebView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void engineIsNotMappedBeforeTheFirstView();
    void init();
    void cleanup();

    void filesAreShownWithTheirImagesAndStyles();
    void missingFileFinishesWithFailure();
    void failedLoadCanBeTriedAgain();
    void htmlIsShown();
    void longHtmlIsShown();
    void policyIsAskedForWhatTheOwnerLoads();
    void refusedLoadDoesNotHappen();
    void policyIsAskedForClicks();
    void policyIsAskedForLinksToNewWindows();
    void policyIsAskedForFrames();
    void partsFromTheNetworkAreTheOwnersChoice_data();
    void partsFromTheNetworkAreTheOwnersChoice();
    void textOfTheOwnerGoesNowhereByItself();
    void policyHearsWhoWantsANavigation();
    void historyGoesBackAndForward();
    void scriptIsOff();
    void pdfIsWritten();
    void pdfToAFolderThatIsMissingFails();
    void viewIsUsableAfterThePageCrashed();
    void nothingIsKeptOnTheDisk();
    void parentMayGoFirst();

private:
    void _write(const QString &name, const QByteArray &data) const;
    QUrl _url(const QString &name) const { return QUrl::fromLocalFile(m_folder->filePath(name)); }
    void _load(const QUrl &url);
    void _loadHtml(const QString &html);
    QColor _colour() const;
    bool _messageIsShown() const;
    void _clickUntilAsked(const QUrl &url);
    bool _wasAsked(const QUrl &url) const { return m_asked.contains(url); }

    LinuxWebViews m_views;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<WebView> m_view;
    QList<QUrl> m_asked;
    std::vector<WebView::Navigation> m_navigations; ///< Where a test wants to know all of them.
    std::function<bool(const QUrl &)> m_allows;
};

void tst_WebView::engineIsNotMappedBeforeTheFirstView()
{
    LinuxWebViews views;
    QVERIFY(!engineIsMapped()); // init() makes the view of this test elsewhere: see there
}

void tst_WebView::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_window = std::make_unique<QWidget>();
    m_window->resize(400, 300);
    m_asked.clear();
    m_navigations.clear();
    m_allows = [](const QUrl &) { return true; };
    if (qstrcmp(QTest::currentTestFunction(), "engineIsNotMappedBeforeTheFirstView") == 0)
        return;
    m_view = m_views.make(m_window.get());
    QVERIFY(engineIsMapped());
    m_view->widget()->setGeometry(m_window->rect());
    m_view->setPolicy([this](const QUrl &url) {
        m_asked += url;
        return m_allows(url);
    });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_WebView::cleanup()
{
    m_view.reset();
    m_window.reset();
    m_folder.reset();
}

void tst_WebView::_write(const QString &name, const QByteArray &data) const
{
    QFile file(m_folder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(data), data.size());
}

void tst_WebView::_load(const QUrl &url)
{
    QSignalSpy finished(m_view.get(), &WebView::loadFinished);
    m_view->load(url);
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
    QVERIFY(finished.front().front().toBool());
}

void tst_WebView::_loadHtml(const QString &html)
{
    QSignalSpy finished(m_view.get(), &WebView::loadFinished);
    m_view->loadHtml(html, {});
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
    QVERIFY(finished.front().front().toBool());
}

QColor tst_WebView::_colour() const
{
    const QImage picture = m_view->widget()->grab().toImage();
    return picture.pixelColor(picture.rect().center());
}

bool tst_WebView::_messageIsShown() const
{
    auto *message = m_view->widget()->findChild<QWidget *>("message");
    return message && message->isVisible();
}

void tst_WebView::_clickUntilAsked(const QUrl &url)
{
    const auto click = [&] { // a page that has just arrived may not take the mouse yet
        QTest::mouseClick(m_view->widget()->focusProxy(), Qt::LeftButton, {}, QPoint(100, 100));
        return QTest::qWaitFor([&] { return _wasAsked(url); }, 500);
    };
    QTRY_VERIFY_WITH_TIMEOUT(click(), patience);
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

void tst_WebView::policyIsAskedForWhatTheOwnerLoads()
{
    _write("index.html", "<p>hello");
    _load(_url("index.html"));
    QCOMPARE(m_asked, QList<QUrl>{_url("index.html")});
}

void tst_WebView::refusedLoadDoesNotHappen()
{
    _loadHtml("<body style='background:#334455'>");
    HttpServer server;
    QVERIFY(server.listen());
    m_allows = [](const QUrl &) { return false; };
    QSignalSpy finished(m_view.get(), &WebView::loadFinished);
    m_view->load(server.url("/page"));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
    QVERIFY(!finished.front().front().toBool());
    QVERIFY(_wasAsked(server.url("/page")));
    QVERIFY(!_messageIsShown());
    QCOMPARE(_colour(), QColor("#334455")); // still here
    m_allows = [](const QUrl &) { return true; };
    _loadHtml("<body style='background:#556677'>");
    QVERIFY(server.requests().empty());
}

void tst_WebView::policyIsAskedForClicks()
{
    m_allows = [](const QUrl &url) { return url.scheme() != u"https"; };
    _loadHtml(linkPage("https://example.test/page", "#334455"));
    _clickUntilAsked(QUrl("https://example.test/page"));
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#334455"), patience); // still here
    QVERIFY(!m_view->canGoBack());
}

void tst_WebView::policyIsAskedForLinksToNewWindows()
{
    _write("second.html", "<body style='background:#203040'>");
    _write("first.html", linkPage("second.html", "#334455", "target='_blank'").toUtf8());
    m_allows = [this](const QUrl &url) { return url != _url("second.html"); };
    _load(_url("first.html"));
    _clickUntilAsked(_url("second.html"));
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#334455"), patience);

    m_asked.clear();
    m_allows = [](const QUrl &) { return true; };
    _clickUntilAsked(_url("second.html"));
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#203040"), patience); // in the same view
}

void tst_WebView::policyIsAskedForFrames()
{
    HttpServer server;
    QVERIFY(server.listen());
    m_allows = [](const QUrl &url) { return url.scheme() != u"http"; };
    _write("frames.html", "<iframe src='" + server.url("/frame").toEncoded() + "'></iframe>");
    m_view->load(_url("frames.html"));
    QTRY_VERIFY_WITH_TIMEOUT(_wasAsked(server.url("/frame")), patience);
    _loadHtml("<p>next");
    QVERIFY(server.requests().empty());
}

namespace
{
/// A page that wants all it can have of the server.
QString greedyPage(const HttpServer &server)
{
    return QString("<html><head><link rel='preconnect' href='%1'><link rel='dns-prefetch' href='%1'>"
                   "<link rel='prefetch' href='%1/prefetch'><link rel='icon' href='%1/icon.png'>"
                   "<link rel='stylesheet' href='%1/style.css'>"
                   "<style>@import '%1/import.css'; @font-face { font-family: f; src: url('%1/font.woff') } "
                   "p { font-family: f; background: url('%1/background.png') }</style></head><body>"
                   "<img src='%1/image.png'><iframe src='%1/frame'></iframe><object data='%1/object'></object>"
                   "<video src='%1/video' autoplay></video><p>text</body></html>")
        .arg(server.address());
}
} // namespace

void tst_WebView::partsFromTheNetworkAreTheOwnersChoice_data()
{
    QTest::addColumn<bool>("asText");
    QTest::addColumn<bool>("allows");
    QTest::newRow("text") << true << false;
    QTest::newRow("file") << false << false;
    QTest::newRow("text, allowed") << true << true;
}

void tst_WebView::partsFromTheNetworkAreTheOwnersChoice()
{
    QFETCH(const bool, asText);
    QFETCH(const bool, allows);
    HttpServer server;
    QVERIFY(server.listen());
    m_view->setAllowsRemoteParts(allows);
    _write("greedy.html", greedyPage(server).toUtf8());
    if (asText)
        _loadHtml(greedyPage(server));
    else
        m_view->load(_url("greedy.html"));
    if (allows)
        QTRY_VERIFY_WITH_TIMEOUT(!server.requests().empty(), patience);
    m_view->setAllowsRemoteParts(false);
    _loadHtml("<p>next");
    QCOMPARE(!server.requests().empty(), allows);
    QCOMPARE(server.connections() > 0, allows);
}

void tst_WebView::textOfTheOwnerGoesNowhereByItself()
{
    _write("second.html", "<body style='background:#203040'>");
    m_view->loadHtml("<head><meta http-equiv='refresh' content='0;url=" + _url("second.html").toString() + "'></head>" +
                         linkPage("https://example.test/clicked", "#334455"),
                     {});
    m_allows = [](const QUrl &url) { return url.scheme() != u"https"; };
    _clickUntilAsked(QUrl("https://example.test/clicked"));
    QVERIFY(!_wasAsked(_url("second.html")));
}

void tst_WebView::policyHearsWhoWantsANavigation()
{
    using Cause = WebView::Navigation::Cause;
    m_view->setPolicy([this](const WebView::Navigation &navigation) {
        m_navigations.push_back(navigation);
        return navigation.url.scheme() != u"https";
    });
    const auto wasAsked = [&](const QString &url, Cause cause, bool isMainFrame) {
        return std::any_of(m_navigations.begin(), m_navigations.end(), [&](const WebView::Navigation &one) {
            return one.url == QUrl(url) && one.cause == cause && one.isMainFrame == isMainFrame;
        });
    };
    _write("refresh.html", "<head><meta http-equiv='refresh' content='0;url=https://example.test/refresh'></head>");
    m_view->load(_url("refresh.html"));
    QTRY_VERIFY_WITH_TIMEOUT(wasAsked("https://example.test/refresh", Cause::Page, true), patience);
    _write("page.html", "<iframe src='https://example.test/frame'></iframe>"
                        "<iframe srcdoc=\"<meta http-equiv='refresh' content='0;url=https://example.test/inner'>\">"
                        "</iframe>");
    m_view->load(_url("page.html"));
    QTRY_VERIFY_WITH_TIMEOUT(wasAsked("https://example.test/frame", Cause::Page, false), patience);
    QTRY_VERIFY_WITH_TIMEOUT(wasAsked("https://example.test/inner", Cause::Page, false), patience);
    QVERIFY(wasAsked(_url("page.html").toString(), Cause::Owner, true));

    _write("link.html", linkPage("https://example.test/clicked", "#334455", "target='_blank'").toUtf8());
    m_view->load(_url("link.html"));
    const auto click = [&] {
        QTest::mouseClick(m_view->widget()->focusProxy(), Qt::LeftButton, {}, QPoint(100, 100));
        return QTest::qWaitFor([&] { return wasAsked("https://example.test/clicked", Cause::User, true); }, 500);
    };
    QTRY_VERIFY_WITH_TIMEOUT(click(), patience);
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
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    tst_WebView test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_WebView.moc"
