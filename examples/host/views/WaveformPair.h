#pragma once

#include "../audio/Clip.h"

#include <QWidget>

namespace demo
{

class TimeRuler;
class WaveformView;

/// Two waveforms on one time scale, the ruler above them. Without a "before" there is one.
class WaveformPair : public QWidget
{
    Q_OBJECT

public:
    explicit WaveformPair(QWidget *parent = nullptr);

    /// One sound alone.
    void showSound(const QString &heading, const ClipPointer &clip);

    /// The sound before and after a step.
    void showStep(const ClipPointer &before, const QString &heading, const ClipPointer &after);

    double position() const { return m_position; }
    void setPosition(double seconds);

Q_SIGNALS:
    void positionChanged(double seconds);

private:
    void _setDuration(double seconds);

    TimeRuler *m_ruler;
    WaveformView *m_before;
    WaveformView *m_after;
    double m_position = 0;
    double m_duration = 0;
};

} // namespace demo
