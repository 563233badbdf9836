#include "KeyPressTracker.h"

#include <QKeyEvent>

namespace qw
{

KeyPressTracker::Sight KeyPressTracker::see(const QObject &receiver, const QKeyEvent &event)
{
    if (event.type() == QEvent::KeyRelease)
        return _seeRelease(receiver, event);
    if (m_type == QEvent::KeyRelease || !_isSameKey(event))
        return Sight::First;
    return event.type() == QEvent::ShortcutOverride ? _seeOverride(receiver) : _seePress(receiver, event);
}

void KeyPressTracker::judged(const QObject &receiver, const QKeyEvent &event, bool consumed)
{
    m_type = event.type();
    m_key = event.key();
    m_timestamp = event.timestamp();
    m_receiver = &receiver;
    m_pressReceiver = event.type() == QEvent::KeyPress ? &receiver : nullptr;
    m_isConsumed = consumed;
    if (consumed && event.type() == QEvent::KeyPress)
        m_type = 0; // nothing of it comes by any more
}

/// The window asks first and passes the question on to its focus widget; asked again, it is another press.
KeyPressTracker::Sight KeyPressTracker::_seeOverride(const QObject &receiver)
{
    if (m_type == QEvent::KeyPress) {
        m_type = QEvent::ShortcutOverride; // inside the press that was judged; the next question is another press
        return Sight::Declined;
    }
    const bool isPassedOn = !m_isConsumed && !m_pressReceiver && &receiver != m_receiver;
    return isPassedOn ? Sight::Declined : Sight::First;
}

KeyPressTracker::Sight KeyPressTracker::_seePress(const QObject &receiver, const QKeyEvent &event)
{
    if (m_isConsumed) {
        m_type = 0;
        return Sight::Consumed;
    }
    // Without a time of its own, a press that comes to the same widget again is another one.
    if (&receiver == m_pressReceiver && event.timestamp() == 0)
        return Sight::First;
    if (!m_pressReceiver)
        m_pressReceiver = &receiver;
    return Sight::Declined;
}

KeyPressTracker::Sight KeyPressTracker::_seeRelease(const QObject &receiver, const QKeyEvent &event)
{
    const bool isPassedOn = m_type == QEvent::KeyRelease && _isSameKey(event) && &receiver != m_receiver;
    if (!isPassedOn)
        m_type = 0;
    return isPassedOn ? Sight::Declined : Sight::First;
}

bool KeyPressTracker::_isSameKey(const QKeyEvent &event) const
{
    return m_type != 0 && m_key == event.key() && m_timestamp == event.timestamp();
}

} // namespace qw
