#pragma once

#include "LilvPointers.h"
#include "Lv2UriMap.h"
#include "Lv2Worker.h"

#include <QStringList>

#include <array>
#include <lv2/log/log.h>
#include <lv2/options/options.h>

namespace platform
{

/// What this host offers to one instance of a plug-in; outlives the instance.
class Lv2Features
{
public:
    /// The features that @p plugin requires and this host lacks.
    static QStringList missing(const LilvPlugin *plugin);

    /// All blocks are of @p blockFrames samples, a power of two.
    Lv2Features(double sampleRate, int blockFrames, int sequenceSize);
    Lv2Features(const Lv2Features &) = delete;
    Lv2Features &operator=(const Lv2Features &) = delete;

    /// Ends with a null.
    const LV2_Feature *const *list() const { return m_list.data(); }

    Lv2UriMap &uris() { return m_uris; }
    Lv2Worker &worker() { return m_worker; }

private:
    Lv2UriMap m_uris;
    Lv2Worker m_worker;
    LV2_Log_Log m_log;
    float m_sampleRate;
    int32_t m_blockFrames;
    int32_t m_sequenceSize;
    std::array<LV2_Options_Option, 6> m_options;
    std::array<LV2_Feature, 10> m_features;
    std::array<const LV2_Feature *, 11> m_list{};
};

} // namespace platform
