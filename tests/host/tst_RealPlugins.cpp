#include "Sounds.h"

#include <audio/PluginRenderer.h>
#include <audio/WorkProgress.h>

#include <QWPlatform/System.h>
#include <QWPlatform/devices/components/ComponentRegistry.h>
#include <QWPlatform/machine/SystemServices.h>
#include <QWPlatform/plugins/AudioPlugin.h>
#include <QWPlatform/plugins/PluginLoader.h>

#include <QTemporaryDir>
#include <QTest>

using demo::Sound;
using platform::fourCharCode;
using platform::System;
using platform::SystemServices;

/// The renderer on plug-ins of other makers, as the packages that the doors install put them on this machine.
class tst_RealPlugins : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void vstInstrumentPlaysThePhrase_data();
    void vstInstrumentPlaysThePhrase();
    void vstEffectChangesASound();
    void lv2EffectChangesASound();
    void latencyIsTakenOut_data();
    void latencyIsTakenOut();

private:
    QTemporaryDir m_home;
};

static demo::PluginRenderer::Opener openerOfVST(const QString &path)
{
    return [path](QString *error) { return System::current().pluginLoader().openVST(path, error); };
}

static Sound played(const demo::PluginRenderer::Opener &opener)
{
    QString error;
    demo::WorkProgress progress;
    const auto sound = demo::PluginRenderer(opener, progress).play(48000, &error);
    return sound ? *sound : (qWarning("%s", qPrintable(error)), Sound());
}

/// The largest sample from frame @p first on.
static float peakOf(const Sound &sound, qint64 first = 0)
{
    float peak = 0;
    for (const auto &channel : sound.channels)
        for (auto at = channel.begin() + first; at != channel.end(); ++at)
            peak = std::max(peak, std::abs(*at));
    return peak;
}

/// Loud while the notes sound, and silent at the end.
static void verifyPhrase(const Sound &sound)
{
    QVERIFY(sound.channelCount() > 0);
    QVERIFY2(sound.seconds() > 1, qPrintable(QString::number(sound.seconds())));
    const float peak = peakOf(sound);
    QVERIFY2(peak > 0.01f && std::isfinite(peak), qPrintable(QString::number(static_cast<double>(peak))));
    QVERIFY(peakOf(sound, sound.frames() - 480) < peak / 10);
}

/// Changed, and ringing on after the sound's end.
static void verifyEffect(const demo::PluginRenderer::Opener &opener)
{
    const Sound sound = sounds::sine(440, 0.5f, 2, 24000);
    QString error;
    demo::WorkProgress progress;
    const auto result = demo::PluginRenderer(opener, progress).apply(sound, &error);
    QVERIFY2(result, qPrintable(error));
    QCOMPARE(result->channelCount(), 2);
    QVERIFY(result->frames() > sound.frames());
    QVERIFY(result->channels[0] != sound.channels[0]);
    QVERIFY(peakOf(*result) > 0.05f);
    QVERIFY(peakOf(*result, sound.frames()) > 0.001f);
}

static std::optional<platform::AudioComponent> effectNamed(const QByteArray &name)
{
    auto &registry = *SystemServices::current().componentRegistry;
    for (const platform::AudioComponent &unit : registry.componentsOfType(fourCharCode("aufx")))
        if (registry.nameOfComponent(unit).endsWith(QByteArray(": " + name)))
            return unit;
    return std::nullopt;
}

/// Looked for when it is opened.
static demo::PluginRenderer::Opener openerOfEffect(const QByteArray &name)
{
    return [=](QString *error) -> std::unique_ptr<platform::AudioPlugin> {
        const auto unit = effectNamed(name);
        return unit ? System::current().pluginLoader().openComponent(*unit, error) : nullptr;
    };
}

/// As told after one block of silence.
static int latencyOf(const demo::PluginRenderer::Opener &opener)
{
    QString error;
    const auto plugin = opener(&error);
    if (!plugin || !plugin->start(48000, 512))
        return -1;
    std::vector<float> silence(512);
    std::vector<std::vector<float>> outputs(static_cast<size_t>(plugin->outputCount()), silence);
    std::vector<float *> pointers;
    for (auto &output : outputs)
        pointers.push_back(output.data());
    plugin->process(std::vector<const float *>(static_cast<size_t>(plugin->inputCount()), silence.data()), pointers,
                    {});
    const int latency = plugin->latency();
    plugin->stop();
    return latency;
}

void tst_RealPlugins::initTestCase()
{
    QVERIFY(m_home.isValid());
    qputenv("HOME", QFile::encodeName(m_home.path()));
    qunsetenv("LV2_PATH");
}

void tst_RealPlugins::vstInstrumentPlaysThePhrase_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("bass line synthesizer") << "/usr/lib/vst/Nekobi-vst.so";
    QTest::newRow("plucked string") << "/usr/lib/vst/Kars-vst.so";
}

void tst_RealPlugins::vstInstrumentPlaysThePhrase()
{
    QFETCH(QString, path);
    QString error;
    const auto plugin = System::current().pluginLoader().openVST(path, &error);
    QVERIFY2(plugin, qPrintable(error));
    QVERIFY(plugin->isInstrument());
    verifyPhrase(played(openerOfVST(path)));
}

void tst_RealPlugins::vstEffectChangesASound()
{
    verifyEffect(openerOfVST("/usr/lib/vst/MVerb-vst.so"));
}

void tst_RealPlugins::lv2EffectChangesASound()
{
    verifyEffect(openerOfEffect("ZamDelay"));
}

void tst_RealPlugins::latencyIsTakenOut_data()
{
    QTest::addColumn<demo::PluginRenderer::Opener>("opener");
    QTest::addColumn<int>("latency");
    const auto vst = [](const char *name) { return openerOfVST(QString("/usr/lib/vst/%1-vst.so").arg(name)); };
    QTest::newRow("LV2 maximizer") << openerOfEffect("ZaMaximX2") << 480;
    QTest::newRow("LV2 limiter") << openerOfEffect("x42-dpl - Digital Peak Limiter Stereo") << 64;
    QTest::newRow("LV2 limiter for one channel") << openerOfEffect("x42-dpl - Digital Peak Limiter Mono") << 64;
    QTest::newRow("VST maximizer") << vst("ZaMaximX2") << 480;
}

/// An impulse comes out where it went in.
void tst_RealPlugins::latencyIsTakenOut()
{
    QFETCH(demo::PluginRenderer::Opener, opener);
    constexpr size_t place = 1000;
    Sound sound = sounds::constant({0, 0}, 4000);
    for (auto &channel : sound.channels)
        channel[place] = 0.25f;
    QString error;
    demo::WorkProgress progress;
    const auto result = demo::PluginRenderer(opener, progress).apply(sound, &error);
    QVERIFY2(result, qPrintable(error));
    for (const auto &channel : result->channels) {
        const auto loudest = std::ranges::max_element(channel, {}, [](float sample) { return std::abs(sample); });
        QVERIFY(std::abs(*loudest) > 0.01f);
        QCOMPARE(size_t(loudest - channel.begin()), place);
    }
    QTEST(latencyOf(opener), "latency"); // otherwise the above says nothing
}

QTEST_GUILESS_MAIN(tst_RealPlugins)
#include "tst_RealPlugins.moc"
