#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QIcon>

namespace platform
{

/// An icon drawn in the text colour of the application's palette at the moment of painting (disabled and selected ones
/// in theirs), sharp at every scale. @p path is an SVG in `currentColor`, or a PNG whose opaque parts are the shape,
/// with "<name>@2x.png" beside it for finer screens. Null when it cannot be read.
QWPLATFORM_EXPORT QIcon tintedIcon(const QString &path);

/// The same from the text of an SVG.
QWPLATFORM_EXPORT QIcon tintedIconFromSvg(const QByteArray &svg);

} // namespace platform
