#include "SoundWork.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/BackgroundWork.h>

#include <QPointer>

#include <exception>
#include <new>

namespace demo
{

namespace
{
constexpr int pollMilliseconds = 40;

WorkResult guarded(const SoundWork::Work &work, WorkProgress &progress)
{
    WorkResult result;
    try {
        result = work(progress);
    } catch (const std::bad_alloc &) {
        result.error = QStringLiteral("There is not enough memory for it.");
    } catch (const std::exception &exception) {
        result.error = QString::fromUtf8(exception.what());
    }
    result.cancelled = progress.isCancelled();
    return result;
}
} // namespace

SoundWork::SoundWork(QObject *parent)
    : QObject(parent)
{
    m_poll.setInterval(pollMilliseconds);
    connect(&m_poll, &QTimer::timeout, this, [this] { Q_EMIT fractionChanged(m_progress->fraction()); });
}

SoundWork::~SoundWork()
{
    cancel();
}

void SoundWork::start(Work work, Done done)
{
    Q_ASSERT(!isRunning());
    m_progress = std::make_shared<WorkProgress>();
    m_poll.start();
    Q_EMIT started();
    const auto deliver = [self = QPointer(this), done = std::move(done)](const WorkResult &result) {
        if (self)
            self->_finish(result, done);
    };
    const bool runs =
        platform::System::current().backgroundWork().start([work = std::move(work), deliver, progress = m_progress] {
            return [deliver, result = guarded(work, *progress)] { deliver(result); };
        });
    if (runs)
        return;
    WorkResult refusal;
    refusal.error = QStringLiteral("There is no room for more work.");
    QMetaObject::invokeMethod(
        this, [deliver, refusal] { deliver(refusal); }, Qt::QueuedConnection);
}

void SoundWork::_finish(const WorkResult &result, const Done &done)
{
    m_poll.stop();
    m_progress.reset();
    Q_EMIT ended();
    done(result);
}

void SoundWork::cancel()
{
    if (m_progress)
        m_progress->cancel();
}

} // namespace demo
