#include "PendingInput.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScopeGuard>
#include <QWindow>

#include <algorithm>
#include <iterator>

namespace platform
{

namespace
{
/// What an event loop that excludes user input leaves for later.
constexpr QEvent::Type inputTypes[] = {QEvent::KeyPress,
                                       QEvent::KeyRelease,
                                       QEvent::ShortcutOverride,
                                       QEvent::MouseButtonPress,
                                       QEvent::MouseButtonRelease,
                                       QEvent::MouseMove,
                                       QEvent::MouseButtonDblClick,
                                       QEvent::Wheel,
                                       QEvent::TouchBegin,
                                       QEvent::TouchUpdate,
                                       QEvent::TouchEnd,
                                       QEvent::TouchCancel,
                                       QEvent::TabletPress,
                                       QEvent::TabletMove,
                                       QEvent::TabletRelease,
                                       QEvent::NativeGesture,
                                       QEvent::ContextMenu,
                                       QEvent::Enter,
                                       QEvent::Leave,
                                       QEvent::Close};

bool isInput(const QObject *receiver, const QEvent &event)
{
    return event.spontaneous() && receiver->isWindowType() &&
           std::find(std::begin(inputTypes), std::end(inputTypes), event.type()) != std::end(inputTypes);
}

bool isKey(const QEvent &event)
{
    return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
}

bool canComeFromProgram(const QEvent &event)
{
    return event.type() == QEvent::Close || event.type() == QEvent::Enter || event.type() == QEvent::Leave;
}

/// The window system's own events never reach a window behind a modal one, either.
bool isBlocked(const QObject *receiver)
{
    const QWindow *modal = QGuiApplication::modalWindow();
    return modal && modal != receiver;
}
} // namespace

PendingInput *PendingInput::s_current = nullptr;

PendingInput::PendingInput() = default;

PendingInput::~PendingInput()
{
    if (s_current == this)
        s_current = nullptr;
}

void PendingInput::look(const std::function<void(const QKeyEvent &)> &see)
{
    constexpr int passes = 2; // what the first one fetches from the window system, the second one hands out
    QCoreApplication *const application = QCoreApplication::instance();
    if (!application || m_see || (s_current && s_current != this))
        return;
    s_current = this;
    m_see = &see;
    application->installEventFilter(this); // the last one installed comes first
    const auto leave = qScopeGuard([&] {
        m_see = nullptr;
        if (m_taken.empty())
            _rest();
    });
    for (int pass = 0; pass < passes; ++pass) {
        QAbstractEventDispatcher::instance()
            ->wakeUp(); // or what an earlier loop without input left would not be looked at
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | QEventLoop::X11ExcludeTimers);
    }
    if (!m_taken.empty())
        m_timer.start(0, this);
}

bool PendingInput::takes(QObject *receiver, QEvent *event)
{
    return event->spontaneous() && s_current && s_current->_takes(receiver, event); // only the main thread has such
}

bool PendingInput::eventFilter(QObject *watched, QEvent *event)
{
    return _takes(watched, event);
}

/// While something waits to be given back, newer keys and clicks queue up behind it. What a program can cause by
/// itself, as by closing a window, is then left alone.
bool PendingInput::_takes(QObject *receiver, QEvent *event)
{
    const bool isTaken = isInput(receiver, *event) && (m_see || (!m_taken.empty() && !canComeFromProgram(*event)));
    if (isTaken)
        _take(receiver, event);
    return isTaken;
}

/// A ShortcutOverride is only Qt's question that precedes a press; Qt asks again when the press is given back.
void PendingInput::_take(QObject *receiver, QEvent *event)
{
    event->setAccepted(event->type() != QEvent::Close); // not closed yet
    if (event->type() == QEvent::ShortcutOverride)
        return;
    if (m_see && isKey(*event))
        (*m_see)(static_cast<const QKeyEvent &>(*event));
    m_taken.push_back({receiver, std::unique_ptr<QEvent>(event->clone())});
}

void PendingInput::timerEvent(QTimerEvent *)
{
    _giveBack();
}

/// One by one, since any of them may open a window with an event loop of its own, in which the others are due. The
/// timer runs until all are given back.
void PendingInput::_giveBack()
{
    while (!m_taken.empty()) {
        const Taken next = std::move(m_taken.front());
        m_taken.pop_front();
        m_timer.start(0, this); // anew: one that is being handled does not come again in an inner loop
        if (next.receiver && !isBlocked(next.receiver))
            QCoreApplication::sendEvent(next.receiver, next.event.get());
    }
    m_timer.stop();
    if (!m_see)
        _rest();
}

void PendingInput::_rest()
{
    s_current = nullptr;
    QCoreApplication::instance()->removeEventFilter(this);
}

} // namespace platform
