#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QString>

#include <span>

namespace platform
{

/// An open plug-in. All calls from one thread; destroying it closes the plug-in.
class QWPLATFORM_EXPORT AudioPlugin
{
public:
    /// A channel message for instruments and effects with MIDI input. A value that hosts fill in, so it stays open.
    struct MidiEvent
    {
        int frame;              ///< Offset from the start of the block, in samples.
        unsigned char bytes[3]; ///< Status, data 1, data 2.
    };

    virtual ~AudioPlugin();

    virtual QString name() const = 0;      ///< As the plug-in tells it; may be "".
    virtual QString vendor() const = 0;    ///< Its maker, likewise.
    virtual bool isInstrument() const = 0; ///< Whether it plays notes; else it is an effect or a generator.
    virtual int inputCount() const = 0;    ///< Audio inputs, one channel each.
    virtual int outputCount() const = 0;   ///< Audio outputs, one channel each.

    /// In samples, between start() and stop(). Plug-ins tell it while they run: it is valid after the first block, and
    /// each block may change it.
    virtual int latency() const = 0;

    /// @{
    /// Number of the VST interface; 0 for plug-ins of other kinds.
    virtual int category() const;
    virtual int flags() const;
    virtual int uniqueID() const;
    /// @}

    /// Prepares for blocks of @p blockFrames samples, a power of two, at @p sampleRate Hz; false when it refuses.
    virtual bool start(double sampleRate, int blockFrames) = 0;

    /// Processes one block. @p inputs and @p outputs hold one pointer a channel, none of them shared. Every block has
    /// the size that start() was told, since some plug-ins take no other: the host fills its last one up with silence.
    /// Only between start() and stop().
    virtual void process(std::span<const float *const> inputs, std::span<float *const> outputs,
                         std::span<const MidiEvent> events) = 0;

    /// Ends what start() began; start() may follow with other numbers.
    virtual void stop() = 0;
};

} // namespace platform
