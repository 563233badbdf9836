#pragma once

#include "QWPlatform/devices/components/ComponentRegistry.h"
#include "QWPlatform/plugins/AudioPlugin.h"

#include <memory>

namespace platform
{

/// The unit of a ".component" bundle. Its factory function takes a pointer to the component description (five words
/// of 32 bits in host order: type, subtype, manufacturer, flags, flags mask) and returns the instance, or null to
/// refuse. What the instance is like inside belongs to the bundle's maker; so the unit counts as open once there is
/// one, and it takes and gives no audio here. Instances stay for the rest of the process's life.
class ComponentUnit : public AudioPlugin
{
public:
    /// Null, and the reason in @p error, when the bundle has no Linux code, or refuses. @p name is the registry's.
    static std::unique_ptr<ComponentUnit> open(const AudioComponent &component, const ComponentLocation &location,
                                               const QString &name, QString *error);

    QString name() const override { return m_name; }
    QString vendor() const override { return {}; }
    bool isInstrument() const override;
    int inputCount() const override { return 0; }
    int outputCount() const override { return 0; }
    int latency() const override { return 0; }
    bool start(double sampleRate, int blockFrames) override;
    void process(std::span<const float *const> inputs, std::span<float *const> outputs,
                 std::span<const MidiEvent> events) override;
    void stop() override;

private:
    ComponentUnit(const AudioComponent &component, QString name);

    AudioComponent m_component;
    QString m_name;
};

} // namespace platform
