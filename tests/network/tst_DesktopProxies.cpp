#include <QWPlatform/linux/network/DesktopProxies.h>

#include <QNetworkProxy>
#include <QNetworkProxyFactory>
#include <QTest>
#include <QUrl>

using namespace platform;

namespace
{
/// A desktop that wants a proxy for everything.
class ProxyForAll : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery & /*query*/) override
    {
        return {QNetworkProxy(QNetworkProxy::HttpProxy, "proxy.test", 3128)};
    }
};
} // namespace

class tst_DesktopProxies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QNetworkProxyFactory::setApplicationProxyFactory(new ProxyForAll); } // which is owned
    void numbersOfTheLocalNetworkAreReachedDirectly_data();
    void numbersOfTheLocalNetworkAreReachedDirectly();
};

void tst_DesktopProxies::numbersOfTheLocalNetworkAreReachedDirectly_data()
{
    QTest::addColumn<bool>("isDirect");
    for (const char *const host : {"127.0.0.1", "localhost", "10.0.0.1", "172.16.0.1", "172.31.255.255", "192.168.1.7",
                                   "169.254.3.4", "[fd00::7]", "[fe80::7]", "[::1]"})
        QTest::newRow(host) << true;
    for (const char *const host : {"support.test", "studio.local", "172.32.0.1", "192.169.0.1", "169.253.0.1",
                                   "11.0.0.1", "192.0.2.7", "[2001:db8::7]", "10.0.0.1.support.test"})
        QTest::newRow(host) << false;
}

void tst_DesktopProxies::numbersOfTheLocalNetworkAreReachedDirectly()
{
    QFETCH(const bool, isDirect);
    const QUrl url("http://" + QString(QTest::currentDataTag()) + ":8123/list");
    QCOMPARE(proxyFor(url).type(), isDirect ? QNetworkProxy::NoProxy : QNetworkProxy::HttpProxy);
}

QTEST_GUILESS_MAIN(tst_DesktopProxies)
#include "tst_DesktopProxies.moc"
