#pragma once

#include <QString>

#include <memory>

namespace platform
{

class AudioPlugin;

/// The LV2 host library, in a module of its own that is loaded when the first plug-in is opened. It reads the bundle of
/// that plug-in and no other. Any one thread.
class Lv2Access
{
public:
    virtual ~Lv2Access() = default;

    /// Opens the plug-in @p uri of the bundle at @p path; null, and the reason in @p error, when it refuses.
    virtual std::unique_ptr<AudioPlugin> open(const QString &path, const QString &uri, QString *error) = 0;
};

/// The module's library access, or null when the module is missing, which is logged once.
Lv2Access *lv2Access();

/// Name and type of the module's one exported function.
constexpr auto lv2AccessFunctionName = "qw_lv2_access";
using Lv2AccessFunction = Lv2Access *(*)();

} // namespace platform
