#pragma once

#include <QWUtilities/controllers/QWMonomeRemote.h>

#include <QList>
#include <QString>

#include <mutex>
#include <thread>

/// Notes what a grid's observers are told. Any thread.
class GridListener : public QWMonomeRemoteObserver
{
public:
    void monomeRemoteConnected(QWMonomeRemote &) override { _note("connected"); }
    void monomeRemoteRemoved(QWMonomeRemote &) override { _note("removed"); }

    void monomeRemoteButtonDownAtPosition(QWMonomeRemote &, QWGridPosition position) override
    {
        _note("down", position);
    }

    void monomeRemoteButtonUpAtPosition(QWMonomeRemote &, QWGridPosition position) override { _note("up", position); }

    /// "connected", "down 3 5", … in order, since the last call.
    QList<QString> take()
    {
        const std::lock_guard guard(m_mutex);
        return std::exchange(m_heard, {});
    }

    qsizetype count() const
    {
        const std::lock_guard guard(m_mutex);
        return m_heard.size();
    }

    /// Where the last call came from.
    std::thread::id lastThread() const
    {
        const std::lock_guard guard(m_mutex);
        return m_lastThread;
    }

private:
    void _note(const QString &what)
    {
        const std::lock_guard guard(m_mutex);
        m_heard.append(what);
        m_lastThread = std::this_thread::get_id();
    }

    void _note(const QString &what, QWGridPosition position)
    {
        _note(QString("%1 %2 %3").arg(what).arg(position.x).arg(position.y));
    }

    mutable std::mutex m_mutex; ///< Guards the rest.
    QList<QString> m_heard;
    std::thread::id m_lastThread;
};
