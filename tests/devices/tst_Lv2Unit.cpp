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
        QCOMPARE(machine.error, QString("The bundle does not describe the plug-in."));
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
