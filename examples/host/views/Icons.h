#pragma once

#include <QIcon>

namespace demo
{

/// The line icon @p name from the host's resources, in the text colours of the moment; null when there is none.
QIcon lineIcon(const QString &name);

/// The same in one colour, @p size device-independent pixels square.
QPixmap linePicture(const QString &name, const QColor &colour, int size, qreal devicePixelRatio);

} // namespace demo
