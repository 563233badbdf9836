#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QString>

namespace platform
{

/// @p name for 1, and beyond that with the number ahead of its extension: "Take 1 2.wav". Shortened, in whole
/// characters and ahead of both, where it would take more than @p mostBytes of UTF-8. Any thread.
QWPLATFORM_TEST_EXPORT QString numberedName(const QString &name, qint64 number, qsizetype mostBytes);

} // namespace platform
