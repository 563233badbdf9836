// A VST plug-in that halves its input, or does what BEHAVIOUR says.
#include "Misbehaviour.h"

#include <QWPlatform/linux/vst/VstInterface.h>

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>

using vst::Effect;

namespace
{
constexpr float gain = 0.5F;
constexpr bool isInstrument = behaviour == Behaviour::Instrument;
constexpr bool isShell = behaviour == Behaviour::Shell;
bool noteIsOn = false;
vst::Dispatcher hostCallback = nullptr;
std::int32_t flagsAtOpen = 0; ///< Of the time.

std::string effectName()
{
    return behaviour == Behaviour::LongNames ? std::string(1000, 'n') : "Test " BEHAVIOUR_NAME;
}

void takeEvents(void *pointer)
{
    vst::EventListHead head;
    std::memcpy(&head, pointer, sizeof head);
    for (std::int32_t i = 0; i < head.count; ++i) {
        vst::MidiEvent *event = nullptr;
        std::memcpy(&event, static_cast<char *>(pointer) + sizeof head + sizeof event * static_cast<std::size_t>(i),
                    sizeof event);
        noteIsOn = (event->bytes[0] & 0xF0) == 0x90;
    }
}

std::intptr_t ask(Effect *effect, std::int32_t request, std::intptr_t value = 0, void *pointer = nullptr)
{
    return hostCallback(effect, request, 0, value, pointer, 0);
}

/// What the host answers to a plug-in that wants to know @p wanted of the time.
const vst::TimeInfo *timeInfo(Effect *effect, std::intptr_t wanted)
{
    return reinterpret_cast<const vst::TimeInfo *>(ask(effect, vst::request::time, wanted));
}

bool can(Effect *effect, std::string ability)
{
    return ask(effect, vst::request::canDo, 0, ability.data()) == 1;
}

bool tells(Effect *effect, std::int32_t request, std::string_view expected)
{
    char text[64] = {};
    return ask(effect, request, 0, text) == 1 && text == expected;
}

void write(std::initializer_list<double> values, float *samples)
{
    for (const double value : values)
        *samples++ = static_cast<float>(value);
}

/// Says in the middle of a block that its latency is another now.
void changeLatency(Effect *effect)
{
    effect->initialDelay = ask(effect, vst::request::ioChanged) == 1 ? 128 : 0;
}

/// Gives what the host answers as samples: the time on the first channel; on the second the flags of one who wants to
/// know nothing of it, now and when the plug-in was opened, then all else.
void writeAnswers(Effect *effect, float **outputs)
{
    using namespace vst;
    const TimeInfo time =
        *timeInfo(effect, timeFlag::beatsValid | timeFlag::tempoValid | timeFlag::barValid | timeFlag::signatureValid);
    write({time.position, time.sampleRate, time.beats, time.tempo, time.barStart, double(time.numerator),
           double(time.denominator), double(time.flags)},
          outputs[0]);
    const auto number = [&](std::int32_t request) { return static_cast<double>(ask(effect, request)); };
    write({double(timeInfo(effect, 0)->flags), double(flagsAtOpen), number(request::sampleRate),
           number(request::blockSize), number(request::version), number(request::wantMidi), number(request::language),
           number(request::currentID), number(12345), double(can(effect, "sendVstTimeInfo")),
           double(can(effect, "sendVstMidiEvent")), double(can(effect, "makeCoffee")),
           double(tells(effect, request::vendor, "Quorwell Engineering")),
           double(tells(effect, request::product, "QWUtilities")), double(ask(nullptr, request::sampleRate)),
           double(ask(nullptr, request::time))},
          outputs[1]);
}

std::intptr_t close(Effect *effect)
{
    misbehaveAtClose();
    delete effect;
    return 0;
}

std::intptr_t dispatch(Effect *effect, std::int32_t opcode, std::int32_t, std::intptr_t, void *pointer, float)
{
    switch (opcode) {
    case vst::opcode::open:
        misbehaveAtOpen();
        flagsAtOpen = behaviour == Behaviour::Asking ? timeInfo(effect, 0)->flags : 0;
        return 0;
    case vst::opcode::close:
        return close(effect);
    case vst::opcode::category:
        return isInstrument ? vst::category::synth : isShell ? vst::category::shell : 1;
    case vst::opcode::effectName:
        std::strcpy(static_cast<char *>(pointer), effectName().c_str());
        return 1;
    case vst::opcode::vendor:
        std::strcpy(static_cast<char *>(pointer), "Møller & Søn \U0001F3B9");
        return 1;
    case vst::opcode::processEvents:
        takeEvents(pointer);
        return 1;
    default:
        return 0;
    }
}

float sampleFor(float input)
{
    if (isNoisy())
        return std::nanf("");
    return isInstrument ? (noteIsOn ? gain : 0) : gain * input;
}

void processReplacing(Effect *effect, float **inputs, float **outputs, std::int32_t frames)
{
    if (behaviour == Behaviour::Asking) {
        changeLatency(effect);
        return writeAnswers(effect, outputs);
    }
    for (int channel = 0; channel < effect->outputCount; ++channel)
        for (int i = 0; i < frames; ++i)
            outputs[channel][i] = sampleFor(effect->inputCount > channel ? inputs[channel][i] : 0);
}

void accumulate(Effect *effect, float **inputs, float **outputs, std::int32_t frames)
{
    for (int channel = 0; channel < effect->outputCount; ++channel)
        for (int i = 0; i < frames; ++i)
            outputs[channel][i] += sampleFor(inputs[channel][i]);
}

Effect *make()
{
    auto *effect = new Effect{};
    effect->magic = vst::magic;
    effect->dispatcher = dispatch;
    effect->process = accumulate;
    effect->inputCount = isInstrument ? 0 : 2;
    effect->outputCount = behaviour == Behaviour::WrongCounts ? 1 << 20 : 2;
    effect->flags = isInstrument ? vst::flag::isSynth : 0;
    effect->initialDelay = 64;
    effect->uniqueID = 0x51547374; // 'QTst'
    if (behaviour == Behaviour::Accumulating || isShell)
        return effect;
    effect->flags |= vst::flag::hasReplacing;
    effect->processReplacing = processReplacing;
    return effect;
}
} // namespace

#define ENTRY_OF(name) extern "C" [[gnu::visibility("default")]] Effect *name([[maybe_unused]] vst::Dispatcher host)

ENTRY_OF(qw_test_entry)
{
    if (behaviour == Behaviour::Refusing || host(nullptr, vst::request::version, 0, 0, nullptr, 0) < 2400)
        return nullptr;
    hostCallback = host;
    return make();
}

#ifndef NO_ENTRY
ENTRY_OF(VSTPluginMain)
{
    return qw_test_entry(host);
}
#endif
