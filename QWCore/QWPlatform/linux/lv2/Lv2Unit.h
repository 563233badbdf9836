#pragma once

#include "LilvPointers.h"
#include "Lv2Description.h"
#include "Lv2Features.h"
#include "Lv2Ports.h"
#include "Lv2Sequence.h"
#include "QWPlatform/plugins/AudioPlugin.h"

namespace platform
{

/// An LV2 plug-in with its controls at their defaults. It is instantiated by start(), since the sample rate is then
/// known; its library stays in memory afterwards, because many do not survive being unloaded.
class Lv2Unit : public AudioPlugin
{
public:
    /// The plug-in @p uri of the bundle at @p path; null, and the reason in @p error, when it cannot be hosted here.
    static std::unique_ptr<Lv2Unit> open(const QString &path, const QString &uri, QString *error);

    ~Lv2Unit() override;

    QString name() const override { return m_description.name; }
    QString vendor() const override { return m_description.author; }
    bool isInstrument() const override;
    int inputCount() const override { return _audioPortCount(true); }
    int outputCount() const override { return _audioPortCount(false); }
    int latency() const override;
    bool start(double sampleRate, int blockFrames) override;
    void process(std::span<const float *const> inputs, std::span<float *const> outputs,
                 std::span<const MidiEvent> events) override;
    void stop() override;

private:
    Lv2Unit(LilvWorldPointer world, const LilvPlugin *plugin, std::vector<Lv2Port> ports);

    int _audioPortCount(bool isInput) const;
    void _keepLibrary() const;
    void _restoreDefaultState();
    void _makeBuffers(double sampleRate, int sequenceSize);
    void _connectAudio(std::span<const float *const> inputs, std::span<float *const> outputs);
    void _fillSequences(std::span<const MidiEvent> events);

    LilvWorldPointer m_world;
    const LilvPlugin *m_plugin; ///< Owned by the world.
    Lv2Description m_description;
    int m_blockFrames = 0;
    std::vector<Lv2Port> m_ports;
    std::vector<float> m_values;                           ///< Of the controls, by port.
    std::vector<std::vector<float>> m_voltages;            ///< By port; empty for ports of other kinds.
    std::vector<std::unique_ptr<Lv2Sequence>> m_sequences; ///< By port; null for ports of other kinds.
    std::unique_ptr<Lv2Features> m_features;               ///< Between start() and stop(), as is the instance.
    LilvInstancePointer m_instance;
};

} // namespace platform
