#pragma once

#include <QWPlatform/plugins/AudioPlugin.h>

#include <vector>

namespace demo
{

/// A few bars of notes for instruments.
struct Phrase
{
    using Event = platform::AudioPlugin::MidiEvent;

    /// Frames count from the start of the phrase; ascending.
    std::vector<Event> events;
    qint64 frames = 0; ///< Length; the instrument may ring on after it.

    /// The short phrase that instruments are tried with, in @p sampleRate.
    static Phrase forTrying(double sampleRate);

    /// The events of @p count frames from @p first on, counted from there.
    std::vector<Event> eventsIn(qint64 first, qint64 count) const;
};

} // namespace demo
