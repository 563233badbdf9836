#include "LogOfTest.h"
#include "audio-plugins/PluginDisk.h"
#include "base/ResourceFileBytes.h"

#include <QWPlatform/linux/plugins/LinuxComponentRegistry.h>
#include <QWPlatform/linux/plugins/LinuxPluginLoader.h>
#include <QWPlatform/plugins/AudioPlugin.h>

#include <QRegularExpression>

#include <sys/stat.h>

using platform::AudioComponent;
using platform::fourCharCode;
using platform::LinuxComponentRegistry;

namespace
{
bool isLilvMapped()
{
    QFile maps("/proc/self/maps");
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("liblilv");
}

QStringList namesOfType(LinuxComponentRegistry &registry, const char (&type)[5])
{
    QStringList names;
    for (const AudioComponent &component : registry.componentsOfType(fourCharCode(type)))
        names += QString::fromUtf8(registry.nameOfComponent(component).mid(1));
    return names;
}

QByteArray infoWithName(const QString &name)
{
    return ("<plist version=\"1.0\"><dict><key>AudioComponents</key><array><dict><key>type</key><string>aufx</string>"
            "<key>subtype</key><string>Name</string><key>manufacturer</key><string>Acme</string><key>name</"
            "key><string>" +
            name.toHtmlEscaped() + "</string></dict></array></dict></plist>")
        .toUtf8();
}

QByteArray portWithIndex(const QByteArray &index)
{
    return "lv2:port [ a lv2:AudioPort , lv2:OutputPort ; lv2:symbol \"out\" ; lv2:name \"Out\" ; lv2:index " + index +
           " ]";
}

void setTime(const QString &path, int secondsFromNow)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(secondsFromNow), QFileDevice::FileModificationTime));
}
} // namespace

class tst_LinuxComponentRegistry : public QObject
{
    Q_OBJECT

private slots:
    // First: what is loaded stays in the process.
    void bundlesAreNeverReadInThisProcess()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        disk.installLv2("Good");
        LinuxComponentRegistry registry(locations);
        QCOMPARE(namesOfType(registry, "aufx"), QStringList{"Quorwell Tests: Test Good"});
        QVERIFY(!isLilvMapped());
        platform::LinuxPluginLoader loader(locations, registry);
        QVERIFY(loader.openComponent(registry.componentsOfType(fourCharCode("aufx")).at(0), nullptr));
        QVERIFY(isLilvMapped()); // otherwise the check above says nothing
    }

    void unchangedMachineIsReadFromTheCache()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        const QString pages = disk.installLv2("Good") + "/plugin.ttl";
        const auto units = LinuxComponentRegistry(locations).componentsOfType(fourCharCode("aufx"));
        QCOMPARE(units.size(), std::size_t(1));
        QVERIFY(!QFileInfo(pages).isSymLink());
        QFile file(pages);
        QVERIFY(file.open(QIODevice::WriteOnly)); // emptied in its place: the times that are watched stay
        file.close();
        QCOMPARE(LinuxComponentRegistry(locations).componentsOfType(fourCharCode("aufx")), units);
    }

    void malformedBundleCostsNoOtherAndIsReadOnce_data()
    {
        QTest::addColumn<QByteArray>("ports");
        QTest::newRow("index below zero") << portWithIndex("-1");
        QTest::newRow("index of a hundred million") << portWithIndex("100000000");
        QTest::newRow("nested without an end") << "lv2:port " + QByteArray("[ lv2:port ").repeated(100000);
    }

    void malformedBundleCostsNoOtherAndIsReadOnce()
    {
        QFETCH(QByteArray, ports);
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        disk.installLv2("Generator");
        disk.installLv2("Good");
        const QString bad = disk.lv2Folder() + "/Glitch.lv2"; // between the two
        PluginDisk::write(bad + "/manifest.ttl", "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n<urn:glitch> a "
                                                 "lv2:Plugin ; lv2:binary <glitch.so> ; " +
                                                     ports + " .\n");
        const auto logOfScan = [&] {
            const LogOfTest log;
            LinuxComponentRegistry registry(locations);
            const QStringList names = namesOfType(registry, "aufx") + namesOfType(registry, "augn");
            return names == QStringList({"Quorwell Tests: Test Good", "Quorwell Tests: Test Generator"})
                       ? log.lines().filter("Glitch.lv2")
                       : QStringList("units are missing");
        };
        QCOMPARE(logOfScan().size(), 1);
        QCOMPARE(logOfScan(), QStringList()); // from the cache
        setTime(bad + "/manifest.ttl", 10);
        QCOMPARE(logOfScan().size(), 1);
        setTime(bad + "/manifest.ttl", 20); // as a validator finds it that looks for a unit beside it
        const LogOfTest log;
        LinuxComponentRegistry registry(locations);
        platform::LinuxPluginLoader loader(locations, registry);
        QVERIFY(loader.openComponent(registry.componentsOfType(fourCharCode("aufx")).at(0), nullptr));
    }

    void bundleThatChangedIsReadAgainBeforeItIsOpened()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        const QString bundle = disk.installLv2("Good");
        LinuxComponentRegistry registry(locations);
        const auto units = registry.componentsOfType(fourCharCode("aufx"));
        QVERIFY(registry.locationOfComponent(units.at(0)));
        PluginDisk::write(bundle + "/manifest.ttl", "");
        setTime(bundle + "/manifest.ttl", 10);
        QVERIFY(!registry.locationOfComponent(units.at(0)));
    }

    void typesFollowClassesAndPorts()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        for (const char *name : {"Good", "Instrument", "Generator", "MusicEffect"})
            disk.installLv2(name);
        LinuxComponentRegistry registry(locations);
        QCOMPARE(namesOfType(registry, "aufx"), QStringList{"Quorwell Tests: Test Good"});
        QCOMPARE(namesOfType(registry, "aumf"), QStringList{"Quorwell Tests: Test MusicEffect"});
        QCOMPARE(namesOfType(registry, "aumu"), QStringList{"Quorwell Tests: Test Instrument"});
        QCOMPARE(namesOfType(registry, "augn"), QStringList{"Quorwell Tests: Test Generator"});
    }

    void bundlesOfBothFoldersAreListedOnce()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        const QString path = disk.installComponent("Good");
        PluginDisk::install("Components", "Good.component", disk.root() + "/Library/Audio/Plug-Ins/Components");
        LinuxComponentRegistry registry(locations);
        const auto units = registry.componentsOfType(fourCharCode("aufx"));
        QCOMPARE(units.size(), std::size_t(1));
        QCOMPARE(units[0], (AudioComponent{fourCharCode("aufx"), fourCharCode("Good"), fourCharCode("QTst"), 0, 0}));
        const auto location = registry.locationOfComponent(units[0]);
        QVERIFY(location);
        QCOMPARE(location->path, path); // the user's own
        QCOMPARE(location->factoryFunction, QString("QWTestFactory"));
        QCOMPARE(location->uri, QString());
    }

    void resourcesDescribeUnitsToo()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        const QString bundle = disk.home() + "/Library/Audio/Plug-Ins/Components/Old.component";
        PluginDisk::write(bundle + "/Contents/Resources/Old.rsrc", resourceFileBytes());
        LinuxComponentRegistry registry(locations);
        QCOMPARE(namesOfType(registry, "aufx"), QStringList{"Acme: Super Delay"});
    }

    void namesInResourcesAreInTheOldCharacterSet()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        const QString bundle = disk.home() + "/Library/Audio/Plug-Ins/Components/Old.component";
        const QByteArray resources = resourceFileBytes().replace("Super Delay", "\x83"
                                                                                "cho \xa5 D\x8ela");
        PluginDisk::write(bundle + "/Contents/Resources/Old.rsrc", resources);
        LinuxComponentRegistry registry(locations);
        QCOMPARE(namesOfType(registry, "aufx"), QStringList{"Acme: Écho • Déla"});
    }

    void searchPathThatChangedIsTold()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        disk.installLv2("Good");
        QCOMPARE(LinuxComponentRegistry(locations).componentsOfType(fourCharCode("aufx")).size(), std::size_t(1));
        qputenv("LV2_PATH", QFile::encodeName(disk.lv2Folder()) + ':'); // the same folders
        QTest::failOnWarning(QRegularExpression("forgotten"));
        QCOMPARE(LinuxComponentRegistry(locations).componentsOfType(fourCharCode("aufx")).size(), std::size_t(1));
        qputenv("LV2_PATH", QFile::encodeName(disk.home()));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("LV2 .* in \"" + disk.home() + "\" now.*forgotten"));
        LinuxComponentRegistry registry(locations);
        QCOMPARE(registry.componentsOfType(fourCharCode("aufx")).size(), std::size_t(0));
        QCOMPARE(registry.componentsOfType(fourCharCode("aumf")).size(), std::size_t(0)); // told once
        QCOMPARE(LinuxComponentRegistry(locations).componentsOfType(fourCharCode("aufx")).size(), std::size_t(0));
    }

    void bundlesWhoseNamesAreNoTextAreToldOnce()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        disk.installLv2("Good");
        const QByteArray bundle = QFile::encodeName(disk.lv2Folder()) + "/a\xff.lv2";
        QCOMPARE(::mkdir(bundle.constData(), 0755), 0);
        LinuxComponentRegistry registry(locations);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("lv2\" is passed over: its name is not UTF-8"));
        QCOMPARE(registry.componentsOfType(fourCharCode("aufx")).size(), std::size_t(1));
        QTest::failOnWarning(QRegularExpression("passed over"));
        QCOMPARE(registry.componentsOfType(fourCharCode("aumf")).size(), std::size_t(0));
        QCOMPARE(::rmdir(bundle.constData()), 0); // the folder's own end could not
    }

    void byteOrderMarkIsPartOfABundlesName()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        const QString path = disk.lv2Folder() + "/\uFEFFgood.lv2";
        QVERIFY(QDir().rename(disk.installLv2("Good"), path));
        LinuxComponentRegistry registry(locations);
        const auto units = registry.componentsOfType(fourCharCode("aufx"));
        QCOMPARE(units.size(), std::size_t(1));
        QCOMPARE(registry.locationOfComponent(units[0])->path, path);
    }

    void strangeNamesSurvive_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("ampersand") << "A&B: C & D";
        QTest::newRow("colons") << "A: B: C";
        QTest::newRow("emoji") << QString("Acme: \U0001F3B9 Piano");
        QTest::newRow("right to left") << QString("שלום: مرحبا");
        QTest::newRow("1000 characters") << "Acme: " + QString(1000, u'é');
    }

    void strangeNamesSurvive()
    {
        QFETCH(QString, name);
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        PluginDisk::write(disk.home() + "/Library/Audio/Plug-Ins/Components/X.component/Contents/Info.plist",
                          infoWithName(name));
        LinuxComponentRegistry registry(locations);
        const auto units = registry.componentsOfType(fourCharCode("aufx"));
        QCOMPARE(units.size(), std::size_t(1));
        const QByteArray pascal = registry.nameOfComponent(units[0]);
        QCOMPARE(static_cast<unsigned char>(pascal.at(0)), std::min<qsizetype>(255, name.toUtf8().size()));
        QCOMPARE(QString::fromUtf8(pascal.mid(1)), name);
    }

    void onlyOneColonDividesAuthorAndName()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        const QString pages = disk.installLv2("Good") + "/plugin.ttl";
        QFile file(pages);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll().replace("Test Good", "Matrix: MS to Stereo");
        file.close();
        QVERIFY(QFile::remove(pages)); // may be a link into the build folder
        PluginDisk::write(pages, text);
        LinuxComponentRegistry registry(locations);
        QCOMPARE(namesOfType(registry, "aufx"), QStringList{"Quorwell Tests: Matrix - MS to Stereo"});
    }

    void changesAreSeenAtTheNextQuestion()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        LinuxComponentRegistry registry(locations);
        QVERIFY(namesOfType(registry, "aufx").isEmpty());
        const QString bundle = disk.installLv2("Good");
        QCOMPARE(namesOfType(registry, "aufx").size(), 1);
        setTime(bundle + "/manifest.ttl", 10);
        PluginDisk::write(bundle + "/plugin.ttl", "");
        QVERIFY(namesOfType(registry, "aufx").isEmpty()); // no ports any more
        QVERIFY(QDir(bundle).removeRecursively());
        disk.installLv2("Instrument");
        QCOMPARE(namesOfType(registry, "aumu").size(), 1);
    }

    void codesAreTheSameForAnotherRegistryWithAndWithoutCache()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        disk.installLv2("Good");
        const auto units = LinuxComponentRegistry(locations).componentsOfType(fourCharCode("aufx"));
        QCOMPARE(units.size(), std::size_t(1));
        QCOMPARE(LinuxComponentRegistry(locations).componentsOfType(fourCharCode("aufx")), units);
        QVERIFY(QFile::remove(disk.support("component_cache")));
        QVERIFY(LinuxComponentRegistry(locations).locationOfComponent(units[0]));
        QVERIFY(!QFile::exists(disk.support("component_cache"))); // looking one up writes nothing
        QCOMPARE(LinuxComponentRegistry(locations).componentsOfType(fourCharCode("aufx")), units);
    }

    void damagedCacheIsMadeAnew()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        disk.installLv2("Good");
        const auto units = LinuxComponentRegistry(locations).componentsOfType(fourCharCode("aufx"));
        QFile cache(disk.support("component_cache"));
        QVERIFY(cache.open(QIODevice::ReadOnly));
        const QByteArray whole = cache.readAll();
        cache.close();
        for (qsizetype size = 0; size < whole.size(); size += 7) {
            PluginDisk::write(cache.fileName(), whole.left(size));
            QCOMPARE(LinuxComponentRegistry(locations).componentsOfType(fourCharCode("aufx")), units);
        }
        QVERIFY(cache.open(QIODevice::ReadOnly));
        QCOMPARE(cache.readAll(), whole);
    }

    void bundleOfGarbageIsPassedOver()
    {
        const PluginDisk disk;
        const platform::Locations locations = disk.locations();
        PluginDisk::write(disk.lv2Folder() + "/Bad.lv2/manifest.ttl", QByteArray("\xff\xfe<<<<garbage", 14));
        PluginDisk::write(disk.home() + "/Library/Audio/Plug-Ins/Components/Bad.component/Contents/Info.plist", "{");
        QVERIFY(QDir().mkpath(disk.home() + "/Library/Audio/Plug-Ins/Components/Empty.component"));
        const QString resources = disk.home() + "/Library/Audio/Plug-Ins/Components/Pipe.component/Contents/Resources";
        QVERIFY(QDir().mkpath(resources));
        QCOMPARE(::mkfifo(QFile::encodeName(resources + "/Pipe.rsrc").constData(), 0600), 0); // nobody writes
        disk.installLv2("Good");
        LinuxComponentRegistry registry(locations);
        QCOMPARE(namesOfType(registry, "aufx").size(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_LinuxComponentRegistry)
#include "tst_LinuxComponentRegistry.moc"
