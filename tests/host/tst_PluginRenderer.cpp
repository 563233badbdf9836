#include "ScriptedPlugin.h"
#include "Sounds.h"

#include <audio/PluginRenderer.h>
#include <audio/WorkProgress.h>

#include <QTest>

using demo::ChannelPlan;
using demo::PluginRenderer;
using demo::Sound;
using demo::WorkProgress;

class tst_PluginRenderer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void latencyIsTakenOutToTheSample_data();
    void latencyIsTakenOutToTheSample();
    void latencyThatNobodyCanMeanIsNotBelieved_data();
    void latencyThatNobodyCanMeanIsNotBelieved();
    void soundsOfAnyLengthAreRenderedWhole_data();
    void soundsOfAnyLengthAreRenderedWhole();
    void tailIsFollowedUntilItIsSilent();
    void plugInThatNeverEndsIsFadedOut();
    void channelsMeetThoseOfThePlugIn_data();
    void channelsMeetThoseOfThePlugIn();
    void monoEffectRunsOnceForEachChannel();
    void monoSoundFeedsBothInputs();
    void foldedChannelsKeepTheirLevel();
    void samplesThatAreNoNumbersBecomeSilence();
    void refusalsAreToldInWords_data();
    void refusalsAreToldInWords();
    void cancelledWorkEndsWithoutASentence();
    void instrumentGetsEachNoteOnceAndItsEnd();
    void progressReachesTheEnd();

private:
    std::optional<Sound> _apply(ScriptedPlugin::Script script, const Sound &sound);

    ScriptedPlugin::Report m_report;
    QString m_error;
};

void tst_PluginRenderer::init()
{
    m_report = {};
    m_error.clear();
}

static PluginRenderer::Opener openerOf(ScriptedPlugin::Script script, ScriptedPlugin::Report &report)
{
    return [=, &report](QString *) { return std::make_unique<ScriptedPlugin>(script, report); };
}

std::optional<Sound> tst_PluginRenderer::_apply(ScriptedPlugin::Script script, const Sound &sound)
{
    WorkProgress progress;
    return PluginRenderer(openerOf(script, m_report), progress).apply(sound, &m_error);
}

void tst_PluginRenderer::latencyIsTakenOutToTheSample_data()
{
    QTest::addColumn<int>("latency");
    QTest::addColumn<int>("framesUntilTold");
    QTest::newRow("told from the start") << 777 << 0;
    QTest::newRow("told by the first block") << 777 << 1;
    QTest::newRow("told later") << 777 << 1500;
    QTest::newRow("shorter than a block") << 64 << 1;
    QTest::newRow("longer than the sound") << 9000 << 1;
}

void tst_PluginRenderer::latencyIsTakenOutToTheSample()
{
    QFETCH(int, latency);
    QFETCH(int, framesUntilTold);
    const Sound sound = sounds::sine(440, 0.5f, 2, 3000);
    const auto result = _apply({.latency = latency, .framesUntilTold = framesUntilTold}, sound);
    QVERIFY(result);
    QCOMPARE(result->channels, sound.channels);
    QCOMPARE(m_report.stopped, 1);
}

void tst_PluginRenderer::latencyThatNobodyCanMeanIsNotBelieved_data()
{
    QTest::addColumn<int>("told");
    QTest::newRow("below zero") << -480;
    QTest::newRow("hours") << 1'000'000'000;
}

void tst_PluginRenderer::latencyThatNobodyCanMeanIsNotBelieved()
{
    QFETCH(int, told);
    const Sound sound = sounds::sine(440, 0.5f, 2, 3000);
    const auto result = _apply({.wrongLatency = told}, sound);
    QVERIFY(result);
    QCOMPARE(result->channels, sound.channels);
}

void tst_PluginRenderer::soundsOfAnyLengthAreRenderedWhole_data()
{
    QTest::addColumn<int>("frames");
    for (const int frames : {1, 511, 512, 513, 1024, 5000})
        QTest::addRow("%d", frames) << frames;
}

void tst_PluginRenderer::soundsOfAnyLengthAreRenderedWhole()
{
    QFETCH(int, frames);
    const Sound sound = sounds::constant({0.5f, -0.25f}, frames);
    const auto result = _apply({}, sound);
    QVERIFY(result);
    QCOMPARE(result->channels, sound.channels);
    QCOMPARE(m_report.frames % PluginRenderer::blockFrames, 0);
}

void tst_PluginRenderer::tailIsFollowedUntilItIsSilent()
{
    const auto result = _apply({.latency = 100, .echo = 4000}, sounds::constant({0.5f, 0.5f}, 1000));
    QVERIFY(result);
    QCOMPARE(result->frames(), 5000);
    QCOMPARE(result->channels[0].back(), 0.25f);
}

void tst_PluginRenderer::plugInThatNeverEndsIsFadedOut()
{
    const auto result = _apply({.neverEnds = true}, sounds::constant({0, 0}, 1000));
    QVERIFY(result);
    QVERIFY(result->seconds() <= PluginRenderer::longestTail + 1);
    QCOMPARE(result->channels[0][1000], 0.25f);
    QVERIFY(result->channels[0].back() < 0.001f);
}

void tst_PluginRenderer::channelsMeetThoseOfThePlugIn_data()
{
    QTest::addColumn<int>("channels");
    QTest::addColumn<int>("inputs");
    QTest::addColumn<int>("outputs");
    QTest::addColumn<int>("passes");
    QTest::addColumn<int>("resultChannels");
    QTest::newRow("stereo through stereo") << 2 << 2 << 2 << 1 << 2;
    QTest::newRow("mono through mono") << 1 << 1 << 1 << 1 << 1;
    QTest::newRow("mono through stereo becomes stereo") << 1 << 2 << 2 << 1 << 2;
    QTest::newRow("stereo through mono") << 2 << 1 << 1 << 2 << 2;
    QTest::newRow("six channels through stereo") << 6 << 2 << 2 << 3 << 6;
    QTest::newRow("three channels through stereo are mixed") << 3 << 2 << 2 << 1 << 2;
    QTest::newRow("stereo through mono to stereo is mixed") << 2 << 1 << 2 << 1 << 2;
    QTest::newRow("side inputs stay silent") << 2 << 4 << 2 << 1 << 2;
    QTest::newRow("side outputs are dropped") << 2 << 2 << 8 << 1 << 2;
    QTest::newRow("generator") << 2 << 0 << 2 << 1 << 2;
}

void tst_PluginRenderer::channelsMeetThoseOfThePlugIn()
{
    QFETCH(int, channels);
    QFETCH(int, inputs);
    QFETCH(int, outputs);
    const auto result = _apply({.inputs = inputs, .outputs = outputs}, sounds::sine(440, 0.5f, channels, 600));
    QVERIFY(result);
    QTEST(m_report.opened, "passes");
    QTEST(result->channelCount(), "resultChannels");
    QCOMPARE(result->frames(), 600);
    QCOMPARE(m_report.stopped, m_report.opened);
}

void tst_PluginRenderer::monoEffectRunsOnceForEachChannel()
{
    const Sound sound = sounds::constant({0.5f, -0.25f}, 600);
    const auto result = _apply({.inputs = 1, .outputs = 1}, sound);
    QVERIFY(result);
    QCOMPARE(result->channels, sound.channels);
}

void tst_PluginRenderer::monoSoundFeedsBothInputs()
{
    QVERIFY(_apply({.inputs = 3, .outputs = 2}, sounds::constant({0.5f}, 600)));
    QCOMPARE(m_report.heard, (std::vector<std::vector<float>>{{0.5f, 0.5f, 0.0f}}));
}

void tst_PluginRenderer::foldedChannelsKeepTheirLevel()
{
    QVERIFY(_apply({.inputs = 1, .outputs = 2}, sounds::constant({0.5f, 0.5f}, 600)));
    QCOMPARE(m_report.heard, (std::vector<std::vector<float>>{{0.5f}}));
}

void tst_PluginRenderer::samplesThatAreNoNumbersBecomeSilence()
{
    const auto result = _apply({.givesNoNumbers = true}, sounds::constant({0.5f, 0.5f}, 600));
    QVERIFY(result);
    QCOMPARE(result->channels[1], std::vector<float>(600, 0.0f));
}

void tst_PluginRenderer::refusalsAreToldInWords_data()
{
    QTest::addColumn<int>("outputs");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("does not start") << 2 << "It does not work at 48000 Hz.";
    QTest::newRow("no outputs") << 0 << "It has no audio outputs, so there is nothing to hear from it.";
}

void tst_PluginRenderer::refusalsAreToldInWords()
{
    QFETCH(int, outputs);
    QVERIFY(!_apply({.outputs = outputs, .refusesToStart = true}, sounds::constant({0.5f, 0.5f}, 600)));
    QTEST(m_error, "sentence");
    QCOMPARE(m_report.frames, 0);
}

void tst_PluginRenderer::cancelledWorkEndsWithoutASentence()
{
    WorkProgress progress;
    progress.cancel();
    QVERIFY(!PluginRenderer(openerOf({}, m_report), progress).apply(sounds::constant({0.5f, 0.5f}, 600), &m_error));
    QCOMPARE(m_error, QString());
}

void tst_PluginRenderer::instrumentGetsEachNoteOnceAndItsEnd()
{
    WorkProgress progress;
    PluginRenderer renderer(openerOf({.inputs = 0, .neverEnds = true, .instrument = true}, m_report), progress);
    const auto result = renderer.play(44100, &m_error);
    QVERIFY(result);
    QCOMPARE(result->channelCount(), 2);
    QCOMPARE(result->sampleRate, 44100.0);
    QCOMPARE(m_report.events.size(), demo::Phrase::forTrying(44100).events.size());
    std::vector<int> sounding(128);
    qint64 last = 0;
    for (const auto &[block, event] : m_report.events) {
        QVERIFY(event.frame >= 0 && event.frame < PluginRenderer::blockFrames);
        QVERIFY(block + event.frame >= last);
        last = block + event.frame;
        sounding[event.bytes[1]] += event.bytes[0] == 0x90 ? 1 : -1;
    }
    QCOMPARE(sounding, std::vector<int>(128));
}

void tst_PluginRenderer::progressReachesTheEnd()
{
    WorkProgress progress;
    QVERIFY(PluginRenderer(openerOf({.inputs = 1, .outputs = 1}, m_report), progress)
                .apply(sounds::constant({0.5f, 0.5f}, 600), &m_error));
    QCOMPARE(progress.fraction(), 1.0);
}

QTEST_APPLESS_MAIN(tst_PluginRenderer)
#include "tst_PluginRenderer.moc"
