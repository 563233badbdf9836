#pragma once

#include "QWPlatform/plugins/AudioComponent.h"

#include <QWPlatform/qwplatform_private.h>

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace platform
{

/// Where the code of a component is.
struct ComponentLocation
{
    QString path;            ///< The ".component" bundle, or the LV2 bundle folder.
    QString uri;             ///< Of an LV2 plug-in; "" for a ".component" bundle.
    QString factoryFunction; ///< Of a ".component" bundle, from its Info.plist; may be empty.
};

/// The audio system's list of installed components. Main thread; names and locations also from the one that opens
/// plug-ins. The codes are the same in every process that looks at the same home and library root.
class QWPLATFORM_SHARED_EXPORT ComponentRegistry
{
public:
    virtual ~ComponentRegistry();

    /// All installed components of @p type, in registry order, which is stable. What was installed since the last
    /// call is seen.
    virtual std::vector<AudioComponent> componentsOfType(quint32 type) = 0;

    /// The registry's name for @p component: a Pascal string (length byte, then UTF-8 text; the length byte is 255
    /// for longer texts, whose bytes follow all the same). Empty when the registry cannot read it.
    virtual QByteArray nameOfComponent(const AudioComponent &component) = 0;

    /// Where @p component is installed; none when it is not.
    virtual std::optional<ComponentLocation> locationOfComponent(const AudioComponent &component) = 0;
};

} // namespace platform
