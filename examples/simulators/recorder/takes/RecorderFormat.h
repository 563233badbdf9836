#pragma once

#include <QByteArray>

#include <span>

/// A form in which a recorder hands out a take.
struct RecorderFormat
{
    enum class Kind
    {
        Uncompressed, ///< Always there.
        Compressed,   ///< There where the take lists it.
        Metadata,     ///< What is known of the take, no sound.
    };

    const char *code;
    const char *extension;
    const char *contentType;
    Kind kind;
    int container; ///< libsndfile's major format; 0 where the program ffmpeg makes it, or nobody needs to.

    static std::span<const RecorderFormat> all();

    /// Null for an unknown code. Case counts.
    static const RecorderFormat *withCode(const QByteArray &code);
};
