#include "ShortcutGlyphs.h"

#include <QWPlatform/appkit/KeyEvent.h>
#include <QWPlatform/foundation/Localization.h>

#include <algorithm>
#include <array>

namespace qw
{

using platform::KeyEvent;

namespace
{
struct ModifierGlyph
{
    quint32 modifier;
    char16_t glyph;
};

/// In the order in which they are shown.
constexpr std::array modifiersShown{
    ModifierGlyph{KeyEvent::Control, u'⌃'},
    ModifierGlyph{KeyEvent::Option, u'⌥'},
    ModifierGlyph{KeyEvent::Shift, u'⇧'},
    ModifierGlyph{KeyEvent::Command, u'⌘'},
};

struct KeyGlyph
{
    char16_t character;
    char16_t glyph;
};

constexpr std::array keyGlyphs{
    KeyGlyph{0xf700, u'↑'}, KeyGlyph{0xf701, u'↓'}, KeyGlyph{0xf702, u'←'},
    KeyGlyph{0xf703, u'→'}, KeyGlyph{0xf728, u'⌦'}, // forward delete
    KeyGlyph{0xf729, u'⇱'},                         // home
    KeyGlyph{0xf72b, u'⇲'},                         // end
    KeyGlyph{0xf72c, u'⇞'},                         // page up
    KeyGlyph{0xf72d, u'⇟'},                         // page down
    KeyGlyph{0xf739, u'⌧'},                         // clear
    KeyGlyph{27, u'⎋'},                             // escape
    KeyGlyph{9, u'⇥'},                              // tab
    KeyGlyph{25, u'⇥'},                             // back-tab; the same glyph as tab is intended
    KeyGlyph{3, u'⌤'},                              // enter
    KeyGlyph{13, u'⏎'},                             // return
    KeyGlyph{127, u'⌫'},                            // delete
};

constexpr char16_t f1 = 0xf704;
constexpr char16_t f15 = 0xf712; ///< Keys above show their raw code point.

QString capital(char16_t character)
{
    return QChar(character).toUpper();
}
} // namespace

QString modifierGlyphs(quint32 modifiers)
{
    QString glyphs;
    for (const ModifierGlyph &shown : modifiersShown) {
        if (modifiers & shown.modifier)
            glyphs += QChar(shown.glyph);
    }
    return glyphs;
}

QString keyText(char16_t character, quint32 modifiers)
{
    if (character == ' ')
        return platform::localized("[space]");
    if (character >= f1 && character <= f15)
        return QString("F%1").arg(character - f1 + 1);
    const auto known = std::find_if(keyGlyphs.begin(), keyGlyphs.end(),
                                    [=](const KeyGlyph &shown) { return shown.character == character; });
    if (known != keyGlyphs.end())
        return QChar(known->glyph);
    return modifiers & KeyEvent::NumericPad ? '[' + capital(character) + ']' : capital(character);
}

} // namespace qw
