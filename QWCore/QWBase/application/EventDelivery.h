#pragma once

#include <vector>

class QEvent;
class QKeyEvent;
class QObject;
class QString;
class QWApplication;

namespace qw
{

/// How the application object delivers events: past the categories, keys to the menus, and no exception any further.
/// Any thread that delivers events.
class EventDelivery
{
public:
    explicit EventDelivery(QWApplication &application);

    /// Takes the hooks of the registered categories, once.
    void addCategories();

    /// What QWApplication::notify() does and returns.
    bool deliver(QObject *receiver, QEvent *event);

    /// Within a catch block, in the thread whose event it was.
    void exceptionLeft() noexcept;

private:
    using SendEvent = bool (*)(QWApplication &, QObject *, QEvent *);

    bool _isTaken(QObject *receiver, QEvent *event) const;
    bool _notify(QObject *receiver, QEvent *event);
    bool _notifyKeyPress(QObject *receiver, QKeyEvent *event);
    bool _performKeyEquivalent(QKeyEvent &event);
    void _reportException(const QString &reason) noexcept;

    QWApplication &m_application;
    std::vector<SendEvent> m_sendEvent; ///< Hooks of the categories that have one; fixed from the constructor on.
    int m_keyPressLevel = -1;           ///< Level of the event loop that delivers a key press; -1: none does.
};

} // namespace qw
