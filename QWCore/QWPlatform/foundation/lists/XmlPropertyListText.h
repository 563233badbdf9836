#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QByteArrayView>
#include <QString>

namespace platform
{

/// Text in XML property lists. XML cannot hold all characters, not even as references, but names and paths may: those
/// are written as a private character, U+E01B, and their code in four digits, so that strict readers take the list and
/// ours finds what was written. The private character itself is written likewise. Any thread.
namespace XmlPropertyListText
{

constexpr char16_t mark = 0xE01B;

/// Whether a text with @p c cannot stand as it is. A null character never can; nobody writes it.
constexpr bool isHeldBack(char16_t c)
{
    return (c < 0x20 && c != 0 && c != u'\t' && c != u'\n' && c != u'\r') || c == 0xFFFE || c == 0xFFFF || c == mark;
}

/// @p text as it is to be written, before the escapes of XML itself.
QWPLATFORM_SHARED_EXPORT QString encoded(const QString &text);

/// What was written as @p utf8, the escapes of XML itself resolved.
QWPLATFORM_SHARED_EXPORT QString decoded(QByteArrayView utf8);

} // namespace XmlPropertyListText

} // namespace platform
