#pragma once

#include <QWBase/application/ApplicationCategory.h>
#include <QWUtilities/qwutilities_private.h>

#include <span>

namespace qw
{

/// What this library adds to the application object, outermost first. Registered when the library is loaded.
QWUTILITIES_TEST_EXPORT std::span<const ApplicationCategory> applicationCategories();

} // namespace qw
