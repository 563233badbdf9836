#include <QWPlatform/linux/plugins/ComponentCodes.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <set>

using platform::ComponentCodes;
using platform::InstalledComponent;

namespace
{
InstalledComponent plugin(const QString &uri, const QString &author = "Author")
{
    InstalledComponent component;
    component.uri = uri;
    component.author = author;
    return component;
}

std::pair<quint32, quint32> codesOf(const InstalledComponent &component)
{
    return {component.component.subtype, component.component.manufacturer};
}
} // namespace

class tst_ComponentCodes : public QObject
{
    Q_OBJECT

private slots:
    void samePluginGetsSameCodesEverywhere()
    {
        const QTemporaryDir one;
        const QTemporaryDir other;
        InstalledComponent a = plugin("urn:a");
        InstalledComponent b = plugin("urn:a");
        ComponentCodes(one.filePath("codes")).assign({&a}, ComponentCodes::Keep::Yes);
        ComponentCodes(other.filePath("codes")).assign({&b}, ComponentCodes::Keep::No);
        QCOMPARE(codesOf(a), codesOf(b));
        QVERIFY(QFile::exists(one.filePath("codes")));
        QVERIFY(!QFile::exists(other.filePath("codes")));
    }

    void takenCodesAreProbedPastAndKeptForGood()
    {
        const QTemporaryDir folder;
        InstalledComponent first = plugin("urn:a");
        ComponentCodes(folder.filePath("unused")).assign({&first}, ComponentCodes::Keep::No);

        ComponentCodes codes(folder.filePath("codes"));
        codes.reserve(first.component); // a ".component" bundle has these already
        InstalledComponent second = plugin("urn:a");
        codes.assign({&second}, ComponentCodes::Keep::Yes);
        QVERIFY(codesOf(second) != codesOf(first));
        QCOMPARE(second.component.manufacturer, first.component.manufacturer);

        InstalledComponent later = plugin("urn:a", "Renamed author"); // the other bundle is gone, the codes stay
        ComponentCodes(folder.filePath("codes")).assign({&later}, ComponentCodes::Keep::Yes);
        QCOMPARE(codesOf(later), codesOf(second));
    }

    void manyPluginsOfOneAuthorNeverShareCodes()
    {
        const QTemporaryDir folder;
        std::vector<InstalledComponent> plugins;
        for (int i = 0; i < 20000; ++i) // enough for several collisions
            plugins.push_back(plugin("urn:plugin:" + QString::number(i)));
        std::vector<InstalledComponent *> pointers;
        for (InstalledComponent &component : plugins)
            pointers.push_back(&component);
        ComponentCodes(folder.filePath("codes")).assign(pointers, ComponentCodes::Keep::No);
        std::set<std::pair<quint32, quint32>> codes;
        for (const InstalledComponent &component : plugins)
            codes.insert(codesOf(component));
        QCOMPARE(codes.size(), plugins.size());
    }

    void codesDoNotDependOnTheOrderOfFolders()
    {
        const QTemporaryDir folder;
        InstalledComponent a = plugin("urn:a");
        InstalledComponent b = plugin("urn:b");
        InstalledComponent otherA = a;
        InstalledComponent otherB = b;
        ComponentCodes(folder.filePath("x")).assign({&a, &b}, ComponentCodes::Keep::No);
        ComponentCodes(folder.filePath("y")).assign({&otherB, &otherA}, ComponentCodes::Keep::No);
        QCOMPARE(codesOf(a), codesOf(otherA));
        QCOMPARE(codesOf(b), codesOf(otherB));
    }

    void garbageInTheFileIsPassedOver()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath("codes"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<plist version=\"1.0\"><dict><key>urn:a</key><string>abc</string></dict></plist>");
        file.close();
        InstalledComponent a = plugin("urn:a");
        ComponentCodes(file.fileName()).assign({&a}, ComponentCodes::Keep::Yes);
        QVERIFY(a.component.subtype != 0 && a.component.manufacturer != 0);
    }
};

QTEST_GUILESS_MAIN(tst_ComponentCodes)
#include "tst_ComponentCodes.moc"
