#pragma once

class QString;
class QWidget;

namespace qw
{

/// Tells @p text to a screen reader: as the new name of @p widget, which is spoken when the widget has the focus, and
/// as an alert.
void announce(QWidget &widget, const QString &text);

} // namespace qw
