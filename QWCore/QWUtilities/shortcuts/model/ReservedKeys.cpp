#include "ReservedKeys.h"

#include <QWPlatform/appkit/KeyEvent.h>

#include <algorithm>
#include <array>

namespace qw
{

namespace
{
struct ReservedKey
{
    char16_t character;
    quint32 modifiers;
};

constexpr quint32 shift = platform::KeyEvent::Shift;
constexpr quint32 control = platform::KeyEvent::Control;
constexpr quint32 option = platform::KeyEvent::Option;
constexpr quint32 command = platform::KeyEvent::Command;

/// Reserved with Command, whatever else is held.
constexpr char16_t alwaysWithCommand = ' ';

/// Each with exactly these modifiers. A list as it is known, not a rule: its irregular members are intended.
constexpr std::array reservedKeys{
    ReservedKey{u'\t', shift},
    ReservedKey{u'\t', control},
    ReservedKey{u'\t', control | shift},
    ReservedKey{u'\t', command},
    ReservedKey{u'\t', command | shift},
    ReservedKey{0x001b, 0}, // Escape
    ReservedKey{0x001b, option | command},
    ReservedKey{u'$', command},
    ReservedKey{0xf704, control}, // F1
    ReservedKey{0xf705, control},
    ReservedKey{0xf706, control},
    ReservedKey{0xf708, control}, // F5
    ReservedKey{0xf70a, control}, // F7
    ReservedKey{0xf707, control}, // F4
    ReservedKey{0xf707, control | shift},
    ReservedKey{0xf709, control}, // F6
    ReservedKey{0xf709, control | shift},
    ReservedKey{u'`', command},
    ReservedKey{u'`', shift | command},
    ReservedKey{u'-', command},
    ReservedKey{u'-', option | command},
    ReservedKey{u'.', control | option | command},
    ReservedKey{u',', control | option | command},
    ReservedKey{u'/', option | command},
    ReservedKey{u'=', shift | command},
    ReservedKey{u'=', option | command},
    ReservedKey{u'3', shift | command},
    ReservedKey{u'3', control | shift | command},
    ReservedKey{u'4', shift | command},
    ReservedKey{u'4', control | shift | command},
    ReservedKey{u'8', option | command},
    ReservedKey{u'8', control | option | command},
    ReservedKey{u'd', option | command},
    ReservedKey{u'q', shift | command},
    ReservedKey{u'q', option | shift | command},
    ReservedKey{u'q', control | option | shift | command},
    ReservedKey{u'h', command},
    ReservedKey{u'h', option | command},
};
} // namespace

bool isReservedKey(char16_t character, quint32 modifiers)
{
    if (character == alwaysWithCommand && (modifiers & command))
        return true;
    return std::any_of(reservedKeys.begin(), reservedKeys.end(), [=](const ReservedKey &reserved) {
        return reserved.character == character && reserved.modifiers == modifiers;
    });
}

} // namespace qw
