#pragma once

#include "../audio/Clip.h"

#include <QWidget>

namespace demo
{

class TimeRuler;
class Viewport;
class WaveformView;

/// Two waveforms on one time scale, the ruler above them. Without a "before" there is one.
class WaveformPair : public QWidget
{
    Q_OBJECT

public:
    explicit WaveformPair(Viewport &viewport, QWidget *parent = nullptr);

    /// One sound alone.
    void showSound(const QString &heading, const ClipPointer &clip);

    /// The sound before and after a step.
    void showStep(const ClipPointer &before, const QString &heading, const ClipPointer &after);

    void showRuler(bool visible);
    bool showsRuler() const;

private:
    Viewport &m_viewport;
    TimeRuler *m_ruler;
    WaveformView *m_before;
    WaveformView *m_after;
};

} // namespace demo
