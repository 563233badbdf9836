#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QString>
#include <QStringList>

#include <span>

namespace qw
{

/// One choice of the format menu.
struct RecordingFormat
{
    enum Kind
    {
        Uncompressed, ///< Every recorder has it for every take.
        Compressed,   ///< Only where a take's own list names it, and never on a blue recorder.
        Metadata      ///< A document about the take instead of its sound; never on a blue recorder.
    };

    const char *title;     ///< In the menu; a key of localized().
    const char *code;      ///< Sent to the recorder.
    const char *extension; ///< Of the saved file.
    Kind kind;
};

/// The formats in which a recorder delivers its takes, in the order of the menu.
namespace RecordingFormats
{

QWUTILITIES_TEST_EXPORT std::span<const RecordingFormat> all();

/// The format with that title, or null.
QWUTILITIES_TEST_EXPORT const RecordingFormat *withTitle(const QString &title);

/// Extension of a file saved as @p code; a code that is not in the table is its own.
QWUTILITIES_TEST_EXPORT QString extensionOf(const QString &code);

/// Compressed formats, a bit each.
using Mask = quint8;

/// The bit of @p format, one of all(); 0 where it is not compressed.
QWUTILITIES_TEST_EXPORT Mask bitOf(const RecordingFormat &format);

/// Those with every compressed format.
inline constexpr Mask every = 0x1F;

/// The compressed formats that @p codes names; others in it do not count.
QWUTILITIES_TEST_EXPORT Mask maskOf(const QStringList &codes);

/// What a take with these compressed formats can be saved as, for people: "AIFF, WAVE, CAF, AAC".
QWUTILITIES_TEST_EXPORT QString textOf(Mask mask);

} // namespace RecordingFormats

} // namespace qw
