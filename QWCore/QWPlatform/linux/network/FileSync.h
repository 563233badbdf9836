#pragma once

#include <QObject>

#include <memory>
#include <system_error>

namespace platform
{

/// Brings a file's bytes onto its disk, on a thread that nobody waits for: a slow disk takes as long as it likes, and
/// nothing can interrupt it.
class FileSync : public QObject
{
    Q_OBJECT

public:
    FileSync();
    ~FileSync() override; ///< Nobody hears of the end any more.

    /// Of the open file; it may be closed meanwhile. One at a time.
    void start(int descriptor);

Q_SIGNALS:
    void ended(const std::error_code &error); ///< From the event loop of this object's thread.

private:
    struct Asker;
    std::shared_ptr<Asker> m_asker; ///< Shared with the thread; null while none is started.
};

} // namespace platform
