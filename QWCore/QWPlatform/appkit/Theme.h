#pragma once

#include <QWPlatform/qwplatform_export.h>

class QApplication;
class QPalette;

namespace platform
{

enum class ThemeChoice
{
    System,
    Light,
    Dark
};

/// System follows the desktop's style, palette and font; without a desktop (bare X, offscreen) it is Light. Light and
/// Dark are our own palettes on the Fusion style. May be called again at any time.
QWPLATFORM_EXPORT void applyTheme(QApplication &application, ThemeChoice choice);

/// Our own palettes.
QWPLATFORM_EXPORT QPalette themePalette(ThemeChoice choice);

/// True where there is no desktop to follow.
QWPLATFORM_EXPORT bool isBareDisplay();

} // namespace platform
