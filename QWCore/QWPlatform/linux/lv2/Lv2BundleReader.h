#pragma once

#include "LilvPointers.h"
#include "Lv2Access.h"

namespace platform
{

/// Reads what the registry needs from one bundle, without loading plug-in code.
std::vector<Lv2Description> readLv2Bundle(const QString &path);

/// One plug-in of @p world; the type is 0 when it gives no sound.
Lv2Description describeLv2Plugin(LilvWorld *world, const LilvPlugin *plugin);

} // namespace platform
