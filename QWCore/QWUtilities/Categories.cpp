#include "Categories.h"

#include "shell/SplashScreenExtension.h"
#include "shortcuts/KeyboardShortcutsExtensions.h"

#include <QWBase/QWApplication.h>

namespace qw
{

namespace
{
constexpr QWApplicationCategory categories[] = {
    {.name = "SplashScreenExtension",
     .willFinishLaunching = SplashScreenExtension::willFinishLaunching,
     .didFinishLaunching = SplashScreenExtension::didFinishLaunching},
    {.name = "KeyboardShortcutsExtensions", .sendEvent = KeyboardShortcutsExtensions::sendEvent},
};

/// A host calls nothing of this library to have its categories.
[[gnu::constructor]] void registerCategories()
{
    for (const QWApplicationCategory &category : categories)
        QWApplication::registerCategory(category);
}
} // namespace

std::span<const QWApplicationCategory> applicationCategories()
{
    return categories;
}

} // namespace qw
