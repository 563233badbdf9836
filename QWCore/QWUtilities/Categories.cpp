#include "Categories.h"

#include "QWUtilities/shell/launch/SplashScreenExtension.h"
#include "QWUtilities/shortcuts/dispatch/KeyboardShortcutsExtensions.h"

#include <QWBase/application/ApplicationCategories.h>

namespace qw
{

namespace
{
constexpr ApplicationCategory categories[] = {
    {.name = "SplashScreenExtension",
     .willFinishLaunching = qw::SplashScreenExtension::willFinishLaunching,
     .didFinishLaunching = qw::SplashScreenExtension::didFinishLaunching},
    {.name = "KeyboardShortcutsExtensions", .sendEvent = qw::KeyboardShortcutsExtensions::sendEvent},
};

/// A host calls nothing of this library to have its categories.
[[gnu::constructor]] void registerCategories()
{
    for (const ApplicationCategory &category : categories)
        registerCategory(category);
}
} // namespace

std::span<const ApplicationCategory> applicationCategories()
{
    return categories;
}

} // namespace qw
