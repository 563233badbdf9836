#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QString>

namespace platform
{

/// The text that a menu shows for @p title: "&" doubled, no line breaks, shortened in the middle above 120 characters.
QWPLATFORM_TEST_EXPORT QString shownTitle(const QString &title);

} // namespace platform
