#pragma once

#include "TimeRange.h"

#include <QWidget>

namespace demo
{

/// Seconds along the top of the waveforms.
class TimeRuler : public QWidget
{
    Q_OBJECT

public:
    explicit TimeRuler(QWidget *parent = nullptr);

    /// What its width stands for.
    void setRange(const TimeRange &range);

    QSize sizeHint() const override;

    /// The step of labels that fits @p labels labels into @p seconds: 1, 2 or 5 times a power of ten, or a round number
    /// of seconds or minutes.
    static double stepFor(double seconds, double labels);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    TimeRange m_range{0, 1};
};

} // namespace demo
