#pragma once

#include "QWPlatform/foundation/files/FileDescriptor.h"
#include "ServiceEvent.h"

#include <QWPlatform/qwplatform_private.h>

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace platform
{

/// What the main thread and the thread that speaks to the daemon say to one another. Both hold it, and neither waits
/// for the other. Without Qt, so that tools that look for races see all of it.
class QWPLATFORM_SHARED_EXPORT ServiceExchange
{
public:
    /// @p wake is called on the daemon's thread when events wait and none did before, never after close(). It must not
    /// come back here.
    explicit ServiceExchange(std::function<void()> wake);
    ~ServiceExchange();

    // The main thread's end.
    void send(ServiceCommand command);
    std::vector<ServiceEvent> takeEvents(); ///< In their order.
    void close();                           ///< The daemon's thread is to end; nothing that it says is heard.

    // The daemon's end.
    /// Readable while commands wait, or when it was closed; -1 when the process may open no more files.
    int descriptor() const { return m_signal.number(); }
    /// Those that wait, in their order; none once it was closed.
    std::optional<std::vector<ServiceCommand>> takeCommands();
    void publish(std::vector<ServiceEvent> events);
    void publishFailure(std::string reason);

private:
    const FileDescriptor m_signal;
    std::mutex m_mutex; ///< Guards what follows.
    std::function<void()> m_wake;
    std::vector<ServiceCommand> m_commands;
    std::vector<ServiceEvent> m_events;
    bool m_isClosed = false;
};

} // namespace platform
