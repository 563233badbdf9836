#include "GridScript.h"

#include "GridSimulator.h"

#include <QRegularExpression>

GridScript::GridScript(GridSimulator &grid, QObject *parent)
    : QObject(parent)
    , m_grid(grid)
{
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &GridScript::_runNext);
    connect(&m_grid, &GridSimulator::hostChanged, this, [this](bool hasHost) {
        if (hasHost && std::exchange(m_waitsForHost, false))
            m_next.start(0);
    });
}

void GridScript::add(const QString &line)
{
    const QString text = line.trimmed();
    if (text.isEmpty() || text.startsWith('#'))
        return;
    m_lines.append(text);
    if (!m_next.isActive() && !m_waitsForHost)
        m_next.start(0);
}

void GridScript::_runNext()
{
    if (m_lines.isEmpty())
        return;
    static const QRegularExpression blanks("\\s+");
    m_next.start(0); // a command may ask for longer
    _run(m_lines.takeFirst().split(blanks));
}

void GridScript::_run(const QStringList &words)
{
    const QString &command = words.first();
    const QStringList arguments = words.mid(1);
    if (command == "press" || command == "release" || command == "tap")
        return _press(arguments, command != "release", command != "press");
    if (command == "bytes")
        return m_grid.sendBytes(QByteArray::fromHex(arguments.join(' ').toLatin1()));
    if (command == "wait" || command == "host")
        return _wait(arguments);
    if (command == "show")
        return _show();
    if (command == "unplug")
        return m_grid.unplug();
    if (command == "quit")
        return Q_EMIT quitRequested();
    if (command != "plug" || !m_grid.plug(arguments.value(0)))
        Q_EMIT failed(words.join(' '));
}

/// For the host when there is no time.
void GridScript::_wait(const QStringList &arguments)
{
    if (!arguments.isEmpty())
        return m_next.start(arguments.first().toInt());
    m_waitsForHost = !m_grid.hasHost();
    if (m_waitsForHost)
        m_next.stop();
}

void GridScript::_press(const QStringList &arguments, bool down, bool up)
{
    const int column = arguments.value(0).toInt(), row = arguments.value(1).toInt();
    if (down)
        m_grid.press(column, row);
    if (up)
        m_grid.release(column, row);
}

void GridScript::_show()
{
    const GridDevice *const device = m_grid.device();
    if (!device)
        return;
    QString text = QString::number(device->level());
    for (int row = 0; row < device->model().rows; ++row) {
        text += '\n';
        for (int column = 0; column < device->model().columns; ++column)
            text += device->led(column, row) ? '#' : '.';
    }
    Q_EMIT printed(text);
}
