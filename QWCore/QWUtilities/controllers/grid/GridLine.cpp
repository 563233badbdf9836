#include "GridLine.h"

#include <QWPlatform/devices/serial/SerialLines.h>

namespace qw
{

GridLine::GridLine(platform::SerialLines &lines)
    : m_lines(lines)
{
}

std::ptrdiff_t GridLine::read(std::span<std::uint8_t> bytes)
{
    return m_lines.read(m_fileID, bytes);
}

void GridLine::write(std::span<const std::uint8_t> bytes)
{
    m_lines.write(m_fileID, bytes);
}

void GridLine::write(const GridMessage &message)
{
    write(std::span(message.bytes).first(message.length));
}

void GridLine::drain()
{
    m_lines.drain(m_fileID);
}

void GridLine::close()
{
    m_lines.close(m_fileID.exchange(0));
}

} // namespace qw
