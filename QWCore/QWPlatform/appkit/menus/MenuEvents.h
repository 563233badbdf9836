#pragma once

#include <QWPlatform/qwplatform_private.h>

class QEvent;
class QObject;

namespace platform
{

/// What menus of the toolkit lack where they are long: they scroll in every style, by as much as the wheel turned, and
/// letters that are typed find an item. Asked for each event ahead of its receiver; true: it reaches nobody. Main
/// thread.
QWPLATFORM_SHARED_EXPORT bool handleMenuEvent(QObject &receiver, QEvent &event);

} // namespace platform
