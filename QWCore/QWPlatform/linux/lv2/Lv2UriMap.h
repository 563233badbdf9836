#pragma once

#include <deque>
#include <lv2/urid/urid.h>
#include <mutex>
#include <string>
#include <unordered_map>

namespace platform
{

/// Numbers for URIs, as plug-ins want them. Any thread: plug-ins ask from workers of their own.
class Lv2UriMap
{
public:
    Lv2UriMap();
    Lv2UriMap(const Lv2UriMap &) = delete;
    Lv2UriMap &operator=(const Lv2UriMap &) = delete;

    LV2_URID number(const char *uri);

    /// Null for a number that was not given out; lives as long as the map.
    const char *uri(LV2_URID number);

    LV2_URID_Map map; ///< For the feature of this name; likewise the next.
    LV2_URID_Unmap unmap;

private:
    std::mutex m_mutex;             ///< Guards both.
    std::deque<std::string> m_uris; ///< Number n at n - 1; elements do not move.
    std::unordered_map<std::string, LV2_URID> m_numbers;
};

} // namespace platform
