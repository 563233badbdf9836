#include <QWPlatform/linux/services/ListedServices.h>
#include <QWPlatform/network/services/SocketAddress.h>

#include <QRegularExpression>
#include <QTest>

#include <arpa/inet.h>
#include <netinet/in.h>

using namespace platform;

namespace
{
QString shown(const ListedService &service)
{
    const auto *address = reinterpret_cast<const sockaddr *>(service.address.constData());
    char text[INET6_ADDRSTRLEN] = "";
    if (address->sa_family == AF_INET)
        ::inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in *>(address)->sin_addr, text, sizeof text);
    else
        ::inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6 *>(address)->sin6_addr, text, sizeof text);
    return service.name + '@' + QString::fromLatin1(text) + '@' + QString::number(service.port);
}

QStringList shownServices(const QString &list)
{
    QStringList services;
    for (const ListedService &service : listedServices(list))
        services.append(shown(service));
    return services;
}

void ignoreComplaints(int count)
{
    static const QRegularExpression complaint("^QW_NET_SERVICES: ");
    for (int i = 0; i < count; ++i)
        QTest::ignoreMessage(QtWarningMsg, complaint);
}
} // namespace

/// The list of services in the environment.
class tst_ListedServices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listGivesServices_data();
    void listGivesServices();
    void badEntryCostsItself_data();
    void badEntryCostsItself();
    void listCutAnywhereHurtsNobody();
    void listWithoutEndIsCut();
    void addressHoldsFamilyPortAndNumbers();
};

void tst_ListedServices::listGivesServices_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<QStringList>("services");
    QTest::newRow("none") << QString() << QStringList{};
    QTest::newRow("one") << QString("Vesk on Studio=127.0.0.1:8123") << QStringList{"Vesk on Studio@127.0.0.1@8123"};
    QTest::newRow("two, in their order") << QString("B=10.0.0.1:1;A=10.0.0.2:65535")
                                         << QStringList{"B@10.0.0.1@1", "A@10.0.0.2@65535"};
    QTest::newRow("semicolon at the end") << QString("A=10.0.0.1:80;") << QStringList{"A@10.0.0.1@80"};
    QTest::newRow("spaces around") << QString(" A=10.0.0.1:80 ; B=10.0.0.2:80")
                                   << QStringList{"A@10.0.0.1@80", "B@10.0.0.2@80"};
    QTest::newRow("IPv6") << QString("A=[2001:db8::7]:80") << QStringList{"A@2001:db8::7@80"};
    QTest::newRow("beyond ASCII") << QString("Vesk on Küche – 2=10.0.0.1:80")
                                  << QStringList{"Vesk on Küche – 2@10.0.0.1@80"};
    QTest::newRow("equals sign in the name") << QString("a=b=10.0.0.1:80") << QStringList{"a=b@10.0.0.1@80"};
    QTest::newRow("colon in the name") << QString("a:b=10.0.0.1:80") << QStringList{"a:b@10.0.0.1@80"};
    QTest::newRow("escaped") << QString("a%3Bb%3Dc%25=10.0.0.1:80") << QStringList{"a;b=c%@10.0.0.1@80"};
    QTest::newRow("escaped, beyond ASCII") << QString("K%C3%BCche=10.0.0.1:80") << QStringList{"Küche@10.0.0.1@80"};
    QTest::newRow("nobody's address") << QString("A=0.0.0.0:80") << QStringList{"A@0.0.0.0@80"};
}

void tst_ListedServices::listGivesServices()
{
    QFETCH(QString, list);
    QFETCH(QStringList, services);
    QTest::failOnWarning(QRegularExpression(".*"));
    QCOMPARE(shownServices(list), services);
}

void tst_ListedServices::badEntryCostsItself_data()
{
    QTest::addColumn<QString>("entry");
    const QStringList entries{"rubbish",
                              "=10.0.0.1:80",
                              "B=",
                              "B=:80",
                              "B=10.0.0.1",
                              "B=10.0.0.1:",
                              "B=10.0.0.1:0",
                              "B=10.0.0.1:-1",
                              "B=10.0.0.1:+1",
                              "B=10.0.0.1:65536",
                              "B=10.0.0.1:1x",
                              "B=10.0.0.1:99999999999",
                              "B=10.0.0:80",
                              "B=256.0.0.1:80",
                              "B=localhost:80",
                              "B=::1:80",
                              "B=[::1:80",
                              "B=[::1]80",
                              "B=[10.0.0.1]:80",
                              "B=[]:80",
                              "10.0.0.1:80",
                              "A=10.0.0.9:80",
                              " ",
                              "B=10.0.0.1:٣"};
    for (const QString &entry : entries)
        QTest::newRow(qPrintable('"' + entry + '"')) << entry;
}

void tst_ListedServices::badEntryCostsItself()
{
    QFETCH(QString, entry);
    ignoreComplaints(1);
    QCOMPARE(shownServices("A=10.0.0.1:80;" + entry + ";C=10.0.0.3:80"),
             (QStringList{"A@10.0.0.1@80", "C@10.0.0.3@80"}));
}

void tst_ListedServices::listCutAnywhereHurtsNobody()
{
    const QString list = "Vesk on %3B=10.0.0.1:8123;Blue Vesk on é=[2001:db8::7]:9";
    for (qsizetype length = 0; length < list.size(); ++length) {
        const qsizetype first = list.indexOf(';');
        const auto services = listedServices(list.first(length));
        QVERIFY(services.size() <= (length > first ? 2 : 1));
        if (length >= first)
            QCOMPARE(shown(services.front()), "Vesk on ;@10.0.0.1@8123");
    }
}

void tst_ListedServices::listWithoutEndIsCut()
{
    QString list;
    for (size_t i = 0; i < 100 * mostListedServices; ++i)
        list += QString("Vesk %1=10.0.0.1:80;").arg(i);
    ignoreComplaints(1);
    const auto services = listedServices(list);
    QCOMPARE(services.size(), mostListedServices);
    QCOMPARE(services.back().name, QString("Vesk %1").arg(mostListedServices - 1));
}

void tst_ListedServices::addressHoldsFamilyPortAndNumbers()
{
    const QByteArray four = socketAddress("192.0.2.7", 8123);
    QCOMPARE(four.size(), qsizetype(sizeof(sockaddr_in)));
    const auto *address = reinterpret_cast<const sockaddr_in *>(four.constData());
    QCOMPARE(address->sin_family, AF_INET);
    QCOMPARE(ntohs(address->sin_port), 8123);
    QCOMPARE(ntohl(address->sin_addr.s_addr), 0xC0000207U);

    const QByteArray six = socketAddress("2001:db8::7", 80);
    QCOMPARE(six.size(), qsizetype(sizeof(sockaddr_in6)));
    QCOMPARE(reinterpret_cast<const sockaddr_in6 *>(six.constData())->sin6_addr.s6_addr[15], 7);
    QCOMPARE(socketAddress("studio.local", 80), QByteArray());
}

QTEST_GUILESS_MAIN(tst_ListedServices)
#include "tst_ListedServices.moc"
