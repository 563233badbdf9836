// Proxies out of the environment: a real process (this program again) whose requests arrive at a proxy on the loopback
// interface, or do not.
#include <QWPlatform/linux/desktop/LinuxWebViews.h>
#include <QWPlatform/linux/network/LinuxUrlLoader.h>
#include <QWPlatform/network/transfers/Proxies.h>
#include <simulators/HttpServer.h>

#include <QApplication>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTest>

using namespace platform;

class tst_Proxies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void serversOfTheNetAreReachedThroughTheProxy_data();
    void serversOfTheNetAreReachedThroughTheProxy();
    void serversThatTheUserExceptsAreReachedDirectly_data();
    void serversThatTheUserExceptsAreReachedDirectly();
    void thisMachineIsReachedDirectly_data();
    void thisMachineIsReachedDirectly();
    void environmentIsLeftAloneWithoutAProxy();

private:
    bool _fetches(const QString &how, const QUrl &url, const QString &variable);

    QProcessEnvironment m_environment; ///< Of the process.
    std::unique_ptr<HttpServer> m_proxy;
    std::unique_ptr<HttpServer> m_server;
};

namespace
{
HttpReply page(const HttpRequest &)
{
    return HttpReply::text("a page");
}

QProcessEnvironment environmentWithoutProxies()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : environment.keys())
        if (name.endsWith("_proxy", Qt::CaseInsensitive))
            environment.remove(name);
    return environment;
}
} // namespace

void tst_Proxies::init()
{
    m_environment = environmentWithoutProxies();
    m_proxy = std::make_unique<HttpServer>(page);
    m_server = std::make_unique<HttpServer>(page);
    QVERIFY(m_proxy->listen());
    QVERIFY(m_server->listen());
}

/// Whether a process that has the proxy in @p variable gets @p url.
bool tst_Proxies::_fetches(const QString &how, const QUrl &url, const QString &variable)
{
    QProcessEnvironment environment = m_environment;
    environment.insert(variable, m_proxy->address());
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.setProcessEnvironment(environment);
    child.start(QFileInfo("/proc/self/exe").symLinkTarget(), {how, url.toString()});
    const auto ended = [&] { return child.state() == QProcess::NotRunning; };
    return QTest::qWaitFor(ended, 40'000) && child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0;
}

void tst_Proxies::serversOfTheNetAreReachedThroughTheProxy_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("variable");
    QTest::newRow("loader") << QString("--load") << QString("http_proxy");
    QTest::newRow("loader, in capitals") << QString("--load") << QString("HTTP_PROXY");
    QTest::newRow("web view") << QString("--show") << QString("http_proxy");
}

void tst_Proxies::serversOfTheNetAreReachedThroughTheProxy()
{
    QFETCH(const QString, how);
    QFETCH(const QString, variable);
    QVERIFY(_fetches(how, QUrl("http://support.test/list"), variable));
    QVERIFY(!m_proxy->requests().empty());
    QCOMPARE(m_proxy->requests().front().headers.value("host"), QByteArray("support.test"));
}

void tst_Proxies::serversThatTheUserExceptsAreReachedDirectly_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("exceptions");
    for (const char *const how : {"--load", "--show"})
        for (const char *const exceptions : {"no_proxy", "NO_PROXY"})
            QTest::addRow("%s %s", how, exceptions) << QString(how) << QString(exceptions);
}

/// An address that leads to this machine and that nobody takes for it.
void tst_Proxies::serversThatTheUserExceptsAreReachedDirectly()
{
    QFETCH(const QString, how);
    QFETCH(const QString, exceptions);
    QUrl url = m_server->url("/list");
    url.setHost("0.0.0.0");
    m_environment.insert(exceptions, url.host());
    QVERIFY(_fetches(how, url, "http_proxy"));
    QVERIFY(m_proxy->requests().empty());
    QVERIFY(!m_server->requests().empty());
}

void tst_Proxies::thisMachineIsReachedDirectly_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("host");
    for (const char *const how : {"--load", "--show", "--connect"})
        for (const char *const host : {"127.0.0.1", "localhost"})
            QTest::addRow("%s %s", how, host) << QString(how) << QString(host);
}

void tst_Proxies::thisMachineIsReachedDirectly()
{
    QFETCH(const QString, how);
    QFETCH(const QString, host);
    QUrl url = m_server->url("/list");
    url.setHost(host);
    QVERIFY(_fetches(how, url, "http_proxy"));
    QVERIFY(m_proxy->requests().empty());
    QVERIFY(!m_server->requests().empty());
}

void tst_Proxies::environmentIsLeftAloneWithoutAProxy()
{
    for (const QString &name : QProcessEnvironment::systemEnvironment().keys())
        if (name.endsWith("_proxy", Qt::CaseInsensitive))
            QSKIP("This machine has a proxy");
    useDesktopProxies();
    QVERIFY(!qEnvironmentVariableIsSet("no_proxy"));
}

namespace
{
bool loads(const QUrl &url)
{
    return LinuxUrlLoader().load({.url = url, .method = "GET", .headers = {}, .body = {}}).succeeded();
}

/// A socket of the host's own.
bool connects(const QUrl &url)
{
    QTcpSocket socket;
    socket.connectToHost(url.host(), static_cast<quint16>(url.port()));
    socket.write("GET /list HTTP/1.1\r\n\r\n");
    return socket.waitForReadyRead(20'000);
}

bool shows(const QUrl &url)
{
    QWidget window;
    LinuxWebViews views;
    const auto view = views.make(&window);
    QSignalSpy finished(view.get(), &WebView::loadFinished);
    view->load(url);
    return finished.wait(30'000) && finished.front().front().toBool();
}

int runChild(const QByteArray &how, const QUrl &url)
{
    useDesktopProxies();
    const bool succeeded = how == "--load" ? loads(url) : how == "--show" ? shows(url) : connects(url);
    return succeeded ? 0 : 1;
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    if (argc == 3 && QByteArray(argv[1]).startsWith("--"))
        return runChild(argv[1], QUrl(argv[2]));
    tst_Proxies test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Proxies.moc"
