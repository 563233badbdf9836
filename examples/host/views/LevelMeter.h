#pragma once

#include <QWidget>

namespace demo
{

/// How loud it is at the play head, from -60 to 0 dB.
class LevelMeter : public QWidget
{
    Q_OBJECT

public:
    explicit LevelMeter(QWidget *parent = nullptr);

    float level() const { return m_level; }

    /// A peak; 1 is full scale.
    void setLevel(float level);

    QSize sizeHint() const override { return {96, 8}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    float m_level = 0;
};

} // namespace demo
