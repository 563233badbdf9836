#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <functional>

class QWidget;

namespace platform
{

/// Shows @p sheet, window-modal, on @p window and returns. @p didEnd is called once, from endSheet(); closing the sheet
/// (or rejecting a QDialog) ends it with 0, accepting one with 1. It is not called when the sheet goes first. Main
/// thread.
QWPLATFORM_SHARED_EXPORT void beginSheet(QWidget &sheet, QWidget *window,
                                         std::function<void(int returnCode)> didEnd = {});

/// Takes the sheet off the screen and calls its didEnd; nothing when it is not open as a sheet.
QWPLATFORM_SHARED_EXPORT void endSheet(QWidget &sheet, int returnCode = 0);

/// The open sheet of @p window, or null.
QWPLATFORM_SHARED_EXPORT QWidget *attachedSheet(const QWidget *window);

} // namespace platform
