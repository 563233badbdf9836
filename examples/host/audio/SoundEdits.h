#pragma once

#include "Sound.h"

#include <QStringView>

namespace demo
{

/// Frames from first to before last.
struct FrameRange
{
    qint64 first = 0;
    qint64 last = 0;

    qint64 count() const { return last - first; }
    bool isAllOf(const Sound &sound) const { return first == 0 && last == sound.frames(); }
};

/// Something that is done to a part of a sound. Any thread.
struct SoundEdit
{
    enum class Needs
    {
        Sound,    ///< Without a selection it is done to the whole sound.
        Selection ///< Makes sense for a part only.
    };

    const char *name;                        ///< In the definition of the shortcuts.
    const char *title;                       ///< English; stands in the chain.
    void (*apply)(Sound &, FrameRange part); ///< May leave no frames.
    Needs needs = Needs::Sound;
};

namespace SoundEdits
{

/// Null when there is none.
const SoundEdit *named(QStringView name);

void changeGain(Sound &sound, FrameRange part, double decibels);

/// The part alone.
Sound cutOut(const Sound &sound, FrameRange part);

/// Puts @p other in the place of a part of the same length. What is longer sounds on behind the end of the sound, but
/// not over what follows the part. The one of the two with fewer channels gives them more than once.
void replace(Sound &sound, FrameRange part, const Sound &other);

} // namespace SoundEdits

} // namespace demo
