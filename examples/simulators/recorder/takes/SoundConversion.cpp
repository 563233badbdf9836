#include "SoundConversion.h"

#include <QFile>

#include <memory>
#include <sndfile.h>
#include <vector>

namespace
{
using File = std::unique_ptr<SNDFILE, int (*)(SNDFILE *)>;

/// How samples are kept: the one of libsndfile's forms that holds those of @p format exactly.
int exactEncoding(int format)
{
    switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
        return SF_FORMAT_PCM_S8;
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_ALAC_16:
        return SF_FORMAT_PCM_16;
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_ALAC_32:
        return SF_FORMAT_PCM_32;
    case SF_FORMAT_FLOAT:
        return SF_FORMAT_FLOAT;
    case SF_FORMAT_DOUBLE:
        return SF_FORMAT_DOUBLE;
    default: // 24 bits, or with loss
        return SF_FORMAT_PCM_24;
    }
}

bool isPcm(int format)
{
    switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_ALAC_16:
    case SF_FORMAT_ALAC_20:
    case SF_FORMAT_ALAC_24:
    case SF_FORMAT_ALAC_32:
        return true;
    default:
        return false;
    }
}

int encodingIn(int container, int source)
{
    if (container == SF_FORMAT_OGG)
        return SF_FORMAT_VORBIS;
    const int exact = exactEncoding(source);
    if (exact != SF_FORMAT_PCM_S8)
        return exact;
    if (container == SF_FORMAT_AIFF)
        return SF_FORMAT_PCM_16; // of 8 bits, libsndfile 1.2 counts the byte that fills up an odd number as a sample
    return container == SF_FORMAT_WAV ? SF_FORMAT_PCM_U8 : exact;
}

/// Small ones: the encoder of Vorbis keeps a whole block on its stack.
constexpr sf_count_t blockFrames = 4096;

template <typename Sample, typename Read, typename Write>
bool copyFrames(SNDFILE *from, SNDFILE *to, int channels, Read read, Write write, const std::function<bool()> &goOn)
{
    std::vector<Sample> samples(static_cast<size_t>(blockFrames * channels));
    while (goOn()) {
        const sf_count_t count = read(from, samples.data(), blockFrames);
        if (count <= 0)
            return true;
        if (write(to, samples.data(), count) != count)
            return false;
    }
    return false;
}
} // namespace

bool SoundConversion::isInteger24(int format)
{
    const int exact = exactEncoding(format);
    return exact == SF_FORMAT_PCM_S8 || exact == SF_FORMAT_PCM_16 || exact == SF_FORMAT_PCM_24;
}

bool SoundConversion::convert(const QString &source, const QString &target, int container,
                              const std::function<bool()> &goOn)
{
    SF_INFO info{};
    const File from(sf_open(QFile::encodeName(source).constData(), SFM_READ, &info), sf_close);
    if (!from)
        return false;
    SF_INFO wanted{};
    wanted.samplerate = info.samplerate;
    wanted.channels = info.channels;
    wanted.format = container | encodingIn(container, info.format);
    const File to(sf_open(QFile::encodeName(target).constData(), SFM_WRITE, &wanted), sf_close);
    if (!to)
        return false;
    sf_command(to.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    const bool asNumbers = isPcm(info.format) && container != SF_FORMAT_OGG;
    return asNumbers ? copyFrames<int>(from.get(), to.get(), info.channels, sf_readf_int, sf_writef_int, goOn)
                     : copyFrames<double>(from.get(), to.get(), info.channels, sf_readf_double, sf_writef_double, goOn);
}
