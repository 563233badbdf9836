#pragma once

#include <QWPlatform/qwplatform_export.h>

class QApplication;
class QPalette;

namespace platform
{

/// How windows look.
enum class ThemeChoice
{
    System, ///< As the desktop's style, palette and font say; without a desktop (bare X, offscreen) Light.
    Light,  ///< Dark text on light ground: our own palette on the Fusion style.
    Dark    ///< The reverse.
};

/// Gives all windows that look, those that stand too. May be called again at any time. Main thread.
QWPLATFORM_EXPORT void applyTheme(QApplication &application, ThemeChoice choice);

/// Our own palette for Light or Dark; for System that of Light.
QWPLATFORM_EXPORT QPalette themePalette(ThemeChoice choice);

/// True where there is no desktop to follow.
QWPLATFORM_EXPORT bool isBareDisplay();

} // namespace platform
