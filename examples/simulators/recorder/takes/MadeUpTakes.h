#pragma once

#include "RecorderTake.h"

#include <functional>
#include <vector>

/// Takes that a musician might have on a recorder; the same ones each time, in time as in sound.
namespace MadeUpTakes
{

struct Wish
{
    int count = 12;
    double length = 0;        ///< Of each, in seconds; 0: from 2 to 30.
    bool withProgram = false; ///< The formats that ffmpeg makes are offered, too.
};

std::vector<RecorderTake> takes(const Wish &wish);

/// Writes the sound of @p sound as a WAVE file. False when it could not, or @p goOn said no; it is asked now and then.
bool writeSound(const MadeUpSound &sound, int channels, const QString &path, const std::function<bool()> &goOn);

} // namespace MadeUpTakes
