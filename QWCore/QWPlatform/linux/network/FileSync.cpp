#include "FileSync.h"

#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <thread>
#include <unistd.h>

namespace platform
{

struct FileSync::Asker
{
    std::mutex mutex; ///< Guards the object.
    FileSync *object = nullptr;
};

namespace
{
/// Disks that know no syncing have done what they can.
std::error_code sync(int descriptor)
{
    const bool isSynced = ::fdatasync(descriptor) == 0 || errno == EINVAL || errno == EROFS;
    return isSynced ? std::error_code() : std::error_code(errno, std::generic_category());
}
} // namespace

FileSync::FileSync() = default;

FileSync::~FileSync()
{
    if (!m_asker)
        return;
    const std::lock_guard lock(m_asker->mutex);
    m_asker->object = nullptr;
}

void FileSync::start(int descriptor)
{
    m_asker = std::make_shared<Asker>();
    m_asker->object = this;
    const int own = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    const auto run = [asker = m_asker, descriptor, own] {
        const std::error_code error = sync(own >= 0 ? own : descriptor);
        if (own >= 0)
            ::close(own);
        const std::lock_guard lock(asker->mutex);
        if (FileSync *const object = asker->object)
            QMetaObject::invokeMethod(
                object, [object, error] { Q_EMIT object->ended(error); }, Qt::QueuedConnection);
    };
    if (own < 0)
        return run(); // the file itself may be closed any time: better to wait than to lose it
    try {
        std::thread(run).detach();
    } catch (const std::system_error &) {
        run(); // no thread is to be had: the same
    }
}

} // namespace platform
