#include "GridReader.h"

namespace qw
{

GridReader::GridReader(std::function<void(GridReader &)> body)
    : m_thread([this, body = std::move(body)] {
        body(*this);
        const std::lock_guard guard(m_mutex);
        m_finished = true;
        m_end.notify_all();
    })
{
}

GridReader::~GridReader()
{
    end();
    m_thread.join();
}

void GridReader::end()
{
    cancel();
    m_stop.request_stop();
}

bool GridReader::waitForEnd(std::chrono::milliseconds time)
{
    std::unique_lock lock(m_mutex);
    return m_end.wait_for(lock, time, [this] { return hasFinished(); });
}

} // namespace qw
