#pragma once

#include <QString>

#include <memory>
#include <vector>

namespace platform
{

class AudioPlugin;

/// What the component registry wants to know of one LV2 plug-in.
struct Lv2Description
{
    QString uri;
    QString name;     ///< Never empty.
    QString author;   ///< May be empty.
    quint32 type = 0; ///< Component type.
};

/// The LV2 host library, in a module of its own that is loaded on first use: a host on an unchanged machine pays
/// nothing for it. Any one thread.
class Lv2Access
{
public:
    virtual ~Lv2Access() = default;

    /// The plug-ins with audio outputs that the bundle folder at @p path describes, sorted by URI; none when its files
    /// cannot be read.
    virtual std::vector<Lv2Description> pluginsOfBundle(const QString &path) = 0;

    /// Opens the plug-in @p uri of the bundle at @p path; null, and the reason in @p error, when it refuses.
    virtual std::unique_ptr<AudioPlugin> open(const QString &path, const QString &uri, QString *error) = 0;
};

/// The module's library access, or null when the module is missing, which is logged once.
Lv2Access *lv2Access();

/// Name and type of the module's one exported function.
constexpr auto lv2AccessFunctionName = "qw_lv2_access";
using Lv2AccessFunction = Lv2Access *(*)();

} // namespace platform
