#include "GridLights.h"

#include "GridLine.h"

#include <algorithm>
#include <array>
#include <span>

namespace qw
{

GridLights::GridLights(GridLine &line)
    : m_line(line)
{
}

void GridLights::setLED(bool on, QWGridPosition position)
{
    m_frame.setLED(on, position);
    _frameDidChange();
}

void GridLights::setRows(const std::uint8_t *rows, unsigned quadrant)
{
    m_frame.setRows(rows, quadrant);
    _frameDidChange();
}

void GridLights::clear()
{
    const bool isSeries = m_line.protocol() == GridProtocol::Series;
    const unsigned before = m_frameChanges.count();
    if (isSeries)
        m_line.write(gridClearMessage());
    m_frame.clear();
    const bool isAlone = m_frameChanges.note() == before + 1; // else a frame may have come behind the message
    if (!isSeries || !isAlone)
        m_frameChanges.send([this] { _sendFrame(); });
}

void GridLights::setIntensity(float intensity)
{
    m_intensity = intensity;
    m_intensityChanges.note();
    m_intensityChanges.send(
        [this] { m_line.write(gridBrightnessMessage(m_line.protocol(), gridBrightnessLevel(m_intensity))); });
}

void GridLights::_frameDidChange()
{
    m_frameChanges.note();
    m_frameChanges.send([this] { _sendFrame(); });
}

/// In one write: messages of other threads come before or behind the whole frame, and a call is what takes the time.
void GridLights::_sendFrame()
{
    std::array<std::uint8_t, gridLongestFrame> bytes{};
    auto end = bytes.begin();
    const auto append = [&end](const GridMessage &message) {
        end = std::copy_n(message.bytes.begin(), message.length, end);
    };
    if (m_line.protocol() == GridProtocol::FortyH)
        for (unsigned row = 0; row < 8; ++row)
            append(gridRowMessage(row, m_frame.row(0, row)));
    else
        for (unsigned quadrant = 0; quadrant < GridFrame::quadrants; ++quadrant)
            append(gridQuadrantMessage(quadrant, m_frame.rows(quadrant)));
    m_line.write(std::span(bytes.begin(), end));
}

} // namespace qw
