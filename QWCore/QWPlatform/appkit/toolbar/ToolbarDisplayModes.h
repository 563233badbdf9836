#pragma once

#include "Toolbar.h"

#include <array>

namespace platform
{

struct ToolbarDisplayModeTitle
{
    Toolbar::DisplayMode mode;
    const char *title;
};

/// What the user can choose, in the order of the menus.
inline constexpr std::array toolbarDisplayModeTitles{
    ToolbarDisplayModeTitle{Toolbar::IconAndLabel, "Icon and Text"},
    ToolbarDisplayModeTitle{Toolbar::IconOnly, "Icon Only"},
    ToolbarDisplayModeTitle{Toolbar::LabelOnly, "Text Only"},
};

/// The mode that shows: Default is drawn as icon and text.
inline Toolbar::DisplayMode shownToolbarDisplayMode(const Toolbar &toolbar)
{
    return toolbar.displayMode() == Toolbar::Default ? Toolbar::IconAndLabel : toolbar.displayMode();
}

} // namespace platform
