#pragma once

#include <QStringList>
#include <qnamespace.h>

class QColor;
class QFont;
class QPainter;
class QRect;
class QSize;
class QWShortcutKey;

namespace qw
{

/// Keys drawn as the tops of keys, one for each modifier and one for the key itself.
namespace Keycaps
{

/// Left to right; empty for a clear key.
QStringList textsOf(const QWShortcutKey &key);

/// The key in the desktop's own words ("Ctrl+Shift+S"), which are easier to say and to find on a keyboard than glyphs;
/// "" for a clear key.
QString spokenText(const QWShortcutKey &key);

QSize size(const QStringList &texts, const QFont &font);

/// In @p ink and shades of it, within @p room.
void paint(QPainter &painter, const QRect &room, Qt::Alignment alignment, const QStringList &texts, const QFont &font,
           const QColor &ink);

} // namespace Keycaps

} // namespace qw
