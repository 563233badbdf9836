#include "EventDelivery.h"

#include "ApplicationCategories.h"
#include "QWBase/QWApplication.h"
#include "QWBase/QWApplicationLog.h"

#include <QWPlatform/appkit/events/PendingInput.h>
#include <QWPlatform/appkit/menus/MenuEvents.h>
#include <QWPlatform/appkit/menus/MenuKeys.h>
#include <QWPlatform/appkit/responders/FirstResponder.h>

#include <QKeyEvent>
#include <QScopeGuard>
#include <QThread>

#include <algorithm>
#include <cxxabi.h>
#include <utility>

namespace qw
{

namespace
{
QString textOfCurrentException()
{
    try {
        throw;
    } catch (const std::exception &exception) {
        return QString::fromLocal8Bit(exception.what());
    } catch (...) {
        const std::type_info *const type = abi::__cxa_current_exception_type();
        return type ? QString("exception of type %1").arg(type->name()) : QString("exception of unknown type");
    }
}
} // namespace

EventDelivery::EventDelivery(QWApplication &application)
    : m_application(application)
{
}

void EventDelivery::addCategories()
{
    for (const ApplicationCategory &category : registeredCategories()) {
        if (category.sendEvent)
            m_sendEvent.push_back(category.sendEvent);
        if (category.init)
            category.init(m_application);
    }
}

bool EventDelivery::deliver(QObject *receiver, QEvent *event)
{
    try {
        return platform::PendingInput::takes(receiver, event) || _isTaken(receiver, event) || _notify(receiver, event);
    } catch (const abi::__forced_unwind &) {
        throw; // a thread that is being cancelled
    } catch (...) {
        exceptionLeft();
        return true;
    }
}

bool EventDelivery::_isTaken(QObject *receiver, QEvent *event) const
{
    return std::any_of(m_sendEvent.begin(), m_sendEvent.end(),
                       [&](SendEvent isTaken) { return isTaken(m_application, receiver, event); });
}

bool EventDelivery::_notify(QObject *receiver, QEvent *event)
{
    if (!receiver->isWidgetType())
        return m_application.QApplication::notify(receiver, event);
    if (platform::handleMenuEvent(*receiver, *event))
        return true;
    return event->type() == QEvent::KeyPress ? _notifyKeyPress(receiver, static_cast<QKeyEvent *>(event))
                                             : m_application.QApplication::notify(receiver, event);
}

/// A key press that no widget takes, or that a text would take by mistake, is tried as a key equivalent of the menus,
/// once: widgets hand keys on to other widgets, while a dialog opened by a key runs an event loop of its own and gets
/// keys of its own.
bool EventDelivery::_notifyKeyPress(QObject *receiver, QKeyEvent *event)
{
    const int level = QThread::currentThread()->loopLevel();
    if (level == m_keyPressLevel)
        return m_application.QApplication::notify(receiver, event);
    const int outer = std::exchange(m_keyPressLevel, level);
    const auto leave = qScopeGuard([&] { m_keyPressLevel = outer; });
    if (platform::isTakenByMistake(*event) && _performKeyEquivalent(*event))
        return true;
    const bool handled = m_application.QApplication::notify(receiver, event);
    return (!event->isAccepted() && _performKeyEquivalent(*event)) || handled || event->isAccepted();
}

bool EventDelivery::_performKeyEquivalent(QKeyEvent &event)
{
    if (QApplication::activePopupWidget() || !platform::performKeyEquivalent(event))
        return false;
    event.accept();
    return true;
}

void EventDelivery::exceptionLeft() noexcept
{
    try {
        const QString reason = textOfCurrentException();
        if (QThread::currentThread() == m_application.thread())
            _reportException(reason);
        else
            QMetaObject::invokeMethod(
                &m_application, [this, reason] { _reportException(reason); }, Qt::QueuedConnection);
    } catch (...) {
        // Nothing more can be done: not even the text of the exception could be made.
    }
}

void EventDelivery::_reportException(const QString &reason) noexcept
{
    try {
        QWApplicationLog::sharedLog().errorMessage({"QWApplication"},
                                                   "An exception left the handling of an event: " + reason);
        for (const ApplicationCategory &category : registeredCategories())
            if (category.exceptionLeftEvent)
                category.exceptionLeftEvent(m_application, reason);
    } catch (...) {
        // Reporting an exception must not end the program.
    }
}

} // namespace qw
