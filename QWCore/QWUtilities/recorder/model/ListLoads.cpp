#include "ListLoads.h"

#include "QWVeskDevice.h"

namespace qw
{

ListLoads::ListLoads()
    : m_room(std::make_shared<std::atomic<size_t>>(mostTakes))
{
}

ListLoads::~ListLoads() = default;

void ListLoads::add(const std::shared_ptr<QWVeskDevice> &device)
{
    m_waiting.push_back(device);
    _startNext();
}

void ListLoads::didEnd()
{
    --m_running;
    _startNext();
}

void ListLoads::end()
{
    m_hasEnded = true;
    m_waiting.clear();
}

void ListLoads::_startNext()
{
    while (!m_waiting.empty() && m_running < mostAtOnce && !m_hasEnded) {
        const auto device = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (device->isStopped())
            continue;
        ++m_running;
        device->startLoading();
    }
}

std::shared_ptr<const void> ListLoads::claim(size_t takes)
{
    size_t room = *m_room;
    do {
        if (takes > room)
            return nullptr;
    } while (!m_room->compare_exchange_weak(room, room - takes));
    return {m_room.get(), [room = m_room, takes](const void *) { *room += takes; }};
}

} // namespace qw
