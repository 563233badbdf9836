#include "RecorderFormat.h"

#include <algorithm>
#include <sndfile.h>

std::span<const RecorderFormat> RecorderFormat::all()
{
    using enum Kind;
    static constexpr RecorderFormat formats[] = {
        {"aif", "aif", "audio/aiff", Uncompressed, SF_FORMAT_AIFF},
        {"wav", "wav", "audio/wav", Uncompressed, SF_FORMAT_WAV},
        {"caf", "caf", "audio/x-caf", Uncompressed, SF_FORMAT_CAF},
        {"aac", "m4a", "audio/mp4", Compressed, 0},
        {"podcast", "m4a", "audio/mp4", Compressed, 0},
        {"appleLossless", "m4a", "audio/mp4", Compressed, 0},
        {"flac", "flac", "audio/flac", Compressed, SF_FORMAT_FLAC},
        {"vorbis", "ogg", "audio/ogg", Compressed, SF_FORMAT_OGG},
        {"metaXML", "xml", "text/xml; charset=utf-8", Metadata, 0},
        {"metaText", "txt", "text/plain; charset=utf-8", Metadata, 0},
    };
    return formats;
}

const RecorderFormat *RecorderFormat::withCode(const QByteArray &code)
{
    const auto found = std::ranges::find(all(), code, &RecorderFormat::code);
    return found == all().end() ? nullptr : &*found;
}
