#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QRect>
#include <QSize>
#include <QString>

class QWidget;

namespace platform
{

/// @p frame moved, and where need be made smaller, so that a window with it lies on a screen, the one that shows most
/// of it, with room left for the desktop's title bar. The frame itself when it does already.
QWPLATFORM_EXPORT QRect constrainedToScreen(const QRect &frame);

/// Moves a window that would not lie on a screen there; any other stays as it is.
QWPLATFORM_EXPORT void constrainToScreen(QWidget &window);

/// In the middle of the screen on which the user works, for the @p size that it has or is about to get.
QWPLATFORM_EXPORT void centerWindow(QWidget &window, const QSize &size);

/// Frame in the form that user defaults keep, "{{x, y}, {w, h}}", origin at the top left.
QWPLATFORM_EXPORT QString stringFromFrame(const QWidget &window);

/// Sends the key to the window and shows it above the others.
QWPLATFORM_EXPORT void makeKeyAndOrderFront(QWidget &window);

} // namespace platform
