#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QString>
#include <QStringList>

namespace platform
{

/// A question or notice for the user, texts already localized. A value that hosts fill in, so it stays open.
struct Alert
{
    QString messageText;     ///< One sentence, shown large.
    QString informativeText; ///< May be empty.
    QStringList buttons;     ///< The first is the default one; none stands for one "OK".
};

/// Shows alerts. Main thread.
class QWPLATFORM_EXPORT Alerts
{
public:
    virtual ~Alerts();

    /// Shows @p alert modally, above the splash screen too, and returns the index of the button chosen; Return chooses
    /// the one with the focus, at first the default one. Escape and closing choose the button named "Cancel", in the
    /// user's language or in English, or the only one; where there is neither, nothing.
    virtual int run(const Alert &alert) = 0;
};

/// Shows @p alert through the current System; returns as Alerts::run(). Main thread.
QWPLATFORM_EXPORT int runAlert(const Alert &alert);

} // namespace platform
