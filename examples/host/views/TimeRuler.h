#pragma once

#include <QWidget>

namespace demo
{

/// Seconds along the top of the waveforms.
class TimeRuler : public QWidget
{
    Q_OBJECT

public:
    explicit TimeRuler(QWidget *parent = nullptr);

    void setDuration(double seconds);

    QSize sizeHint() const override;

    /// The step of labels that fits @p labels labels into @p seconds: 1, 2 or 5 times a power of ten, or a round number
    /// of seconds or minutes.
    static double stepFor(double seconds, double labels);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double m_duration = 1;
};

} // namespace demo
