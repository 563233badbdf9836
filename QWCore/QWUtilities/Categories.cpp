#include "Categories.h"

#include "QWUtilities/shell/launch/SplashScreenExtension.h"
#include "QWUtilities/shortcuts/dispatch/KeyboardShortcutsExtensions.h"

#include <QWBase/QWApplication.h>

namespace qw
{

namespace
{
constexpr QWApplicationCategory categories[] = {
    {.name = "SplashScreenExtension",
     .willFinishLaunching = qw::SplashScreenExtension::willFinishLaunching,
     .didFinishLaunching = qw::SplashScreenExtension::didFinishLaunching},
    {.name = "KeyboardShortcutsExtensions", .sendEvent = qw::KeyboardShortcutsExtensions::sendEvent},
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
