#pragma once

#include "../audio/Clip.h"
#include "../views/TimeRange.h"

#include <QObject>
#include <QTimer>

namespace demo
{

/// Runs through a part of a sound in time with the clock and tells the level there. It opens no sound device.
class Playback : public QObject
{
    Q_OBJECT

public:
    explicit Playback(QObject *parent = nullptr);

    bool isPlaying() const { return m_timer.isActive(); }

    /// From @p range's begin to its end; what played before stops.
    void start(ClipPointer clip, const TimeRange &range);
    void stop();

    /// Stops without a word of where: the sound is another one now.
    void abandon();

Q_SIGNALS:
    /// @p level is the peak of the last moments, 0 at the end.
    void moved(double seconds, float level);
    void playingChanged(bool playing);

private:
    void _tick();
    float _levelAt(double seconds) const;

    ClipPointer m_clip;
    TimeRange m_range;
    qint64 m_startedAt = 0; ///< Nanoseconds of the steady clock.
    QTimer m_timer;
};

} // namespace demo
