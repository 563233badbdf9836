#pragma once

#include "../audio/Clip.h"
#include "../audio/WorkProgress.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

namespace demo
{

/// What a worker brings back.
struct WorkResult
{
    ClipPointer clip; ///< Null when there is none.
    QString vendor;   ///< Of the plug-in that made it.
    QString error;    ///< A sentence; "" when all went well.
    bool cancelled = false;
};

/// Runs one piece of work at a time on a thread of its own and tells how far it is. Main thread.
class SoundWork : public QObject
{
    Q_OBJECT

public:
    using Work = std::function<WorkResult(WorkProgress &progress)>;
    using Done = std::function<void(const WorkResult &result)>;

    explicit SoundWork(QObject *parent = nullptr);

    /// Cancels what runs; its result is dropped.
    ~SoundWork() override;

    bool isRunning() const { return m_progress != nullptr; }

    /// Only while nothing runs. @p done is called from the event loop, also when the work was cancelled.
    void start(Work work, Done done);
    void cancel();

Q_SIGNALS:
    void started();
    void fractionChanged(double fraction);
    void ended(); ///< Before @p done is called.

private:
    void _finish(const WorkResult &result, const Done &done);

    std::shared_ptr<WorkProgress> m_progress; ///< Null while nothing runs.
    QTimer m_poll;
};

} // namespace demo
