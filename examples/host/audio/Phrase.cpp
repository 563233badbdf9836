#include "Phrase.h"

#include <algorithm>

namespace demo
{

namespace
{
struct Note
{
    double start;  ///< Seconds.
    double length; ///< Seconds.
    unsigned char key;
    unsigned char velocity;
};

constexpr Note notes[] = {
    {0.00, 0.45, 57, 96}, {0.25, 0.20, 64, 80}, {0.50, 0.20, 69, 84}, {0.75, 0.20, 72, 88}, {1.00, 0.45, 76, 100},
    {1.50, 0.45, 53, 96}, {1.75, 0.20, 60, 78}, {2.00, 0.20, 65, 84}, {2.25, 0.45, 69, 90}, {2.75, 0.20, 55, 96},
    {3.00, 0.90, 59, 92}, {3.00, 0.90, 62, 92}, {3.00, 0.90, 67, 96},
};
constexpr double phraseLength = 4; // seconds
constexpr unsigned char noteOn = 0x90;
constexpr unsigned char noteOff = 0x80;
} // namespace

Phrase Phrase::forTrying(double sampleRate)
{
    Phrase phrase;
    phrase.frames = static_cast<qint64>(phraseLength * sampleRate);
    for (const Note &note : notes) {
        phrase.events.push_back({static_cast<int>(note.start * sampleRate), {noteOn, note.key, note.velocity}});
        phrase.events.push_back({static_cast<int>((note.start + note.length) * sampleRate), {noteOff, note.key, 64}});
    }
    std::ranges::stable_sort(phrase.events, {}, &Event::frame);
    return phrase;
}

std::vector<Phrase::Event> Phrase::eventsIn(qint64 first, qint64 count) const
{
    std::vector<Event> found;
    for (Event event : events) {
        if (event.frame >= first && event.frame < first + count) {
            event.frame -= static_cast<int>(first);
            found.push_back(event);
        }
    }
    return found;
}

} // namespace demo
