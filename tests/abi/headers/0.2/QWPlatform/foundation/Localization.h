#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QStringList>

namespace platform
{

/// The user's text for @p key: from the current System's main bundle, default table ("Localizable.strings"), else the
/// key itself. "%@" and "%d" stay in it and are filled afterwards with formatted().
QWPLATFORM_EXPORT QString localized(const QString &key);

/// @p format with its placeholders ("%@", "%d", "%C", positional "%1$@" too; "%%" is one percent sign) replaced by
/// @p arguments in order, each as it stands; placeholders without an argument stay.
QWPLATFORM_EXPORT QString formatted(const QString &format, const QStringList &arguments);

} // namespace platform
