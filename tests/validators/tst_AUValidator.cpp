#include "ValidatorArguments.h"
#include "audio-plugins/PluginDisk.h"

#include <QWBase/QWComponentDescription.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/linux/plugins/LinuxComponentRegistry.h>

using platform::fourCharCode;

namespace
{
constexpr auto validator = QW_AU_VALIDATOR;

/// The one unit that is installed on @p disk, as the host finds it.
platform::AudioComponent installedUnit(const PluginDisk &disk)
{
    const platform::Locations locations = disk.locations();
    platform::LinuxComponentRegistry registry(locations);
    for (const quint32 type : {fourCharCode("aufx"), fourCharCode("aumf"), fourCharCode("aumu"), fourCharCode("augn")})
        for (const platform::AudioComponent &component : registry.componentsOfType(type))
            return component;
    return {};
}
} // namespace

class tst_AUValidator : public QObject
{
    Q_OBJECT

private slots:
    void goodUnitsAreHandedOff_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"Good", "Instrument", "Generator", "MusicEffect", "FixedBlocks", "Printing"})
            QTest::newRow(name) << name;
    }

    void goodUnitsAreHandedOff()
    {
        QFETCH(QString, name);
        const PluginDisk disk;
        disk.installLv2(name);
        const platform::AudioComponent unit = installedUnit(disk);
        QVERIFY(unit.type != 0);
        const auto run = disk.run(validator, argumentsFor(unit));
        QVERIFY2(!run.crashed && run.status == 0, run.errors.constData());
        QCOMPARE(run.output, QByteArray());
        const auto state = platform::PropertyList::dictionaryFromFile(disk.auHandOff());
        QVERIFY(state);
        QCOMPARE(state->keys(), (QStringList{"componentDescription", "ignore"}));
        QCOMPARE(QWComponentDescription::descriptionWithState(state->value("componentDescription").toByteArray()),
                 QWComponentDescription(unit));
        QCOMPARE(state->value("ignore"), QVariant(false));
    }

    void badUnitsLeaveNothing_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"Refusing", "NeedsMore", "CrashAtLoad", "CrashAtInstantiate", "Exiting", "NotFinite"})
            QTest::newRow(name) << name;
    }

    void badUnitsLeaveNothing()
    {
        QFETCH(QString, name);
        const PluginDisk disk;
        disk.installLv2(name);
        QVERIFY(installedUnit(disk).type != 0);
        const auto run = disk.run(validator, argumentsFor(installedUnit(disk)));
        QVERIFY(run.crashed || run.status != 0);
        QCOMPARE(run.output, QByteArray());
        QVERIFY(!QFile::exists(disk.auHandOff()));
    }

    void hangingUnitIsGivenUp()
    {
        const PluginDisk disk;
        disk.installLv2("Hanging");
        const auto run = disk.run(validator, QStringList{"--watchdog", "0.2"} + argumentsFor(installedUnit(disk)));
        QCOMPARE(run.status, 3);
        QVERIFY(!QFile::exists(disk.auHandOff()));
    }

    void componentBundles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isGood");
        QTest::newRow("good") << "Good" << true;
        QTest::newRow("refusing") << "Refusing" << false;
    }

    void componentBundles()
    {
        QFETCH(QString, name);
        QFETCH(bool, isGood);
        const PluginDisk disk;
        disk.installComponent(name);
        disk.run(validator, argumentsFor(installedUnit(disk)));
        QCOMPARE(QFile::exists(disk.auHandOff()), isGood);
    }

    void libraryCutShortLeavesNothing()
    {
        const PluginDisk disk;
        QFile library(disk.installLv2("Good") + "/Good.so");
        const QStringList arguments = argumentsFor(installedUnit(disk));
        QVERIFY(library.resize(4096));
        const auto run = disk.run(validator, arguments);
        QVERIFY(run.crashed || run.status != 0);
        QVERIFY(!QFile::exists(disk.auHandOff()));
    }

    void validatorFindsTheSameUnitWithoutTheHostsCache()
    {
        const PluginDisk disk;
        disk.installLv2("Good");
        const QStringList arguments = argumentsFor(installedUnit(disk));
        QVERIFY(QFile::remove(disk.support("component_cache")));
        QCOMPARE(disk.run(validator, arguments).status, 0);
        QVERIFY(QFile::exists(disk.auHandOff()));
        QVERIFY(!QFile::exists(disk.support("component_cache"))); // it only reads
    }

    void codesAreNumbersOf32Bits_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::newRow("negative, unknown") << QStringList{"-1453235613", "1", "2"} << 1;
        QTest::newRow("text") << QStringList{"aufx", "1", "2"} << 1;
        QTest::newRow("too large") << QStringList{"1", "99999999999", "2"} << 1;
        QTest::newRow("four codes") << QStringList{"1", "2", "3", "4"} << 2;
        QTest::newRow("two codes") << QStringList{"1", "2"} << 2;
        QTest::newRow("help") << QStringList{"--help"} << 0;
    }

    void codesAreNumbersOf32Bits()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        const PluginDisk disk;
        const auto run = disk.run(validator, arguments);
        QCOMPARE(run.status, status);
        QCOMPARE(run.output, QByteArray());
        QVERIFY(!QFile::exists(disk.auHandOff()));
    }
};

QTEST_GUILESS_MAIN(tst_AUValidator)
#include "tst_AUValidator.moc"
