#pragma once

#include "QWPlatform/plugins/AudioPlugin.h"
#include "VstEventList.h"
#include "VstHost.h"

#include <memory>
#include <vector>

namespace platform
{

/// An open VST 2 plug-in. A shell, which holds other plug-ins, opens as a plug-in without audio.
class VstEffect : public AudioPlugin
{
public:
    /// Opens the library at @p path (a real path); null, and the reason in @p error, when it refuses.
    static std::unique_ptr<VstEffect> open(const QString &path, QString *error);

    /// Closes the plug-in, which frees its record.
    ~VstEffect() override;

    QString name() const override { return m_name; }
    QString vendor() const override { return m_vendor; }
    bool isInstrument() const override;
    int inputCount() const override { return m_inputCount; }
    int outputCount() const override { return m_outputCount; }
    int latency() const override;
    int category() const override { return m_category; }
    int flags() const override { return m_effect->flags; }
    int uniqueID() const override { return m_effect->uniqueID; }

    bool start(double sampleRate, int blockFrames) override;
    void process(std::span<const float *const> inputs, std::span<float *const> outputs,
                 std::span<const MidiEvent> events) override;
    void stop() override;

private:
    VstEffect(vst::Effect *effect, const QString &path);

    std::intptr_t _dispatch(std::int32_t opcode, std::intptr_t value = 0, void *pointer = nullptr,
                            float option = 0) const;
    QString _text(std::int32_t opcode) const;
    bool _isPlausible() const;

    vst::Effect *m_effect;
    VstHost m_host;
    QString m_name;
    QString m_vendor;
    int m_category = 0;
    int m_inputCount = 0;
    int m_outputCount = 0;
    bool m_isRunning = false;
    VstEventList m_events;
    std::vector<float *> m_inputs; ///< The pointers of the block, in the form the interface wants.
    std::vector<float *> m_outputs;
};

} // namespace platform
