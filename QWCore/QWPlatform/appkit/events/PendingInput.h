#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QBasicTimer>
#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>
#include <memory>

class QEvent;
class QKeyEvent;

namespace platform
{

/// Looks at what the user does while the main thread is in the middle of its work, without letting any of it act: what
/// waits is taken before anybody gets it, and given back, in its order and ahead of what comes later, when the event
/// loop runs again. Main thread.
class QWPLATFORM_SHARED_EXPORT PendingInput : public QObject
{
public:
    PendingInput();
    ~PendingInput() override;

    /// Takes what waits, and tells @p see of each key event. Posted events are delivered, timers and sockets are not.
    void look(const std::function<void(const QKeyEvent &)> &see);

    /// For an application's notify(), ahead of all else: true when @p event was taken and reaches nobody now. Other
    /// applications are watched by a filter, which sees an event after their notify().
    static bool takes(QObject *receiver, QEvent *event);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    struct Taken
    {
        QPointer<QObject> receiver;
        std::unique_ptr<QEvent> event;
    };

    bool _takes(QObject *receiver, QEvent *event);
    void _take(QObject *receiver, QEvent *event);
    void _giveBack();
    void _rest();

    static PendingInput *s_current; ///< The one that looks or holds something.

    const std::function<void(const QKeyEvent &)> *m_see = nullptr; ///< While looking.
    std::deque<Taken> m_taken;
    QBasicTimer m_timer; ///< Gives back; runs while there is something. Timers rest while the main thread works.
};

} // namespace platform
