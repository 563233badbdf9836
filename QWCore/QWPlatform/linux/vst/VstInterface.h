#pragma once

#include <cstddef>
#include <cstdint>

/// The VST 2 plug-in interface, declared from public descriptions of its layout and numbers. Only what this host uses.
namespace vst
{

struct Effect;

/// The shape of both directions: host to plug-in (Effect::dispatcher) and back (the host callback).
using Dispatcher = std::intptr_t (*)(Effect *effect, std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                     void *pointer, float option);
using EntryFunction = Effect *(*)(Dispatcher hostCallback);
using ProcessFunction = void (*)(Effect *effect, float **inputs, float **outputs, std::int32_t frames);

constexpr std::int32_t magic = 0x56737450; // 'VstP'

/// What a plug-in's entry function returns; the plug-in owns it until it was told to close.
struct Effect
{
    std::int32_t magic;
    Dispatcher dispatcher;
    ProcessFunction process; ///< Adds to the outputs; from before processReplacing.
    void (*setParameter)(Effect *effect, std::int32_t index, float value);
    float (*getParameter)(Effect *effect, std::int32_t index);
    std::int32_t programCount;
    std::int32_t parameterCount;
    std::int32_t inputCount;
    std::int32_t outputCount;
    std::int32_t flags;
    std::intptr_t host; ///< The host's to use.
    std::intptr_t hostReserved;
    std::int32_t initialDelay; ///< Latency in samples.
    std::int32_t obsolete[2];
    float ioRatio;
    void *object;
    void *user;
    std::int32_t uniqueID;
    std::int32_t version;
    ProcessFunction processReplacing;
    void (*processDoubleReplacing)(Effect *effect, double **inputs, double **outputs, std::int32_t frames);
    char reserved[56];
};

#if UINTPTR_MAX == UINT64_MAX
static_assert(offsetof(Effect, flags) == 56 && offsetof(Effect, initialDelay) == 80 && offsetof(Effect, object) == 96 &&
              offsetof(Effect, uniqueID) == 112 && offsetof(Effect, processReplacing) == 120 && sizeof(Effect) == 192);
#endif

namespace flag
{
constexpr std::int32_t hasReplacing = 1 << 4;
constexpr std::int32_t isSynth = 1 << 8;
} // namespace flag

namespace category
{
constexpr std::int32_t synth = 2;
constexpr std::int32_t shell = 10;
} // namespace category

/// Host to plug-in.
namespace opcode
{
constexpr std::int32_t open = 0;
constexpr std::int32_t close = 1;
constexpr std::int32_t setSampleRate = 10;
constexpr std::int32_t setBlockSize = 11;
constexpr std::int32_t resume = 12; ///< 1 to resume, 0 to suspend.
constexpr std::int32_t processEvents = 25;
constexpr std::int32_t category = 35;
constexpr std::int32_t effectName = 45;
constexpr std::int32_t vendor = 47;
constexpr std::int32_t product = 48;
} // namespace opcode

/// Plug-in to host.
namespace request
{
constexpr std::int32_t version = 1;
constexpr std::int32_t currentID = 2;
constexpr std::int32_t wantMidi = 6;
constexpr std::int32_t time = 7; ///< The value tells what is wanted, in bits of timeFlag; the answer is a TimeInfo.
constexpr std::int32_t ioChanged = 13; ///< The latency, or the number of channels.
constexpr std::int32_t sampleRate = 16;
constexpr std::int32_t blockSize = 17;
constexpr std::int32_t processLevel = 23;
constexpr std::int32_t vendor = 32;
constexpr std::int32_t product = 33;
constexpr std::int32_t vendorVersion = 34;
constexpr std::int32_t canDo = 37;
constexpr std::int32_t language = 38;
} // namespace request

/// What of a TimeInfo holds; the first two tell of the transport itself.
namespace timeFlag
{
constexpr std::int32_t transportChanged = 1 << 0;
constexpr std::int32_t transportPlaying = 1 << 1;
constexpr std::int32_t beatsValid = 1 << 9;
constexpr std::int32_t tempoValid = 1 << 10;
constexpr std::int32_t barValid = 1 << 11;
constexpr std::int32_t signatureValid = 1 << 13;
} // namespace timeFlag

/// Where the music is. Position and sample rate always hold.
struct TimeInfo
{
    double position; ///< In samples.
    double sampleRate;
    double nanoseconds;
    double beats; ///< Since the start, in quarter notes; likewise the bar and the cycle.
    double tempo; ///< Quarter notes a minute.
    double barStart;
    double cycleStart;
    double cycleEnd;
    std::int32_t numerator;
    std::int32_t denominator;
    std::int32_t smpteOffset;
    std::int32_t smpteRate;
    std::int32_t samplesToNextClock;
    std::int32_t flags;
};
static_assert(sizeof(TimeInfo) == 88);

/// A channel message for opcode::processEvents.
struct MidiEvent
{
    std::int32_t type = 1;
    std::int32_t size = sizeof(MidiEvent);
    std::int32_t frame = 0;
    std::int32_t flags = 0;
    std::int32_t noteLength = 0;
    std::int32_t noteOffset = 0;
    unsigned char bytes[4] = {};
    char detune = 0;
    unsigned char releaseVelocity = 0;
    char reserved[2] = {};
};
static_assert(sizeof(MidiEvent) == 32);

/// Head of the list that opcode::processEvents takes; pointers to the events follow it.
struct EventListHead
{
    std::int32_t count;
    std::intptr_t reserved;
};

} // namespace vst
