#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

class GridSimulator;

/// What is done to a simulated grid, a command a line:
///   press X Y, release X Y, tap X Y    buttons
///   bytes HH HH …                      sends these bytes
///   wait MILLISECONDS                  rests
///   host                               waits until a host has opened the grid
///   unplug, plug SERIAL                takes it out, puts one in
///   show                               prints the LEDs, brightness first, a row a line
///   quit                               ends the program
/// Empty lines and lines that begin with "#" are skipped.
class GridScript : public QObject
{
    Q_OBJECT

public:
    explicit GridScript(GridSimulator &grid, QObject *parent = nullptr);

    /// Adds a line, which is run when those before it are done.
    void add(const QString &line);

Q_SIGNALS:
    void printed(const QString &text);
    void failed(const QString &line); ///< It means nothing, or not to this grid; the next one is run all the same.
    void quitRequested();

private:
    void _runNext();
    bool _run(const QStringList &words); ///< False for what means nothing.
    bool _wait(const QStringList &arguments);
    void _waitForHost();
    bool _press(const QStringList &arguments, bool down, bool up);
    void _show();

    GridSimulator &m_grid;
    QStringList m_lines;
    QTimer m_next;
    bool m_waitsForHost = false;
};
