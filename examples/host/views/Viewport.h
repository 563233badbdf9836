#pragma once

#include "TimeRange.h"

#include <QObject>

namespace demo
{

/// What the waveforms show of a sound: a stretch of it, where the position is and what is selected. All in seconds, and
/// never outside the sound.
class Viewport : public QObject
{
    Q_OBJECT

public:
    static constexpr double shortestVisible = 0.005; ///< Seconds; a shorter sound is shown whole.

    using QObject::QObject;

    double duration() const { return m_duration; }
    const TimeRange &visible() const { return m_visible; }
    const TimeRange &selection() const { return m_selection; } ///< Empty: nothing is selected.
    double position() const { return m_position; }
    bool showsAll() const { return m_visible == TimeRange{0, m_duration}; }

    /// Of a sound that was changed. What was all shown stays so, and so does any other stretch, wherever the position
    /// is; what is beyond the end is cut off. 0 and then its own duration begins with another sound.
    void setDuration(double seconds);

    void setVisible(const TimeRange &range);
    void setSelection(const TimeRange &range);

    /// Scrolls until the position is visible.
    void setPosition(double seconds);

    /// Above 1 shows less, below 1 more; the position stays where it is when it is visible, else the middle does.
    void zoom(double factor);

    /// By a part of what is visible, to the right above 0.
    void scroll(double part);

    void showAll() { setVisible({0, m_duration}); }

Q_SIGNALS:
    void visibleChanged();
    void selectionChanged();
    void positionChanged(double seconds);

private:
    TimeRange _cut(const TimeRange &range) const;

    double m_duration = 0;
    TimeRange m_visible;
    TimeRange m_selection;
    double m_position = 0;
};

} // namespace demo
