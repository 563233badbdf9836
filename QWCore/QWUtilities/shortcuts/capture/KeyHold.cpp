#include "KeyHold.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Clock.h>

#include <algorithm>

namespace qw
{

namespace
{
constexpr qint64 staysUp = 30'000'000; ///< Nanoseconds; nobody lets go and presses again within it.
}

void KeyHold::press(char16_t character, quint32 modifiers)
{
    const bool goesOn = goesOnWith(character, modifiers);
    m_release.reset();
    if (goesOn)
        return;
    m_character = character;
    m_modifiers = modifiers;
    m_start = _now();
}

bool KeyHold::goesOnWith(char16_t character, quint32 modifiers) const
{
    return isRunning() && !isReleased() && m_character == character && m_modifiers == modifiers;
}

void KeyHold::release()
{
    if (isRunning() && !m_release)
        m_release = _now();
}

void KeyHold::stop()
{
    m_start.reset();
    m_release.reset();
}

bool KeyHold::isReleased() const
{
    return m_release && _now() - *m_release >= staysUp;
}

double KeyHold::progress() const
{
    if (!m_start)
        return 0;
    const qint64 end = m_release.value_or(_now());
    return std::clamp(double(end - *m_start) / longEnough, 0.0, 1.0);
}

qint64 KeyHold::_now()
{
    return platform::System::current().clock().monotonicNanoseconds();
}

} // namespace qw
