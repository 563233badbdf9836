#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QStringList>

#include <optional>

namespace platform
{

/// A question or notice for the user, texts already localized.
struct Alert
{
    QString messageText;
    QString informativeText; ///< May be empty.
    QStringList buttons;     ///< The first is the default one; none stands for one "OK".
};

/// Shows alerts. Main thread.
class QWPLATFORM_EXPORT Alerts
{
public:
    virtual ~Alerts();

    /// Shows @p alert modally, above the splash screen too, and returns the index of the button chosen; Return chooses
    /// the one with the focus, at first the default one, Escape and closing escapeButton().
    virtual int run(const Alert &alert) = 0;
};

/// The button named "Cancel", in the user's language or in English, or the only one. None: the user has to choose.
QWPLATFORM_EXPORT std::optional<int> escapeButton(const Alert &alert);

/// Shows @p alert through the current System.
QWPLATFORM_EXPORT int runAlert(const Alert &alert);

} // namespace platform
