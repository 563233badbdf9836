#include "SoundFormats.h"

namespace
{
/// Others would get their channels mixed, having no layout by default that AAC and ALAC know as well.
bool hasCommonLayout(int channels)
{
    return channels == 1 || channels == 2 || channels == 6;
}
} // namespace

QStringList SoundFormats::offered(const Form &form, bool withProgram)
{
    const bool byProgram = withProgram && hasCommonLayout(form.channels);
    const std::pair<const char *, bool> formats[] = {
        {"aac", byProgram},
        {"podcast", byProgram},
        {"appleLossless", byProgram && form.isInteger24},
        {"flac", form.channels <= 8 && form.isInteger24},
        {"vorbis", form.channels <= 8 && form.rate >= 8000 && form.rate <= 192000},
    };
    QStringList codes;
    for (const auto &[code, isOffered] : formats)
        if (isOffered)
            codes += code;
    return codes;
}
