#include "Lv2Features.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/core/lv2.h>
#include <lv2/parameters/parameters.h>
#include <lv2/state/state.h>

namespace platform
{

namespace
{
/// What may be required: offered as data, or simply true of this host.
constexpr const char *supported[] = {
    LV2_URID__map,
    LV2_URID__unmap,
    LV2_OPTIONS__options,
    LV2_BUF_SIZE__boundedBlockLength,
    LV2_BUF_SIZE__fixedBlockLength,
    LV2_BUF_SIZE__powerOf2BlockLength,
    LV2_BUF_SIZE__coarseBlockLength,
    LV2_WORKER__schedule,
    LV2_LOG__log,
    LV2_STATE__loadDefaultState,
    LV2_CORE__isLive,
    LV2_CORE__hardRTCapable,
    LV2_CORE__inPlaceBroken,
};

bool isSupported(const char *uri)
{
    return std::any_of(std::begin(supported), std::end(supported),
                       [&](const char *feature) { return std::string_view(feature) == uri; });
}

int print(LV2_Log_Handle, LV2_URID, const char *format, va_list arguments)
{
    return std::vfprintf(stderr, format, arguments);
}

int printArguments(LV2_Log_Handle self, LV2_URID type, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int count = print(self, type, format, arguments);
    va_end(arguments);
    return count;
}
} // namespace

QStringList Lv2Features::missing(const LilvPlugin *plugin)
{
    const LilvNodesPointer required(lilv_plugin_get_required_features(plugin));
    QStringList missing;
    LILV_FOREACH(nodes, i, required.get())
    {
        const LilvNode *feature = lilv_nodes_get(required.get(), i);
        if (!isSupported(lilv_node_as_string(feature)))
            missing += lilvText(feature);
    }
    return missing;
}

Lv2Features::Lv2Features(double sampleRate, int blockFrames, int sequenceSize)
    : m_log{nullptr, printArguments, print}
    , m_sampleRate(static_cast<float>(sampleRate))
    , m_blockFrames(blockFrames)
    , m_sequenceSize(sequenceSize)
{
    const LV2_URID integer = m_uris.number(LV2_ATOM__Int);
    const auto option = [&](const char *uri, LV2_URID type, const void *value) {
        return LV2_Options_Option{LV2_OPTIONS_INSTANCE, 0, m_uris.number(uri), 4, type, value};
    };
    m_options = {option(LV2_BUF_SIZE__minBlockLength, integer, &m_blockFrames),
                 option(LV2_BUF_SIZE__maxBlockLength, integer, &m_blockFrames),
                 option(LV2_BUF_SIZE__nominalBlockLength, integer, &m_blockFrames),
                 option(LV2_BUF_SIZE__sequenceSize, integer, &m_sequenceSize),
                 option(LV2_PARAMETERS__sampleRate, m_uris.number(LV2_ATOM__Float), &m_sampleRate),
                 {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    m_features = {LV2_Feature{LV2_URID__map, &m_uris.map},      {LV2_URID__unmap, &m_uris.unmap},
                  {LV2_OPTIONS__options, m_options.data()},     {LV2_BUF_SIZE__boundedBlockLength, nullptr},
                  {LV2_WORKER__schedule, &m_worker.schedule},   {LV2_LOG__log, &m_log},
                  {LV2_STATE__loadDefaultState, nullptr},       {LV2_BUF_SIZE__fixedBlockLength, nullptr},
                  {LV2_BUF_SIZE__powerOf2BlockLength, nullptr}, {LV2_BUF_SIZE__coarseBlockLength, nullptr}};
    std::transform(m_features.begin(), m_features.end(), m_list.begin(), [](const LV2_Feature &f) { return &f; });
}

} // namespace platform
