#include "WebViewTest.h"

#include <simulators/HttpServer.h>

#include <QSignalSpy>

using namespace platform;

namespace
{
/// A page of one colour that is a link all over.
QString linkPage(const QString &target, const QString &colour, const QString &attributes = {})
{
    return QString("<body style='margin:0;background:%2'><a href='%1' %3 style='display:block;height:100vh'>&nbsp;</a>")
        .arg(target, colour, attributes);
}

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

/// What a page may load and where it may lead is its owner's choice.
class tst_WebViewPolicy : public WebViewTest
{
    Q_OBJECT

private Q_SLOTS:
    void policyIsAskedForWhatTheOwnerLoads();
    void refusedLoadDoesNotHappen();
    void policyIsAskedForClicks();
    void policyIsAskedForLinksToNewWindows();
    void policyIsAskedForFrames();
    void partsFromTheNetworkAreTheOwnersChoice_data();
    void partsFromTheNetworkAreTheOwnersChoice();
    void textOfTheOwnerGoesNowhereByItself();
    void policyHearsWhoWantsANavigation();

private:
    void _clickUntilAsked(const QUrl &url);
    bool _wasAsked(const QUrl &url) const { return m_asked.contains(url); }

    std::vector<WebView::Navigation> m_navigations; ///< Where a test wants to know all of them.
};

void tst_WebViewPolicy::_clickUntilAsked(const QUrl &url)
{
    const auto click = [&] { // a page that has just arrived may not take the mouse yet
        QTest::mouseClick(m_view->widget()->focusProxy(), Qt::LeftButton, {}, QPoint(100, 100));
        return QTest::qWaitFor([&] { return _wasAsked(url); }, 500);
    };
    QTRY_VERIFY_WITH_TIMEOUT(click(), patience);
}

void tst_WebViewPolicy::policyIsAskedForWhatTheOwnerLoads()
{
    _write("index.html", "<p>hello");
    _load(_url("index.html"));
    QCOMPARE(m_asked, QList<QUrl>{_url("index.html")});
}

void tst_WebViewPolicy::refusedLoadDoesNotHappen()
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

void tst_WebViewPolicy::policyIsAskedForClicks()
{
    m_allows = [](const QUrl &url) { return url.scheme() != u"https"; };
    _loadHtml(linkPage("https://example.test/page", "#334455"));
    _clickUntilAsked(QUrl("https://example.test/page"));
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#334455"), patience); // still here
    QVERIFY(!m_view->canGoBack());
}

void tst_WebViewPolicy::policyIsAskedForLinksToNewWindows()
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

void tst_WebViewPolicy::policyIsAskedForFrames()
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

void tst_WebViewPolicy::partsFromTheNetworkAreTheOwnersChoice_data()
{
    QTest::addColumn<bool>("asText");
    QTest::addColumn<bool>("allows");
    QTest::newRow("text") << true << false;
    QTest::newRow("file") << false << false;
    QTest::newRow("text, allowed") << true << true;
}

void tst_WebViewPolicy::partsFromTheNetworkAreTheOwnersChoice()
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

void tst_WebViewPolicy::textOfTheOwnerGoesNowhereByItself()
{
    _write("second.html", "<body style='background:#203040'>");
    m_view->loadHtml("<head><meta http-equiv='refresh' content='0;url=" + _url("second.html").toString() + "'></head>" +
                         linkPage("https://example.test/clicked", "#334455"),
                     {});
    m_allows = [](const QUrl &url) { return url.scheme() != u"https"; };
    _clickUntilAsked(QUrl("https://example.test/clicked"));
    QVERIFY(!_wasAsked(_url("second.html")));
}

void tst_WebViewPolicy::policyHearsWhoWantsANavigation()
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

int main(int argc, char **argv)
{
    return runWebViewTest<tst_WebViewPolicy>(argc, argv);
}

#include "tst_WebViewPolicy.moc"
