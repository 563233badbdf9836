#pragma once

class QAction;
class QMenu;

namespace platform
{

/// Lights the title of the main menu that @p menu belongs to for a moment, without opening it, as a sign that a key of
/// it was pressed. Nothing where there is no menu bar on the screen.
void flashMenuTitle(QMenu &menu);

} // namespace platform
