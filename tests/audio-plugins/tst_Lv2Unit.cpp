#include "PluginMachine.h"
#include "PluginRun.h"

using platform::fourCharCode;

namespace
{
struct Machine : PluginMachine
{
    std::unique_ptr<platform::AudioPlugin> open(const QString &name, const char (&type)[5])
    {
        disk.installLv2(name);
        const auto units = registry.componentsOfType(fourCharCode(type));
        return units.size() == 1 ? loader.openComponent(units[0], &error) : nullptr;
    }

    /// The same with another text about its ports.
    std::unique_ptr<platform::AudioPlugin> open(const QString &name, const char (&type)[5], const QByteArray &before,
                                                const QByteArray &after)
    {
        const QString bundle = disk.installLv2(name);
        QFile pages(bundle + "/plugin.ttl");
        const QByteArray text = pages.open(QIODevice::ReadOnly) ? pages.readAll() : QByteArray();
        if (!text.contains(before) || !pages.remove())
            return nullptr;
        PluginDisk::write(pages.fileName(), QByteArray(text).replace(before, after));
        const auto units = registry.componentsOfType(fourCharCode(type));
        return units.size() == 1 ? loader.openComponent(units[0], &error) : nullptr;
    }
};
} // namespace

class tst_Lv2Unit : public QObject
{
    Q_OBJECT

private slots:
    void effectRunsWithItsDefaults()
    {
        Machine machine;
        const auto plugin = machine.open("Good", "aufx");
        QVERIFY2(plugin, qPrintable(machine.error));
        QCOMPARE(plugin->name(), QString("Test Good"));
        QCOMPARE(plugin->vendor(), QString("Quorwell Tests"));
        QVERIFY(!plugin->isInstrument());
        QCOMPARE(plugin->inputCount(), 1);
        QCOMPARE(plugin->outputCount(), 1);
        QVERIFY(plugin->start(44100, 64));
        QCOMPARE(runBlock(*plugin, 64, 0.5F)[0], std::vector<float>(64, 0.25F));
        QCOMPARE(plugin->latency(), 32);
        QVERIFY(plugin->start(96000, 16)); // at another rate, without a stop between
        QCOMPARE(runBlock(*plugin, 16, 1.0F)[0], std::vector<float>(16, 0.5F));
    }

    void latencyIsToldByEitherMark_data()
    {
        QTest::addColumn<QByteArray>("removed");
        QTest::newRow("designation") << QByteArray("lv2:portProperty lv2:reportsLatency ;");
        QTest::newRow("property") << QByteArray("lv2:designation lv2:latency ;");
    }

    void latencyIsToldByEitherMark()
    {
        QFETCH(QByteArray, removed);
        Machine machine;
        const auto plugin = machine.open("Good", "aufx", removed, "");
        QVERIFY2(plugin, qPrintable(machine.error));
        QVERIFY(plugin->start(48000, 64));
        runBlock(*plugin, 64, 0.5F);
        QCOMPARE(plugin->latency(), 32);
    }

    void defaultsInFractionsOfTheSampleRateStayWithinTheirBounds_data()
    {
        QTest::addColumn<QByteArray>("range");
        QTest::addColumn<float>("gain"); // at 1000 Hz
        const auto row = [](const char *name, const char *range, float gain) {
            QTest::newRow(name) << QByteArray(range) << gain;
        };
        row("fraction", "lv2:default 0.25 ; lv2:minimum 0.001 ; lv2:maximum 0.5", 250);
        row("given in Hz", "lv2:default 440.0 ; lv2:minimum 0.000001 ; lv2:maximum 0.499", 440);
        row("at the upper bound", "lv2:default 1 ; lv2:minimum 0.001 ; lv2:maximum 1", 1000);
        row("above the bounds either way", "lv2:default 2000 ; lv2:minimum 0.0 ; lv2:maximum 0.5", 500);
        row("below the bounds either way", "lv2:default -2 ; lv2:minimum 0.1 ; lv2:maximum 0.5", 100);
        row("no bounds", "lv2:default 2.0", 2000);
        row("no default", "lv2:minimum 0.1 ; lv2:maximum 0.5", 100);
        row("bounds the wrong way round", "lv2:default 0.2 ; lv2:minimum 0.5 ; lv2:maximum 0.1", 500);
    }

    void defaultsInFractionsOfTheSampleRateStayWithinTheirBounds()
    {
        QFETCH(QByteArray, range);
        QFETCH(float, gain);
        Machine machine;
        const auto plugin = machine.open("Good", "aufx", "lv2:default 0.5 ; lv2:minimum 0.0 ; lv2:maximum 1.0",
                                         "lv2:portProperty lv2:sampleRate ; " + range);
        QVERIFY2(plugin, qPrintable(machine.error));
        QVERIFY(plugin->start(1000, 8));
        QCOMPARE(runBlock(*plugin, 8, 1)[0], std::vector<float>(8, gain));
    }

    void instrumentHearsNotes()
    {
        Machine machine;
        const auto plugin = machine.open("Instrument", "aumu");
        QVERIFY2(plugin, qPrintable(machine.error));
        QVERIFY(plugin->isInstrument());
        QVERIFY(plugin->start(48000, 8));
        QCOMPARE(runBlock(*plugin, 8, 0)[0], std::vector<float>(8, 0.0F));
        QCOMPARE(runBlock(*plugin, 8, 0, {{0, {0x90, 60, 100}}})[0], std::vector<float>(8, 0.5F));
        QCOMPARE(runBlock(*plugin, 8, 0, {{0, {0xC0, 1, 0}}, {1, {0x80, 60, 0}}})[0], std::vector<float>(8, 0.0F));
    }

    void requiredFeatureThatIsLackingIsNamed()
    {
        Machine machine;
        QVERIFY(!machine.open("NeedsMore", "aufx"));
        QCOMPARE(machine.error, QString("The plug-in requires http://quorwell.example/feature#nobodyHasIt."));
    }

    void blocksAreAllOfTheSizeThatIsPromised()
    {
        Machine machine;
        const auto plugin = machine.open("FixedBlocks", "aufx");
        QVERIFY2(plugin, qPrintable(machine.error));
        for (int frames : {64, 512, 1}) {
            QVERIFY(plugin->start(48000, frames));
            for (int block = 0; block < 3; ++block)
                QCOMPARE(runBlock(*plugin, frames, 0.5F)[0], std::vector<float>(frames, 0.25F));
        }
        for (int frames : {0, 100, -64})
            QVERIFY(!plugin->start(48000, frames));
    }

    void refusalShowsAtTheStart()
    {
        Machine machine;
        const auto plugin = machine.open("Refusing", "aufx");
        QVERIFY2(plugin, qPrintable(machine.error));
        QVERIFY(!plugin->start(48000, 64));
        QVERIFY(!plugin->start(48000, 64));
    }

    void missingLibraryIsRefused()
    {
        Machine machine;
        QVERIFY(machine.open("Good", "aufx"));
        QVERIFY(QFile::remove(machine.disk.lv2Folder() + "/Good.lv2/Good.so"));
        const auto units = machine.registry.componentsOfType(fourCharCode("aufx"));
        QVERIFY(!machine.loader.openComponent(units.at(0), &machine.error));
        QCOMPARE(machine.error, QString("The plug-in's library is missing."));
        QVERIFY(QDir(machine.disk.lv2Folder() + "/Good.lv2").removeRecursively());
        QVERIFY(!machine.loader.openComponent(units.at(0), &machine.error));
        QCOMPARE(machine.error, QString("The component is not installed."));
    }

    void unknownComponentIsRefused()
    {
        Machine machine;
        QVERIFY(!machine.loader.openComponent({1, 2, 3, 0, 0}, &machine.error));
        QCOMPARE(machine.error, QString("The component is not installed."));
    }

    void componentBundleGivesAnInstanceOrRefuses()
    {
        Machine machine;
        machine.disk.installComponent("Good");
        machine.disk.installComponent("Refusing");
        const auto units = machine.registry.componentsOfType(fourCharCode("aufx"));
        QCOMPARE(units.size(), std::size_t(2));
        const auto good = machine.loader.openComponent(units[0], &machine.error);
        QVERIFY2(good, qPrintable(machine.error));
        QCOMPARE(good->name(), QString("Quorwell Tests: Good Component"));
        QCOMPARE(good->outputCount(), 0);
        QVERIFY(!machine.loader.openComponent(units[1], &machine.error));
        QCOMPARE(machine.error, QString("The factory function gave no instance."));
    }
};

QTEST_GUILESS_MAIN(tst_Lv2Unit)
#include "tst_Lv2Unit.moc"
