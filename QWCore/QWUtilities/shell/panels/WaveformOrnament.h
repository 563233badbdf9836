#pragma once

#include <QWidget>

namespace qw
{

/// A faint waveform that grows from left to right, along the middle of the panel's gradient.
class WaveformOrnament : public QWidget
{
    Q_OBJECT

public:
    explicit WaveformOrnament(QWidget *parent = nullptr);
    ~WaveformOrnament() override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace qw
