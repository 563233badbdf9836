#pragma once

#include <QWPlatform/qwplatform_private.h>

class QWidget;

namespace platform
{

/// Whether the user may put @p window out of sight; yes at first. While not, what the user or a program of the desktop
/// minimizes comes back at once. Closing is another matter: a sheet keeps the user from it. Its own application may
/// still close or hide it, and a quit is not held up. Main thread.
QWPLATFORM_SHARED_EXPORT void setWindowCanHide(QWidget &window, bool canHide);
QWPLATFORM_TEST_EXPORT bool windowCanHide(const QWidget &window); ///< As set.

} // namespace platform
