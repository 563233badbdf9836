#include "Lv2BundleReader.h"

#include "LilvPointers.h"
#include "Lv2Ports.h"
#include "QWPlatform/plugins/AudioComponent.h"

#include <QFile>

#include <algorithm>
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/event/event.h>
#include <lv2/midi/midi.h>

namespace platform
{

namespace
{
constexpr auto typePredicate = "http://www.w3.org/1999/02/22-rdf-syntax-ns#type";

/// Which ports a plug-in has, as far as its component type depends on them.
struct PortSummary
{
    bool audioIn = false;
    bool audioOut = false;
    bool midiIn = false;
};

/// One world, with the nodes that questions to it need.
class Reader
{
public:
    explicit Reader(LilvWorld *world)
        : m_world(world)
    {
    }

    std::vector<Lv2Description> plugins()
    {
        std::vector<Lv2Description> found;
        const LilvPlugins *all = lilv_world_get_all_plugins(m_world);
        LILV_FOREACH(plugins, i, all)
        {
            Lv2Description description = describe(lilv_plugins_get(all, i));
            if (description.type != 0)
                found.push_back(std::move(description));
        }
        std::sort(found.begin(), found.end(), [](const auto &a, const auto &b) { return a.uri < b.uri; });
        return found;
    }

    Lv2Description describe(const LilvPlugin *plugin)
    {
        Lv2Description description;
        description.uri = lilvText(lilv_plugin_get_uri(plugin));
        description.type = typeOf(plugin);
        if (description.type == 0)
            return description;
        description.name = nameOf(plugin).simplified();
        if (description.name.isEmpty())
            description.name = description.uri;
        description.author = lilvText(LilvNodePointer(lilv_plugin_get_author_name(plugin)).get()).simplified();
        return description;
    }

private:
    /// Asked for directly: the library's own question prints a complaint when there is no name.
    QString nameOf(const LilvPlugin *plugin)
    {
        const LilvNodesPointer names(lilv_plugin_get_value(plugin, m_name.get()));
        return names ? lilvText(lilv_nodes_get_first(names.get())) : QString();
    }

    /// The component type, or 0 for a plug-in that gives no sound or that nobody could connect.
    quint32 typeOf(const LilvPlugin *plugin)
    {
        if (lilv_plugin_get_num_ports(plugin) > mostLv2Ports)
            return 0;
        const PortSummary ports = portsOf(plugin);
        if (!ports.audioOut)
            return 0;
        if (isOfClass(plugin, LV2_CORE__InstrumentPlugin) || (ports.midiIn && !ports.audioIn))
            return fourCharCode("aumu");
        if (isOfClass(plugin, LV2_CORE__GeneratorPlugin) || isOfClass(plugin, LV2_CORE__OscillatorPlugin) ||
            !ports.audioIn)
            return fourCharCode("augn");
        return ports.midiIn ? fourCharCode("aumf") : fourCharCode("aufx");
    }

    PortSummary portsOf(const LilvPlugin *plugin)
    {
        PortSummary summary;
        for (uint32_t i = 0; i < lilv_plugin_get_num_ports(plugin); ++i) {
            const LilvPort *port = lilv_plugin_get_port_by_index(plugin, i);
            const bool isInput = lilv_port_is_a(plugin, port, m_input.get());
            const bool isAudio = lilv_port_is_a(plugin, port, m_audio.get());
            summary.audioIn |= isAudio && isInput;
            summary.audioOut |= isAudio && !isInput;
            summary.midiIn |= isInput && takesMidi(plugin, port);
        }
        return summary;
    }

    bool takesMidi(const LilvPlugin *plugin, const LilvPort *port)
    {
        const bool takesEvents =
            lilv_port_is_a(plugin, port, m_atom.get()) || lilv_port_is_a(plugin, port, m_event.get());
        return takesEvents && lilv_port_supports_event(plugin, port, m_midi.get());
    }

    /// Asks the plug-in's own statement: the class tree of LV2 itself is not loaded.
    bool isOfClass(const LilvPlugin *plugin, const char *uri)
    {
        const LilvNodesPointer classes(lilv_plugin_get_value(plugin, m_type.get()));
        return classes && lilv_nodes_contains(classes.get(), lilvUri(m_world, uri).get());
    }

    LilvWorld *m_world;
    LilvNodePointer m_type = lilvUri(m_world, typePredicate);
    LilvNodePointer m_name = lilvUri(m_world, "http://usefulinc.com/ns/doap#name");
    LilvNodePointer m_input = lilvUri(m_world, LV2_CORE__InputPort);
    LilvNodePointer m_audio = lilvUri(m_world, LV2_CORE__AudioPort);
    LilvNodePointer m_atom = lilvUri(m_world, LV2_ATOM__AtomPort);
    LilvNodePointer m_event = lilvUri(m_world, LV2_EVENT__EventPort);
    LilvNodePointer m_midi = lilvUri(m_world, LV2_MIDI__MidiEvent);
};
} // namespace

LilvWorldPointer lilvWorldOfBundle(const QString &path)
{
    LilvWorldPointer world(lilv_world_new());
    const QByteArray folder = QFile::encodeName(path + '/');
    const LilvNodePointer bundle(lilv_new_file_uri(world.get(), nullptr, folder.constData()));
    lilv_world_load_bundle(world.get(), bundle.get());
    return world;
}

std::vector<Lv2Description> readLv2Bundle(const QString &path)
{
    const LilvWorldPointer world = lilvWorldOfBundle(path);
    return Reader(world.get()).plugins();
}

Lv2Description describeLv2Plugin(LilvWorld *world, const LilvPlugin *plugin)
{
    return Reader(world).describe(plugin);
}

} // namespace platform
