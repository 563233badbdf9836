#include "ApplicationCategories.h"

#include "QWBase/QWApplication.h"

namespace qw
{

namespace
{
/// Made when the first library asks, which may be before any object of this file.
std::vector<ApplicationCategory> &categories()
{
    static std::vector<ApplicationCategory> registered;
    return registered;
}
} // namespace

void registerCategory(const ApplicationCategory &category)
{
    if (QWApplication::sharedApplication())
        qFatal("The category %s was registered after the application object had been made.", category.name);
    categories().push_back(category);
}

const std::vector<ApplicationCategory> &registeredCategories()
{
    return categories();
}

} // namespace qw
