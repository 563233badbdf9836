#pragma once

#include "../audio/Clip.h"

#include <QPixmap>
#include <QWidget>

namespace demo
{

/// One sound: a lane for each channel with the envelope of its peaks around a core of its effective level. The view
/// can be clicked and takes the arrow keys; the position itself is kept by the owner.
class WaveformView : public QWidget
{
    Q_OBJECT

public:
    /// Quiet is for what is only there to compare with.
    enum class Tone
    {
        Quiet,
        Strong
    };

    explicit WaveformView(Tone tone, QWidget *parent = nullptr);

    /// @p heading stands above the lanes, for the screen reader too.
    void setClip(const QString &heading, ClipPointer clip);

    /// Seconds that the width stands for; at least the clip's own length.
    void setDuration(double seconds);
    void setPosition(double seconds);

    QSize sizeHint() const override { return {720, 220}; }
    QSize minimumSizeHint() const override { return {240, 88}; }

Q_SIGNALS:
    void positionChosen(double seconds);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QRect _pane() const;
    QRectF _lane(int channel) const;
    void _refresh();
    void _paintHeading(QPainter &painter) const;
    void _paintPicture(QPainter &painter);
    void _paintLane(QPainter &painter, int channel) const;
    void _paintGrid(QPainter &painter, const QRectF &lane) const;
    void _paintClipping(QPainter &painter, const QRectF &lane,
                        const std::vector<WaveformSummary::Column> &columns) const;
    void _paintPosition(QPainter &painter) const;
    void _choose(double x);

    Tone m_tone;
    QString m_heading;
    ClipPointer m_clip;
    double m_duration = 1;
    double m_position = 0;
    QPixmap m_picture; ///< The lanes at the current size; null when they must be drawn anew.
};

} // namespace demo
