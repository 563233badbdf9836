#include "ServiceExchange.h"

#include <iterator>
#include <sys/eventfd.h>
#include <utility>

namespace platform
{

ServiceExchange::ServiceExchange(std::function<void()> wake)
    : m_signal(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_wake(std::move(wake))
{
}

ServiceExchange::~ServiceExchange() = default;

void ServiceExchange::send(ServiceCommand command)
{
    const std::lock_guard lock(m_mutex);
    m_commands.push_back(std::move(command));
    ::eventfd_write(m_signal.number(), 1);
}

std::vector<ServiceEvent> ServiceExchange::takeEvents()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_events, {});
}

void ServiceExchange::close()
{
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    m_wake = nullptr;
    m_events.clear();
    ::eventfd_write(m_signal.number(), 1);
}

std::optional<std::vector<ServiceCommand>> ServiceExchange::takeCommands()
{
    const std::lock_guard lock(m_mutex);
    if (m_isClosed)
        return std::nullopt;
    eventfd_t count = 0;
    ::eventfd_read(m_signal.number(), &count);
    return std::exchange(m_commands, {});
}

void ServiceExchange::publish(std::vector<ServiceEvent> events)
{
    const std::lock_guard lock(m_mutex);
    if (m_isClosed || events.empty())
        return;
    const bool isFirst = m_events.empty();
    std::move(events.begin(), events.end(), std::back_inserter(m_events));
    if (isFirst)
        m_wake();
}

void ServiceExchange::publishFailure(std::string reason)
{
    ServiceEvent failure;
    failure.reason = std::move(reason);
    publish({std::move(failure)});
}

} // namespace platform
