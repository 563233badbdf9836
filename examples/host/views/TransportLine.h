#pragma once

#include "TimeRange.h"

#include <QString>
#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;
class QToolButton;

namespace demo
{

class ElidedText;
class LevelMeter;
struct Clip;

/// The line at the bottom: playing, position and facts of the sound on the left, what is going on on the right.
class TransportLine : public QWidget
{
    Q_OBJECT

public:
    explicit TransportLine(QWidget *parent = nullptr);

    /// Null: no sound.
    void showSound(const Clip *clip);
    void setPosition(double seconds);
    void showSelection(const TimeRange &selection);
    void showPlaying(bool playing);
    void showLevel(float level); ///< A peak at the position.

    /// A sentence that stays until the next one.
    void showStatus(const QString &text);

    /// Work has begun: its name, a bar and "Cancel" take the place of the status.
    void showWork(const QString &text);
    void setWorkFraction(double fraction);
    void endWork(const QString &status);

Q_SIGNALS:
    void playRequested(); ///< Or to stop.
    void cancelled();

private:
    void _showFacts();

    QString m_summary;
    TimeRange m_selection;
    QToolButton *m_play;
    QLabel *m_position;
    LevelMeter *m_level;
    ElidedText *m_facts;
    ElidedText *m_status;
    QProgressBar *m_bar;
    QPushButton *m_cancel;
};

} // namespace demo
