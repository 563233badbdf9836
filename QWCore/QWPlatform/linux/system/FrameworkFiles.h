#pragma once

#include <QString>

namespace platform
{

/// Where this framework keeps what it loads or starts on demand.
namespace FrameworkFiles
{

/// The path of @p name ("Modules/…", "Helpers/…") beside the library that holds this code; "" when nobody knows where
/// that is. The file need not be there.
QString beside(const QString &name);

} // namespace FrameworkFiles

} // namespace platform
