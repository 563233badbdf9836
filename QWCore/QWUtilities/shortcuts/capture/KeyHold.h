#pragma once

#include <QtGlobal>

#include <optional>

namespace qw
{

/// How long a key has been held down, by the System's clock. A window system that repeats a held key may report each
/// repeat as let go and pressed again, so that a key counts as let go only when it stays up for a moment.
class KeyHold
{
public:
    static constexpr qint64 longEnough = 1'000'000'000; ///< Nanoseconds.

    /// A key went down; one that is held already goes on being held.
    void press(char16_t character, quint32 modifiers);
    bool goesOnWith(char16_t character, quint32 modifiers) const; ///< Such a press is one of the key that is held.
    void release();
    void stop();

    bool isRunning() const { return m_start.has_value(); } ///< Also shortly after the key was let go.
    bool isReleased() const;
    char16_t character() const { return m_character; } ///< Of the key that is, or was, held

    /// 0 to 1.
    double progress() const;

private:
    static qint64 _now();

    char16_t m_character = 0;
    quint32 m_modifiers = 0;
    std::optional<qint64> m_start;
    std::optional<qint64> m_release;
};

} // namespace qw
