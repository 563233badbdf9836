#pragma once

#include <QObject>
#include <QTimer>

namespace demo
{

class MainWindow;
class SoundActions;

/// What the scroll wheel does over the waveforms: the receiver of the actions that the user binds. The amounts are in
/// lines; a notch of a classic wheel is 1.
class WheelActions : public QObject
{
    Q_OBJECT

public:
    /// Neither is owned.
    WheelActions(MainWindow &window, SoundActions &actions);

    Q_INVOKABLE void zoomWaveform(double lines);   ///< About what the pointer is at.
    Q_INVOKABLE void scrollWaveform(double lines); ///< Away from the user goes to the left.
    Q_INVOKABLE void movePosition(double lines);
    Q_INVOKABLE void changeLevel(double lines); ///< A decibel a line; done when the wheel comes to rest.

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void _applyLevel();

    MainWindow &m_window;
    SoundActions &m_actions;
    double m_pointer = 0; ///< Seconds that the pointer is at.
    double m_level = 0;   ///< Decibels since the wheel began to turn.
    QTimer m_rest;
};

} // namespace demo
