#include "RecorderTools.h"

#include <QWBase/QWApplicationLog.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <simulators/HttpServer.h>

#include <QTest>

using namespace recordertest;
using platform::PropertyList::toXml;

namespace
{
const QVariantList twoTakes{QVariantMap{{"title", "One"}, {"keywords", "bird"}}, QVariantMap{{"title", "Two"}}};

QString nameOf(const QString &serviceName)
{
    NotingBrowser browser;
    const auto device = QWVeskDevice::deviceWithNetServiceBrowser(std::make_shared<TestService>(serviceName), browser);
    return device ? device->name() : "none";
}

/// Events until no piece of background work is left.
void waitForWork()
{
    while (platform::System::current().backgroundWork().running() > 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}
} // namespace

class tst_QWVeskDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreWhatStandsBehindPrefixAndJoiner_data()
    {
        QTest::addColumn<QString>("serviceName");
        QTest::addColumn<QString>("name");
        QTest::newRow("usual") << "Vesk on Studio"
                               << "Studio";
        QTest::newRow("blue") << "Blue Vesk on Studio"
                              << "Studio";
        QTest::newRow("another") << "Jukebox"
                                 << "none";
        QTest::newRow("nothing") << ""
                                 << "none";
        QTest::newRow("prefix inside") << "My Vesk on Studio"
                                       << "none";
        QTest::newRow("other case") << "vesk on Studio"
                                    << "none";
        QTest::newRow("fixed places") << "Vesk's ownX"
                                      << "wnX";
        QTest::newRow("the prefix alone") << "Vesk"
                                          << "Vesk";
        QTest::newRow("nothing behind the joiner") << "Vesk on "
                                                   << "Vesk on ";
        QTest::newRow("the blue prefix alone") << "Blue Vesk on"
                                               << "Blue Vesk on";
        QTest::newRow("cut inside a character") << QStringLiteral("Vesk on\U0001F399Kim") << "Kim";
        QTest::newRow("cut inside the last one")
            << QStringLiteral("Vesk on\U0001F399") << QStringLiteral("Vesk on\U0001F399");
    }

    void namesAreWhatStandsBehindPrefixAndJoiner()
    {
        QFETCH(const QString, serviceName);
        QTEST(nameOf(serviceName), "name");
    }

    void resolvesFromTheStartFiveSecondsLong()
    {
        NotingBrowser browser;
        const auto service = std::make_shared<TestService>("Blue Vesk on Studio");
        const auto device = QWVeskDevice::deviceWithNetServiceBrowser(service, browser);
        QVERIFY(device->isBlue());
        QCOMPARE(device->browser(), &browser);
        QCOMPARE(&device->service(), service.get());
        QVERIFY(service->timeouts == std::vector{std::chrono::milliseconds(5000)});
        QVERIFY(service->delegate);
        QCOMPARE(device->address(), "");
        QVERIFY(device->isLooking() && device->recordings().empty() && !device->invalid());
    }

    void loadsItsListWhenItIsResolved()
    {
        FakeSystem system;
        platform::SystemScope scope(system);
        NotingBrowser browser;
        const auto device = loadedDevice(system, browser, twoTakes);
        QCOMPARE(device->address(), "http://192.0.2.7:8123");
        QCOMPARE(system.urlLoader.requestedUrls(), QStringList{"http://192.0.2.7:8123/list.plist"});
        QCOMPARE(system.urlLoader.requests().front().largestBody, 128LL << 20);
        QCOMPARE(device->recordings().size(), size_t(2));
        QCOMPARE(device->recordings().back()->title(), "Two");
        QCOMPARE(device->recordings().front()->device(), device);
        QCOMPARE(browser.refreshes, 1);
        QVERIFY(!device->invalid());
    }

    void isInvalidWithoutAList_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("status");
        QTest::newRow("no array") << toXml(QVariantMap{{"title", "One"}}) << 200;
        QTest::newRow("garbage") << QByteArray("<html>") << 200;
        QTest::newRow("cut") << toXml(twoTakes).chopped(20) << 200;
        QTest::newRow("nothing") << QByteArray() << 200;
        QTest::newRow("404 with a list") << toXml(twoTakes) << 404;
    }

    void isInvalidWithoutAList()
    {
        QFETCH(const QByteArray, body);
        QFETCH(const int, status);
        FakeSystem system;
        platform::SystemScope scope(system);
        NotingBrowser browser;
        const auto service = std::make_shared<TestService>("Vesk on Studio");
        const auto device = QWVeskDevice::deviceWithNetServiceBrowser(service, browser);
        system.urlLoader.answer("http://192.0.2.7:8123/list.plist", body, status);
        service->resolve({rawAddress("192.0.2.7")});
        waitForWork();
        QVERIFY(device->invalid());
        QVERIFY(device->recordings().empty());
        QCOMPARE(browser.refreshes, 1);
    }

    void theFirstAddressIsReadAsIPv4WhateverItIs()
    {
        FakeSystem system;
        platform::SystemScope scope(system);
        NotingBrowser browser;
        sockaddr_in6 six{};
        six.sin6_family = AF_INET6;
        six.sin6_flowinfo = htonl(0x0A010203);
        const auto service = std::make_shared<TestService>("Vesk on Studio");
        const auto device = QWVeskDevice::deviceWithNetServiceBrowser(service, browser);
        service->resolve({QByteArray(reinterpret_cast<const char *>(&six), sizeof(six)), rawAddress("192.0.2.7")}, 80);
        QCOMPARE(device->address(), "http://10.1.2.3:80");
        waitForWork();
        QVERIFY(device->invalid());
    }

    void theAddressOfNobodyIsNeverAsked()
    {
        FakeSystem system;
        platform::SystemScope scope(system);
        NotingBrowser browser;
        system.urlLoader.answer("http://0.0.0.0:8123/list.plist", toXml(twoTakes));
        const auto service = std::make_shared<TestService>("Vesk on Studio");
        const auto device = QWVeskDevice::deviceWithNetServiceBrowser(service, browser);
        service->resolve({rawAddress("0.0.0.0")});
        waitForWork();
        QVERIFY(device->invalid());
        QVERIFY(system.urlLoader.requests().empty());
        QCOMPARE(browser.refreshes, 1);
    }

    void whatDoesNotResolveStaysEmptyAndIsLogged_data()
    {
        QTest::addColumn<QList<QByteArray>>("addresses");
        QTest::newRow("without an address") << QList<QByteArray>{};
        QTest::newRow("with half of one") << QList<QByteArray>{QByteArray("\x02\0\0\x50\x7F", 5)};
    }

    void whatDoesNotResolveStaysEmptyAndIsLogged()
    {
        QFETCH(const QList<QByteArray>, addresses);
        FakeSystem system;
        platform::SystemScope scope(system);
        NotingBrowser browser;
        const auto service = std::make_shared<TestService>("Vesk on Studio");
        const auto device = QWVeskDevice::deviceWithNetServiceBrowser(service, browser);
        service->resolve(addresses);
        QCOMPARE(device->address(), "");
        QVERIFY(!device->invalid() && !device->isLooking());
        QCOMPARE(browser.unresolved, QStringList{"Studio"});
        QCOMPARE(browser.refreshes, 0);
        QVERIFY(system.readFile(QWApplicationLog::sharedLog().path()).value_or("").contains("did not resolve"));
    }

    void aServiceThatOutlivesItsRecorderTellsNobody()
    {
        NotingBrowser browser;
        const auto service = std::make_shared<TestService>("Vesk on Studio");
        QWVeskDevice::deviceWithNetServiceBrowser(service, browser);
        QVERIFY(!service->delegate);
    }

    void aLoadThatEndsAfterItsBrowserTellsNobody()
    {
        FakeSystem system;
        platform::SystemScope scope(system);
        auto browser = std::make_unique<NotingBrowser>();
        const auto service = std::make_shared<TestService>("Vesk on Studio");
        const auto device = QWVeskDevice::deviceWithNetServiceBrowser(service, *browser);
        service->resolve({rawAddress("192.0.2.7")});
        browser.reset();
        waitForWork();
        QVERIFY(device->invalid());
        QVERIFY(!device->browser());
    }

    void fewListsLoadAtATime()
    {
        HttpServer server;
        QVERIFY(server.listen());
        server.answer("/list.plist", HttpReply::text(toXml(twoTakes)));
        NotingBrowser browser;
        std::vector<std::shared_ptr<QWVeskDevice>> devices;
        int most = 0;
        for (int i = 0; i < 40; ++i) {
            const auto service = std::make_shared<TestService>("Vesk on Studio");
            devices.push_back(QWVeskDevice::deviceWithNetServiceBrowser(service, browser));
            service->resolve({rawAddress("127.0.0.1")}, QUrl(server.address()).port());
        }
        devices.back()->stopLoading(); // in the queue still
        while (browser.refreshes < 39) {
            most = std::max(most, platform::System::current().backgroundWork().running());
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        QCOMPARE(most, qw::ListLoads::mostAtOnce);
        QCOMPARE(platform::System::current().backgroundWork().running(), 0);
        QVERIFY(devices.back()->recordings().empty() && !devices.back()->invalid());
    }

    void whatAllListsHoldTogetherIsLimited()
    {
        qw::ListLoads loads;
        auto first = loads.claim(qw::ListLoads::mostTakes - 10);
        QVERIFY(first);
        QVERIFY(!loads.claim(11));
        const auto rest = loads.claim(10);
        QVERIFY(rest && loads.claim(0) && !loads.claim(1));
        first.reset();
        QVERIFY(loads.claim(qw::ListLoads::mostTakes - 10));
    }

    void aListForWhichThereIsNoRoomDoesNotLoad()
    {
        FakeSystem system;
        platform::SystemScope scope(system);
        NotingBrowser browser;
        auto others = browser.link()->loads.claim(qw::ListLoads::mostTakes - 1);
        QVERIFY(loadedDevice(system, browser, twoTakes)->invalid());
        others.reset();
        const auto device = loadedDevice(system, browser, twoTakes);
        QCOMPARE(device->recordings().size(), size_t(2));
        QVERIFY(!browser.link()->loads.claim(qw::ListLoads::mostTakes - 1)); // the list has its share
    }

    void aStoppedLoadHasNoList_data()
    {
        QTest::addColumn<bool>("browserGoes");
        QTest::newRow("the recorder is stopped") << false;
        QTest::newRow("the browser goes") << true;
    }

    void aStoppedLoadHasNoList()
    {
        QFETCH(const bool, browserGoes);
        FakeSystem system;
        platform::SystemScope scope(system);
        auto browser = std::make_unique<NotingBrowser>();
        const auto device = loadedDevice(system, *browser, twoTakes);
        QCOMPARE(device->recordings().size(), size_t(2));
        if (browserGoes)
            browser.reset();
        else
            device->stopLoading();
        device->loadRecordings(system.urlLoader);
        QVERIFY(device->recordings().empty());
    }

    // The real loader and a real server, since what a recorder leaves behind is then in use on other threads.
    void aThousandRecordersLeaveDuringTheirLoad()
    {
        HttpServer server;
        QVERIFY(server.listen());
        server.answer("/list.plist", HttpReply::text(toXml(twoTakes)));
        NotingBrowser browser;
        std::vector<std::weak_ptr<QWVeskDevice>> left;
        for (int i = 0; i < 1000; ++i) {
            const auto service = std::make_shared<TestService>("Vesk on Studio");
            auto device = QWVeskDevice::deviceWithNetServiceBrowser(service, browser);
            service->resolve({rawAddress("127.0.0.1")}, QUrl(server.address()).port());
            left.push_back(device);
            if (i % 3 == 1)
                QCoreApplication::processEvents();
            if (i % 3 == 2)
                (void)device->recordings().size();
            device.reset();
            while (platform::System::current().backgroundWork().running() > 8)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        waitForWork();
        QCOMPARE(browser.refreshes, 1000);
        QVERIFY(std::all_of(left.begin(), left.end(), [](const auto &device) { return device.expired(); }));
    }

    void manyRecordersLeaveDuringTheirLoadFromAFake()
    {
        auto browser = std::make_unique<NotingBrowser>();
        int refreshes = 0;
        for (int i = 0; i < 1000; ++i) {
            FakeSystem *const system = i % 100 == 0 ? new FakeSystem : nullptr;
            if (system) {
                refreshes += browser->refreshes;
                browser = std::make_unique<NotingBrowser>();
                m_scope.reset();
                m_system.reset(system);
                m_scope = std::make_unique<platform::SystemScope>(*system);
                system->urlLoader.answer("http://192.0.2.7:8123/list.plist", toXml(twoTakes));
            }
            const auto service = std::make_shared<TestService>("Vesk on Studio");
            auto device = QWVeskDevice::deviceWithNetServiceBrowser(service, *browser);
            service->resolve({rawAddress("192.0.2.7")});
            device.reset();
            if (i % 7 == 0)
                waitForWork();
        }
        m_scope.reset(); // the machine ends with loads under way
        m_system.reset();
        QVERIFY(refreshes > 0);
    }

private:
    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
};

QTEST_GUILESS_MAIN(tst_QWVeskDevice)
#include "tst_QWVeskDevice.moc"
