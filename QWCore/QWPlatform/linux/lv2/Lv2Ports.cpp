#include "Lv2Ports.h"

#include <algorithm>
#include <cmath>
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/midi/midi.h>
#include <lv2/resize-port/resize-port.h>

namespace platform
{

namespace
{
constexpr int largestSequence = 16 << 20;

struct KindOfClass
{
    const char *portClass;
    Lv2Port::Kind kind;
};
constexpr KindOfClass kinds[] = {{LV2_CORE__AudioPort, Lv2Port::Kind::Audio},
                                 {LV2_CORE__ControlPort, Lv2Port::Kind::Control},
                                 {LV2_CORE__CVPort, Lv2Port::Kind::Voltage},
                                 {LV2_ATOM__AtomPort, Lv2Port::Kind::Sequence}};

class PortReader
{
public:
    PortReader(LilvWorld *world, const LilvPlugin *plugin)
        : m_world(world)
        , m_plugin(plugin)
        , m_values(std::min(lilv_plugin_get_num_ports(plugin), mostLv2Ports))
        , m_minima(m_values.size())
        , m_maxima(m_values.size())
    {
        if (hasTooMany())
            return;
        lilv_plugin_get_port_ranges_float(plugin, m_minima.data(), m_maxima.data(), m_values.data());
        for (std::size_t i = 0; i < m_values.size(); ++i)
            if (!std::isfinite(m_values[i]))
                m_values[i] = std::isfinite(m_minima[i]) ? m_minima[i] : 0;
    }

    bool hasTooMany() const { return lilv_plugin_get_num_ports(m_plugin) > mostLv2Ports; }

    uint32_t count() const { return static_cast<uint32_t>(m_values.size()); }

    /// None when the port is of an unknown kind and must be connected.
    std::optional<Lv2Port> read(uint32_t index) const
    {
        const LilvPort *port = lilv_plugin_get_port_by_index(m_plugin, index);
        Lv2Port result;
        result.kind = kindOf(port);
        if (result.kind == Lv2Port::Kind::Unconnected && !has(port, LV2_CORE__connectionOptional))
            return std::nullopt;
        result.isInput = lilv_port_is_a(m_plugin, port, node(LV2_CORE__InputPort).get());
        result.takesMidi = lilv_port_supports_event(m_plugin, port, node(LV2_MIDI__MidiEvent).get());
        result.timesSampleRate = has(port, LV2_CORE__sampleRate);
        result.tellsLatency = result.kind == Lv2Port::Kind::Control && !result.isInput && isForLatency(port);
        result.value = m_values[index];
        if (!std::isnan(m_minima[index]))
            result.minimum = m_minima[index];
        if (!std::isnan(m_maxima[index]))
            result.maximum = m_maxima[index];
        result.minimumSize = minimumSize(port);
        return result;
    }

    QString symbol(uint32_t index) const
    {
        return lilvText(lilv_port_get_symbol(m_plugin, lilv_plugin_get_port_by_index(m_plugin, index)));
    }

private:
    LilvNodePointer node(const char *uri) const { return lilvUri(m_world, uri); }

    bool has(const LilvPort *port, const char *property) const
    {
        return lilv_port_has_property(m_plugin, port, node(property).get());
    }

    Lv2Port::Kind kindOf(const LilvPort *port) const
    {
        for (const KindOfClass &entry : kinds)
            if (lilv_port_is_a(m_plugin, port, node(entry.portClass).get()))
                return entry.kind;
        return Lv2Port::Kind::Unconnected;
    }

    /// Some say it in one way, some in the other.
    bool isForLatency(const LilvPort *port) const
    {
        const LilvNodePointer designation(lilv_port_get(m_plugin, port, node(LV2_CORE__designation).get()));
        return has(port, LV2_CORE__reportsLatency) || lilvText(designation.get()) == LV2_CORE__latency;
    }

    int minimumSize(const LilvPort *port) const
    {
        const LilvNodePointer size(lilv_port_get(m_plugin, port, node(LV2_RESIZE_PORT__minimumSize).get()));
        return size && lilv_node_is_int(size.get()) ? std::clamp(lilv_node_as_int(size.get()), 0, largestSequence) : 0;
    }

    LilvWorld *m_world;
    const LilvPlugin *m_plugin;
    std::vector<float> m_values; ///< By port, as the next two; of the bounds, those that are not told are no numbers.
    std::vector<float> m_minima;
    std::vector<float> m_maxima;
};
} // namespace

float Lv2Port::valueAt(float sampleRate) const
{
    if (!timesSampleRate)
        return value;
    const float least = minimum * sampleRate;
    const float most = std::max(least, maximum * sampleRate);
    const auto fits = [&](float candidate) { return candidate >= least && candidate <= most; };
    return !fits(value * sampleRate) && fits(value) ? value : std::clamp(value * sampleRate, least, most);
}

std::optional<std::vector<Lv2Port>> readLv2Ports(LilvWorld *world, const LilvPlugin *plugin, QString *error)
{
    const PortReader reader(world, plugin);
    if (reader.hasTooMany()) {
        *error = QStringLiteral("The plug-in describes too many ports.");
        return std::nullopt;
    }
    std::vector<Lv2Port> ports;
    for (uint32_t i = 0; i < reader.count(); ++i) {
        const auto port = reader.read(i);
        if (!port) {
            *error = "The port \"" + reader.symbol(i) + "\" is of an unknown kind.";
            return std::nullopt;
        }
        ports.push_back(*port);
    }
    return ports;
}

} // namespace platform
