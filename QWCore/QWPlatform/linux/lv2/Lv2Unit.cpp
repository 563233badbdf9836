#include "Lv2Unit.h"

#include "Lv2BundleReader.h"
#include "QWPlatform/plugins/AudioComponent.h"

#include <QFileInfo>

#include <algorithm>
#include <bit>
#include <cmath>
#include <dlfcn.h>

namespace platform
{

namespace
{
constexpr int usualSequenceSize = 65536;

QString libraryPath(const LilvPlugin *plugin)
{
    const LilvNode *library = lilv_plugin_get_library_uri(plugin);
    char *path = library ? lilv_file_uri_parse(lilv_node_as_uri(library), nullptr) : nullptr;
    const QString text = QString::fromUtf8(path);
    lilv_free(path);
    return text;
}

int sequenceSizeFor(const std::vector<Lv2Port> &ports)
{
    int size = usualSequenceSize;
    for (const Lv2Port &port : ports)
        size = std::max(size, port.minimumSize);
    return size;
}

/// Why the plug-in cannot be hosted; "" when it can, as far as its description tells.
QString obstacle(const LilvPlugin *plugin)
{
    if (!plugin)
        return QStringLiteral("The bundle does not describe the plug-in.");
    if (const QStringList missing = Lv2Features::missing(plugin); !missing.isEmpty())
        return "The plug-in requires " + missing.join(", ") + '.';
    if (!QFileInfo::exists(libraryPath(plugin)))
        return QStringLiteral("The plug-in's library is missing.");
    return {};
}
} // namespace

std::unique_ptr<Lv2Unit> Lv2Unit::open(const QString &path, const QString &uri, QString *error)
{
    LilvWorldPointer world = lilvWorldOfBundle(path);
    const LilvNodePointer node = lilvUri(world.get(), uri.toUtf8().constData());
    const LilvPlugin *plugin =
        node ? lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world.get()), node.get()) : nullptr;
    *error = obstacle(plugin);
    if (!error->isEmpty())
        return nullptr;
    auto ports = readLv2Ports(world.get(), plugin, error);
    return ports ? std::unique_ptr<Lv2Unit>(new Lv2Unit(std::move(world), plugin, std::move(*ports))) : nullptr;
}

Lv2Unit::Lv2Unit(LilvWorldPointer world, const LilvPlugin *plugin, std::vector<Lv2Port> ports)
    : m_world(std::move(world))
    , m_plugin(plugin)
    , m_description(describeLv2Plugin(m_world.get(), plugin))
    , m_ports(std::move(ports))
    , m_values(m_ports.size())
    , m_voltages(m_ports.size())
    , m_sequences(m_ports.size())
{
}

Lv2Unit::~Lv2Unit()
{
    Lv2Unit::stop();
}

bool Lv2Unit::isInstrument() const
{
    return m_description.type == fourCharCode("aumu");
}

int Lv2Unit::_audioPortCount(bool isInput) const
{
    return static_cast<int>(std::count_if(m_ports.begin(), m_ports.end(), [&](const Lv2Port &port) {
        return port.kind == Lv2Port::Kind::Audio && port.isInput == isInput;
    }));
}

int Lv2Unit::latency() const
{
    const auto port = std::ranges::find_if(m_ports, &Lv2Port::tellsLatency);
    const float value = port == m_ports.end() ? 0 : m_values[static_cast<std::size_t>(port - m_ports.begin())];
    return std::isfinite(value) ? static_cast<int>(std::clamp(std::round(value), 0.0F, 1e9F)) : 0;
}

bool Lv2Unit::start(double sampleRate, int blockFrames)
{
    stop();
    if (blockFrames < 1 || !std::has_single_bit(static_cast<unsigned>(blockFrames)))
        return false; // plug-ins are promised a power of two
    m_blockFrames = blockFrames;
    const int sequenceSize = sequenceSizeFor(m_ports);
    m_features = std::make_unique<Lv2Features>(sampleRate, blockFrames, sequenceSize);
    m_instance.reset(lilv_plugin_instantiate(m_plugin, sampleRate, m_features->list()));
    if (!m_instance)
        return false;
    _keepLibrary();
    m_features->worker().attach(m_instance.get());
    _makeBuffers(sampleRate, sequenceSize);
    _restoreDefaultState();
    lilv_instance_activate(m_instance.get());
    return true;
}

void Lv2Unit::_keepLibrary() const
{
    ::dlopen(QFile::encodeName(libraryPath(m_plugin)).constData(), RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
}

void Lv2Unit::_restoreDefaultState()
{
    LilvState *state = lilv_state_new_from_world(m_world.get(), &m_features->uris().map, lilv_plugin_get_uri(m_plugin));
    if (!state)
        return;
    lilv_state_restore(state, m_instance.get(), nullptr, nullptr, 0, m_features->list());
    lilv_state_free(state);
}

void Lv2Unit::_makeBuffers(double sampleRate, int sequenceSize)
{
    for (uint32_t i = 0; i < m_ports.size(); ++i) {
        const Lv2Port &port = m_ports[i];
        void *buffer = nullptr;
        if (port.kind == Lv2Port::Kind::Control) {
            m_values[i] = port.valueAt(static_cast<float>(sampleRate));
            buffer = &m_values[i];
        } else if (port.kind == Lv2Port::Kind::Voltage) {
            m_voltages[i].assign(static_cast<std::size_t>(m_blockFrames), port.value);
            buffer = m_voltages[i].data();
        } else if (port.kind == Lv2Port::Kind::Sequence) {
            m_sequences[i] = std::make_unique<Lv2Sequence>(m_features->uris(), sequenceSize);
            m_sequences[i]->setEvents({});
            buffer = m_sequences[i]->data();
        }
        lilv_instance_connect_port(m_instance.get(), i, buffer);
    }
}

void Lv2Unit::process(std::span<const float *const> inputs, std::span<float *const> outputs,
                      std::span<const MidiEvent> events)
{
    _connectAudio(inputs, outputs);
    _fillSequences(events);
    lilv_instance_run(m_instance.get(), static_cast<uint32_t>(m_blockFrames));
    m_features->worker().endRun();
}

void Lv2Unit::_connectAudio(std::span<const float *const> inputs, std::span<float *const> outputs)
{
    auto input = inputs.begin();
    auto output = outputs.begin();
    for (uint32_t i = 0; i < m_ports.size(); ++i) {
        if (m_ports[i].kind != Lv2Port::Kind::Audio)
            continue;
        float *buffer = m_ports[i].isInput ? const_cast<float *>(*input++) : *output++; // only read from
        lilv_instance_connect_port(m_instance.get(), i, buffer);
    }
}

void Lv2Unit::_fillSequences(std::span<const MidiEvent> events)
{
    for (std::size_t i = 0; i < m_ports.size(); ++i) {
        if (!m_sequences[i])
            continue;
        if (m_ports[i].isInput)
            m_sequences[i]->setEvents(m_ports[i].takesMidi ? events : std::span<const MidiEvent>());
        else
            m_sequences[i]->setWritable();
    }
}

void Lv2Unit::stop()
{
    if (m_instance)
        lilv_instance_deactivate(m_instance.get());
    m_instance.reset();
    m_features.reset();
}

} // namespace platform
