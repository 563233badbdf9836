#pragma once

#include <QStringList>

/// Which of the recorder's compressed formats can hold which sound.
namespace SoundFormats
{

struct Form
{
    int channels = 0;
    int rate = 0;
    bool isInteger24 = false; ///< Whole numbers of up to 24 bits hold it without loss.
};

/// Codes, in the recorder's order. Without @p withProgram those that ffmpeg makes are left out.
QStringList offered(const Form &form, bool withProgram);

} // namespace SoundFormats
