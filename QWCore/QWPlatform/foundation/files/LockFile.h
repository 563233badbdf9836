#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QLockFile>
#include <QString>

#include <atomic>
#include <chrono>

namespace platform
{

/// A lock among programs that write the same file, for the moment that this takes. One that nobody can have written
/// (a file without content, as a crash or a full disk leaves it) is taken over after a second, and whatever else stands
/// in its place is moved aside. Any thread, one at a time.
class QWPLATFORM_SHARED_EXPORT LockFile
{
public:
    /// How long to wait for others.
    struct Patience
    {
        std::chrono::milliseconds withOne;    ///< While one and the same program holds the lock: it may hang.
        std::chrono::milliseconds altogether; ///< While it goes from hand to hand.
    };

    /// What a main thread can wait.
    static constexpr Patience brief{std::chrono::milliseconds(400), std::chrono::milliseconds(2000)};

    /// @p path is the real path of the lock.
    explicit LockFile(const QString &path);

    /// Takes the lock until the object goes. False when others would not let go of it, or @p hurry became true while
    /// they held it, or when there can be no lock.
    bool acquire(Patience patience, const std::atomic<bool> *hurry = nullptr);

    /// Why acquire() failed: true when others have the lock, false when there can be none.
    bool isHeldByOthers() const { return m_lock.error() == QLockFile::LockFailedError; }

private:
    bool _clearPlace() const;
    void _judgeHolder();

    QString m_path;
    QLockFile m_lock;
};

/// Moves what is at @p path to a free name beside it, which begins with its own; the new path, "" when it cannot be.
QString movedAside(const QString &path);

} // namespace platform
