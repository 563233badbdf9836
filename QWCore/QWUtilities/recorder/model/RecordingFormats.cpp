#include "RecordingFormats.h"

#include <algorithm>
#include <array>

namespace qw::RecordingFormats
{

namespace
{
using Format = RecordingFormat;

constexpr std::array<Format, 10> formats{{
    {"AIFF", "aif", "aif", Format::Uncompressed},
    {"WAVE", "wav", "wav", Format::Uncompressed},
    {"CAF", "caf", "caf", Format::Uncompressed},
    {"AAC", "aac", "m4a", Format::Compressed},
    {"Podcast", "podcast", "m4a", Format::Compressed},
    {"Apple Lossless", "appleLossless", "m4a", Format::Compressed},
    {"FLAC", "flac", "flac", Format::Compressed},
    {"Ogg Vorbis", "vorbis", "ogg", Format::Compressed},
    {"Metadata as XML", "metaXML", "xml", Format::Metadata},
    {"Metadata as Text", "metaText", "txt", Format::Metadata},
}};

constexpr ptrdiff_t firstCompressed = 3; // behind it the others stand in a row, ahead of the metadata
} // namespace

std::span<const Format> all()
{
    return formats;
}

const Format *withTitle(const QString &title)
{
    const auto *const found = std::find_if(formats.begin(), formats.end(),
                                           [&](const Format &format) { return title == QLatin1String(format.title); });
    return found == formats.end() ? nullptr : found;
}

QString extensionOf(const QString &code)
{
    const auto *const found = std::find_if(formats.begin(), formats.end(),
                                           [&](const Format &format) { return code == QLatin1String(format.code); });
    return found == formats.end() ? code : QString::fromLatin1(found->extension);
}

Mask bitOf(const Format &format)
{
    return format.kind == Format::Compressed ? static_cast<Mask>(1U << (&format - &formats[firstCompressed])) : Mask();
}

Mask maskOf(const QStringList &codes)
{
    Mask mask = 0;
    for (const Format &format : formats)
        if (format.kind == Format::Compressed && codes.contains(QLatin1String(format.code)))
            mask |= bitOf(format);
    return mask;
}

QString textOf(Mask mask)
{
    QStringList titles;
    for (const Format &format : formats)
        if (format.kind == Format::Uncompressed || mask & bitOf(format))
            titles.append(QString::fromLatin1(format.title));
    return titles.join(QStringLiteral(", "));
}

} // namespace qw::RecordingFormats
