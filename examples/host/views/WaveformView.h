#pragma once

#include "../audio/Clip.h"

#include <QPixmap>
#include <QWidget>

namespace demo
{

class Viewport;

/// One sound: a lane for each channel with the envelope of its peaks around a core of its effective level. The view
/// can be clicked, and dragged over to select.
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

    /// @p viewport says what is shown and is told what the user chooses; it is not owned.
    WaveformView(Tone tone, Viewport &viewport, QWidget *parent = nullptr);

    /// @p heading stands above the lanes, for the screen reader too.
    void setClip(const QString &heading, ClipPointer clip);

    QSize sizeHint() const override { return {720, 220}; }
    QSize minimumSizeHint() const override { return {240, 88}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QRect _pane() const;
    QRectF _lane(int channel) const;
    void _refresh();
    void _paintHeading(QPainter &painter) const;
    void _paintPicture(QPainter &painter);
    void _paintLane(QPainter &painter, int channel) const;
    void _paintShapes(QPainter &painter, const QRectF &lane, const std::vector<WaveformSummary::Column> &columns) const;
    void _paintGrid(QPainter &painter, const QRectF &lane) const;
    void _paintClipping(QPainter &painter, const QRectF &lane,
                        const std::vector<WaveformSummary::Column> &columns) const;
    void _paintSelection(QPainter &painter) const;
    void _paintPosition(QPainter &painter) const;
    double _x(double seconds) const;
    double _seconds(double x) const;

    Tone m_tone;
    QString m_heading;
    ClipPointer m_clip;
    Viewport &m_viewport;
    double m_pressed = 0; ///< Seconds; where the mouse went down.
    QPixmap m_picture;    ///< The lanes at the current size; null when they must be drawn anew.
};

} // namespace demo
