#include "Playback.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Clock.h>

#include <algorithm>
#include <cmath>

namespace demo
{

namespace
{
constexpr int tickMilliseconds = 16;
constexpr double levelSeconds = 0.05; ///< How much of the sound a level is of.

qint64 now()
{
    return platform::System::current().clock().monotonicNanoseconds();
}
} // namespace

Playback::Playback(QObject *parent)
    : QObject(parent)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(tickMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &Playback::_tick);
}

void Playback::start(ClipPointer clip, const TimeRange &range)
{
    m_clip = std::move(clip);
    m_range = range;
    m_startedAt = now();
    m_timer.start();
    Q_EMIT playingChanged(true);
    _tick();
}

void Playback::stop()
{
    if (!isPlaying())
        return;
    const double here = m_range.begin + static_cast<double>(now() - m_startedAt) / 1e9;
    abandon();
    Q_EMIT moved(std::min(here, m_range.end), 0);
}

void Playback::abandon()
{
    m_timer.stop();
    m_clip.reset();
    Q_EMIT playingChanged(false);
}

void Playback::_tick()
{
    const double here = m_range.begin + static_cast<double>(now() - m_startedAt) / 1e9;
    if (here >= m_range.end)
        return stop();
    Q_EMIT moved(here, _levelAt(here));
}

float Playback::_levelAt(double seconds) const
{
    const SampleStore &store = m_clip->store;
    const auto frameAt = [&](double time) {
        return std::clamp(static_cast<qint64>(time * store.sampleRate()), qint64(0), store.frames());
    };
    float level = 0;
    for (int channel = 0; channel < store.channelCount(); ++channel) {
        for (const float sample : store.samples(channel, frameAt(seconds - levelSeconds), frameAt(seconds)))
            level = std::max(level, std::abs(sample));
    }
    return level;
}

} // namespace demo
