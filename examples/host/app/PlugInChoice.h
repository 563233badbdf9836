#pragma once

#include "../audio/PluginRenderer.h"

#include <QString>

#include <optional>

namespace platform
{
class MenuItem;
}

namespace demo
{

/// The plug-in behind an item of the Effects or Instruments menu.
struct PlugInChoice
{
    QString name;
    PluginRenderer::Opener open; ///< Holds the current System's loader; any one thread.

    /// From the item's represented object: an Audio Unit's component description, or a VST record. None for any other
    /// item.
    static std::optional<PlugInChoice> fromMenuItem(const platform::MenuItem &item);
};

} // namespace demo
