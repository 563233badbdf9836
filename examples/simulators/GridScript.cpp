#include "GridScript.h"

#include "GridSimulator.h"

#include <QRegularExpression>

#include <optional>

namespace
{
constexpr int longestWait = 3'600'000; // milliseconds

/// A whole number from 0 up to, but not, @p limit; none for anything else.
std::optional<int> numberIn(const QStringList &words, int position, int limit)
{
    bool isNumber = false;
    const int number = words.value(position).toInt(&isNumber);
    return isNumber && number >= 0 && number < limit ? std::optional(number) : std::nullopt;
}
} // namespace

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
    const QString line = m_lines.takeFirst();
    if (!_run(line.split(blanks)))
        Q_EMIT failed(line);
}

bool GridScript::_run(const QStringList &words)
{
    const QString &command = words.first();
    const QStringList arguments = words.mid(1);
    if (command == "press" || command == "release" || command == "tap")
        return _press(arguments, command != "release", command != "press");
    if (command == "wait")
        return _wait(arguments);
    if (command == "plug")
        return m_grid.plug(arguments.value(0));
    if (command == "bytes")
        m_grid.sendBytes(QByteArray::fromHex(arguments.join(' ').toLatin1()));
    else if (command == "host")
        _waitForHost();
    else if (command == "show")
        _show();
    else if (command == "unplug")
        m_grid.unplug();
    else if (command == "quit")
        Q_EMIT quitRequested();
    else
        return false;
    return true;
}

bool GridScript::_wait(const QStringList &arguments)
{
    const auto time = numberIn(arguments, 0, longestWait);
    if (time)
        m_next.start(*time);
    return time.has_value();
}

void GridScript::_waitForHost()
{
    m_waitsForHost = !m_grid.hasHost();
    if (m_waitsForHost)
        m_next.stop();
}

/// A grid has no other buttons than its own.
bool GridScript::_press(const QStringList &arguments, bool down, bool up)
{
    const GridDevice *const device = m_grid.device();
    const auto column = numberIn(arguments, 0, device ? device->model().columns : 0);
    const auto row = numberIn(arguments, 1, device ? device->model().rows : 0);
    if (!column || !row)
        return false;
    if (down)
        m_grid.press(*column, *row);
    if (up)
        m_grid.release(*column, *row);
    return true;
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
