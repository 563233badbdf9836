#pragma once

class QIcon;
class QString;

namespace platform
{

/// Picture and title of a standard item in the customization panel; none and "" for other items.
QIcon standardToolbarIcon(const QString &identifier);
QString standardToolbarTitle(const QString &identifier);

} // namespace platform
