#pragma once

#include "QWPlatform/linux/lv2/Lv2Description.h"
#include "QWPlatform/linux/lv2/Lv2ReaderLimits.h"

#include <QWPlatform/qwplatform_private.h>

#include <optional>
#include <vector>

namespace platform
{

class ChildProcesses;

/// Has LV2 bundles read by a program of the framework, many at a time: the host library that parses them crashes, hangs
/// or takes any amount of memory over a malformed one, and a bundle that ends its reader costs no other.
namespace Lv2BundleScan
{

using Plugins = std::vector<Lv2Description>;

/// The plug-ins of each of @p paths, in their order. A bundle that ends its reader has none, and the log says so; one
/// that could not be asked about, since no reader can be started, has no value. Any one thread; blocks.
QWPLATFORM_TEST_EXPORT std::vector<std::optional<Plugins>> read(ChildProcesses &processes, const QStringList &paths,
                                                                const Lv2ReaderLimits &limits = {});

} // namespace Lv2BundleScan

} // namespace platform
