#pragma once

#include "LilvPointers.h"
#include "Lv2Description.h"

#include <vector>

namespace platform
{

/// The plug-ins with audio outputs that the bundle folder at @p path describes, sorted by URI; none when its files
/// cannot be read. No plug-in code is loaded, but the host library may crash, hang or take any amount of memory over a
/// malformed bundle: for a process of its own.
std::vector<Lv2Description> readLv2Bundle(const QString &path);

/// One plug-in of @p world; the type is 0 when it gives no sound.
Lv2Description describeLv2Plugin(LilvWorld *world, const LilvPlugin *plugin);

} // namespace platform
