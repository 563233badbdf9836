#pragma once

#include <memory>

class QMenu;

namespace platform
{

class Toolbar;

/// The context menu of a toolbar that the user can customize: display modes and "Customize Toolbar…".
std::unique_ptr<QMenu> makeToolbarMenu(Toolbar &toolbar);

} // namespace platform
