#include "GridScene.h"

#include <QWUtilities/controllers/QWMonomeRemote.h>

#include <simulators/GridSimulator.h>
#include <simulators/GridWindow.h>

#include <array>
#include <memory>

namespace demo
{

namespace
{
constexpr auto serial = "m64-0123";

/// A sound that fades away. The top row is the play head's.
constexpr std::array<quint8, 8> fadingSound{0x01, 0x01, 0x03, 0x0F, 0x1F, 0x3F, 0x7F, 0xFF};

struct PluggedGrid
{
    GridSimulator grid{qEnvironmentVariable("QW_SERIAL_DEVICES")};
    GridWindow window{grid, serial};
    bool isDrawn = false;
};

std::unique_ptr<PluggedGrid> &pluggedGrid()
{
    static std::unique_ptr<PluggedGrid> grid;
    return grid;
}

void plugIn(DemoApplication &)
{
    pluggedGrid() = std::make_unique<PluggedGrid>();
    pluggedGrid()->grid.plug(serial);
    pluggedGrid()->window.show();
}

void closeWindow(DemoApplication &)
{
    pluggedGrid()->window.close();
}

bool lightsAre(const GridDevice &device, const std::array<quint8, 8> &rows)
{
    for (int row = 0; row < 8; ++row)
        for (int column = 0; column < 8; ++column)
            if (device.led(column, row) != bool(rows.at(std::size_t(row)) & (1 << column)))
                return false;
    return true;
}

/// Null until the lights are as they should be. The host begins with that of its play head, when the grid's own show is
/// over.
QWidget *windowOfDrawnGrid(DemoApplication &)
{
    PluggedGrid *const plugged = pluggedGrid().get();
    const GridDevice *const device = plugged ? plugged->grid.device() : nullptr;
    if (!device)
        return nullptr;
    if (!plugged->isDrawn && lightsAre(*device, {0x01})) {
        QWMonomeRemote::remote().setLEDFrameAtQuadrant(fadingSound.data(), 0);
        plugged->isDrawn = true;
    }
    return lightsAre(*device, fadingSound) ? &plugged->window : nullptr;
}
} // namespace

WindowStep::Window gridScene()
{
    return {.name = "grid-simulator",
            .open = plugIn,
            .window = windowOfDrawnGrid,
            .close = closeWindow,
            .onBackdrop = true};
}

void unplugGrid()
{
    pluggedGrid().reset();
}

} // namespace demo
