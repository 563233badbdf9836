#pragma once

#include "GridChanges.h"
#include "GridFrame.h"

#include <atomic>

namespace qw
{

class GridLine;

/// The LEDs of a grid, at the device's positions, and their brightness. Whatever is set is sent at once, and kept also
/// while no grid is connected. Any thread.
class GridLights
{
public:
    /// @p line outlives this.
    explicit GridLights(GridLine &line);

    bool led(QWGridPosition position) const { return m_frame.led(position); }
    void setLED(bool on, QWGridPosition position);

    /// 8 bytes, row 0 first; the frame is sent, but not changed, for a quadrant beyond the last one.
    void setRows(const std::uint8_t *rows, unsigned quadrant);
    void clear();

    /// As it was given, whatever the grid makes of it.
    float intensity() const { return m_intensity; }
    void setIntensity(float intensity);

private:
    void _frameDidChange();
    void _sendFrame();

    GridLine &m_line;
    GridFrame m_frame;
    GridChanges m_frameChanges;
    std::atomic<float> m_intensity = 0;
    GridChanges m_intensityChanges;
};

} // namespace qw
