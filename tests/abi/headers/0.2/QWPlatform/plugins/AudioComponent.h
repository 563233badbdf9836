#pragma once

#include <QtGlobal>

namespace platform
{

/// The audio system's description of a component: three four-character codes (first character in the most significant
/// byte), flags and flags mask. A value that hosts copy, so it stays open.
struct AudioComponent
{
    quint32 type = 0;         ///< Kind: "aufx", "aumf", "aumu", "augn" and others.
    quint32 subtype = 0;      ///< Which one of its maker's of that kind.
    quint32 manufacturer = 0; ///< Its maker.
    quint32 flags = 0;        ///< As the component declares them.
    quint32 flagsMask = 0;    ///< Which of the flags count.

    /// True when all five are equal.
    bool operator==(const AudioComponent &) const = default;
};

/// The code that four characters stand for, as in fourCharCode("aufx").
constexpr quint32 fourCharCode(const char (&text)[5])
{
    quint32 code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

} // namespace platform
