#include "PluginMachine.h"
#include "PluginRun.h"

namespace
{
struct Machine : PluginMachine
{
    std::unique_ptr<platform::AudioPlugin> open(const QString &name)
    {
        disk.installVst(name);
        return loader.openVST("~/Library/Audio/Plug-Ins/VST/" + name + ".vst", &error);
    }
};
} // namespace

class tst_VstEffect : public QObject
{
    Q_OBJECT

private slots:
    void effectTellsWhatItIs()
    {
        Machine machine;
        const auto plugin = machine.open("Good");
        QVERIFY2(plugin, qPrintable(machine.error));
        QCOMPARE(plugin->name(), QString("Test Good"));
        QCOMPARE(plugin->vendor(), QString("Møller & Søn \U0001F3B9"));
        QVERIFY(!plugin->isInstrument());
        QCOMPARE(plugin->inputCount(), 2);
        QCOMPARE(plugin->outputCount(), 2);
        QCOMPARE(plugin->category(), 1);
        QCOMPARE(plugin->flags(), 16);
        QCOMPARE(plugin->uniqueID(), 0x51547374);
        QVERIFY(plugin->start(44100, 64));
        QCOMPARE(plugin->latency(), 64);
    }

    void blocksAreProcessed_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("replacing") << "Good";
        QTest::newRow("accumulating only") << "Accumulating";
    }

    void blocksAreProcessed()
    {
        QFETCH(QString, name);
        Machine machine;
        const auto plugin = machine.open(name);
        QVERIFY2(plugin, qPrintable(machine.error));
        QVERIFY(plugin->start(48000, 64));
        for (int block = 0; block < 2; ++block)
            QCOMPARE(runBlock(*plugin, 64, 0.5F)[1], std::vector<float>(64, 0.25F));
        plugin->stop();
        QVERIFY(plugin->start(96000, 64)); // and again
        QCOMPARE(runBlock(*plugin, 64, 1.0F)[0], std::vector<float>(64, 0.5F));
    }

    void instrumentHearsNotes()
    {
        Machine machine;
        const auto plugin = machine.open("Instrument");
        QVERIFY2(plugin, qPrintable(machine.error));
        QVERIFY(plugin->isInstrument());
        QCOMPARE(plugin->inputCount(), 0);
        QVERIFY(plugin->start(48000, 8));
        QCOMPARE(runBlock(*plugin, 8, 0)[0], std::vector<float>(8, 0.0F));
        QCOMPARE(runBlock(*plugin, 8, 0, {{0, {0x90, 60, 100}}})[0], std::vector<float>(8, 0.5F));
        QCOMPARE(runBlock(*plugin, 8, 0, {{0, {0x90, 62, 100}}, {3, {0x90, 64, 1}}, {7, {0x80, 60, 0}}})[0],
                 std::vector<float>(8, 0.0F));
    }

    void timeIsToldFromTheStartOn()
    {
        Machine machine;
        const auto plugin = machine.open("Asking");
        QVERIFY2(plugin, qPrintable(machine.error));
        constexpr float playing = 2;
        constexpr float changed = 1;
        constexpr float all = 512 + 1024 + 2048 + 8192; // beats, tempo, bar and signature
        for (int run = 0; run < 2; ++run) {
            QVERIFY(plugin->start(8192, 16384)); // one bar a block
            for (int block = 0; block < 3; ++block) {
                const auto told = runBlock(*plugin, 16384, 0);
                const float now = block == 0 ? playing + changed : playing;
                const float beats = 4.0F * static_cast<float>(block);
                QCOMPARE(told[0].size(), std::size_t(16384));
                QCOMPARE(std::vector<float>(told[0].begin(), told[0].begin() + 8),
                         (std::vector<float>{16384.0F * static_cast<float>(block), 8192, beats, 120, beats, 4, 4,
                                             all + now}));
                QCOMPARE(told[1][0], now);  // who asks for nothing
                QCOMPARE(told[1][1], 0.0F); // when it was opened
            }
            plugin->stop();
        }
    }

    void hostAnswersWhatItIsAsked()
    {
        Machine machine;
        const auto plugin = machine.open("Asking");
        QVERIFY2(plugin, qPrintable(machine.error));
        QVERIFY(plugin->start(44100, 256));
        const std::vector<float> told = runBlock(*plugin, 256, 0)[1];
        const std::vector<float> expected{44100, 256,    // sample rate, block size
                                          2400,  1,   1, // version, MIDI wanted, English
                                          0,     0,      // no plug-in of a shell; what nobody knows
                                          1,     1,   0, // can tell the time, send notes, not make coffee
                                          1,     1,      // maker and product, in words
                                          48000, 0};     // asked before there is a plug-in: usual rate, no time
        QCOMPARE(std::vector<float>(told.begin() + 2, told.begin() + 16), expected);
    }

    void latencyThatChangesIsTold()
    {
        Machine machine;
        const auto plugin = machine.open("Asking");
        QVERIFY2(plugin, qPrintable(machine.error));
        QVERIFY(plugin->start(44100, 256));
        QCOMPARE(plugin->latency(), 64);
        runBlock(*plugin, 256, 0);
        QCOMPARE(plugin->latency(), 128);
    }

    void barsBeginAtWholeBars()
    {
        Machine machine;
        const auto plugin = machine.open("Asking");
        QVERIFY2(plugin, qPrintable(machine.error));
        QVERIFY(plugin->start(8192, 2048)); // half a beat a block
        std::vector<float> bars;
        for (int block = 0; block < 10; ++block)
            bars.push_back(runBlock(*plugin, 2048, 0)[0][4]);
        QCOMPARE(bars, (std::vector<float>{0, 0, 0, 0, 0, 0, 0, 0, 4, 4}));
    }

    void shellOpensWithoutAudio()
    {
        Machine machine;
        const auto plugin = machine.open("Shell");
        QVERIFY2(plugin, qPrintable(machine.error));
        QCOMPARE(plugin->outputCount(), 0);
        QVERIFY(plugin->start(48000, 8));
        QVERIFY(runBlock(*plugin, 8, 0).empty());
    }

    void longNamesAreTakenWhole()
    {
        Machine machine;
        const auto plugin = machine.open("LongNames");
        QVERIFY2(plugin, qPrintable(machine.error));
        QCOMPARE(plugin->name(), QString(1000, u'n'));
    }

    void refusalsHaveReasons_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("refusing") << "Refusing"
                                  << "The plug-in gave no instance.";
        QTest::newRow("no entry") << "NoEntry"
                                  << "The library is no VST plug-in.";
        QTest::newRow("a million channels") << "WrongCounts"
                                            << "The plug-in describes itself wrongly.";
    }

    void refusalsHaveReasons()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        Machine machine;
        QVERIFY(!machine.open(name));
        QCOMPARE(machine.error, reason);
    }

    void binaryIsFoundInAllPlaces_data()
    {
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("executable");
        QTest::newRow("named, own architecture") << "Contents/x86_64-linux/Code"
                                                 << "Code";
        QTest::newRow("named, with ending") << "Contents/Linux/Code.so"
                                            << "Code";
        QTest::newRow("named, foreign folder") << "Contents/MacOS/Code"
                                               << "Code";
        QTest::newRow("named like the bundle") << "Contents/Linux/Some.so"
                                               << "";
        QTest::newRow("any library") << "Contents/Linux/zzz.so"
                                     << "Missing";
        QTest::newRow("beside Contents") << "zzz.so"
                                         << "";
        QTest::newRow("path in the name") << "Contents/Linux/Code.so"
                                          << "../../Code";
    }

    void binaryIsFoundInAllPlaces()
    {
        QFETCH(QString, place);
        QFETCH(QString, executable);
        Machine machine;
        const QString bundle = machine.disk.home() + "/Some.vst/";
        QDir().mkpath(QFileInfo(bundle + place).path());
        QVERIFY(QFile::copy(QW_TEST_PLUGINS "/VST/Good.vst/Contents/x86_64-linux/Good.so", bundle + place));
        PluginDisk::write(bundle + "Contents/Info.plist", ("<plist version=\"1.0\"><dict><key>CFBundleExecutable</key>"
                                                           "<string>" +
                                                           executable + "</string></dict></plist>")
                                                              .toUtf8());
        PluginDisk::write(bundle + "Contents/x86_64-linux/Some", "not a library"); // never taken
        QVERIFY2(machine.loader.openVST("~/Some.vst", &machine.error), qPrintable(machine.error));
    }

    void bundleWithoutLibraryIsRefused()
    {
        Machine machine;
        QDir().mkpath(machine.disk.home() + "/Empty.vst/Contents");
        QVERIFY(!machine.loader.openVST("~/Empty.vst", &machine.error));
        QCOMPARE(machine.error, QString("The bundle holds no library for this machine."));
        QVERIFY(!machine.loader.openVST("~/Missing.vst", &machine.error));
        QCOMPARE(machine.error, QString("There is no such bundle."));
        QVERIFY(!machine.loader.openVST("~/Missing.vst", nullptr));
    }
};

QTEST_GUILESS_MAIN(tst_VstEffect)
#include "tst_VstEffect.moc"
