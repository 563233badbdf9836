#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace platform
{

/// Whether a window is open when the application ends: Qt closes all windows on the way there, before aboutToQuit().
class QWPLATFORM_SHARED_EXPORT WindowOpenState : public QObject
{
public:
    /// Made while the application object is there; @p window is not owned.
    explicit WindowOpenState(QWidget &window);

    /// True while it shows, and while the application quits if it showed when that began.
    bool isOpen() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QWidget> m_window;
    bool m_wasOpenAtQuit = false; ///< Until the window shows again; a quit may be called off.
};

} // namespace platform
