#pragma once

#include "ApplicationCategory.h"

#include <QWBase/qwbase_private.h>

#include <vector>

namespace qw
{

/// Adds a category, wrapped inside those registered before. Called while libraries load; fatal once the application
/// object exists. The texts it points to must stay.
QWBASE_SHARED_EXPORT void registerCategory(const ApplicationCategory &category);

/// In order of registration, outermost first.
const std::vector<ApplicationCategory> &registeredCategories();

} // namespace qw
