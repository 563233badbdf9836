#pragma once

#include "ServiceEvent.h"

#include <QWPlatform/qwplatform_private.h>

#include <map>
#include <set>
#include <utility>

namespace platform
{

/// On how many interfaces each service is announced. The daemon tells of each interface and of both protocols there;
/// people care whether the service is there at all.
class QWPLATFORM_TEST_EXPORT ServicePresence
{
public:
    using Place = std::pair<int, int>; ///< Interface and protocol.

    /// True when it was announced nowhere before.
    bool appeared(const ServiceName &service, Place place);

    /// True when it is announced nowhere any more; false for one that was not there.
    bool vanished(const ServiceName &service, Place place);

    void clear() { m_places.clear(); }

private:
    std::map<ServiceName, std::set<Place>> m_places;
};

} // namespace platform
