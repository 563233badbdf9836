#pragma once

#include <QWUtilities/controllers/QWMonomeRemoteObserver.h>

#include <QSet>
#include <QTimer>
#include <QWidget>

#include <optional>

class QWMonomeRemote;

namespace demo
{

/// The monome grid as it is now: its lights, and the buttons that are held. A click on a button switches its light. It
/// listens while it shows and is enabled.
class GridMonitor : public QWidget, public QWMonomeRemoteObserver
{
    Q_OBJECT

public:
    explicit GridMonitor(QWidget *parent = nullptr);
    ~GridMonitor() override;

    QSize sizeHint() const override { return {320, 112}; }

    void monomeRemoteRemoved(QWMonomeRemote &remote) override;

    // On the grid's own thread.
    void monomeRemoteButtonDownAtPosition(QWMonomeRemote &remote, QWGridPosition position) override;
    void monomeRemoteButtonUpAtPosition(QWMonomeRemote &remote, QWGridPosition position) override;

    bool isHeld(QPoint button) const { return m_held.contains(button); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void _listen();
    void _hold(QPoint button, bool held);
    QSize _buttons() const; ///< Columns and rows; of a grid that is not there, 8 by 8.
    double _pitch() const;
    QRectF _cell(QPoint button) const;
    std::optional<QPoint> _buttonAt(const QPointF &place) const;
    QString _status() const;

    QWMonomeRemote *m_grid = nullptr; ///< Null while it does not listen.
    QSet<QPoint> m_held;
    QTimer m_refresh; ///< Lights may be switched from anywhere.
};

} // namespace demo
