#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QPageLayout>

#include <functional>
#include <memory>

class QLocale;
class QPrinter;
class QWidget;

namespace platform
{

/// Page of @p locale's usual paper, A4 or Letter, upright, with room for a punch.
QWPLATFORM_SHARED_EXPORT QPageLayout webPageLayout(const QLocale &locale);

/// Asks for a printer in a sheet on the window of @p view and returns; @p print is called when the user chose one and
/// @p view still lives.
QWPLATFORM_SHARED_EXPORT void askForPrinter(QWidget &view,
                                            std::function<void(std::shared_ptr<QPrinter> printer)> print);

} // namespace platform
