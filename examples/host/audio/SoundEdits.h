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

} // namespace SoundEdits

} // namespace demo
