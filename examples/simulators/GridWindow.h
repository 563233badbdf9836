#pragma once

#include <QWidget>

class GridSimulator;
class GridView;
class QComboBox;
class QLabel;
class QPushButton;

/// The window of a simulated grid: its buttons and LEDs, whether a host is there, and plugging in and out.
class GridWindow : public QWidget
{
    Q_OBJECT

public:
    /// @p grid is not owned. @p serial stands first in the choice of grids.
    GridWindow(GridSimulator &grid, const QString &serial);

    GridView &view() const { return *m_view; }

private:
    void _layOut();
    void _connect();
    void _showGrid();
    void _choose(const QString &serial);
    void _showState();
    void _plugOrUnplug();

    GridSimulator &m_grid;
    GridView *m_view;
    QLabel *m_state;
    QLabel *m_traffic;
    QComboBox *m_serials;
    QPushButton *m_plug;
};
