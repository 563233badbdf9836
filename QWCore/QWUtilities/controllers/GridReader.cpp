#include "GridReader.h"

namespace qw
{

GridReader::GridReader(std::function<void(GridReader &)> body)
    : m_thread([this, body = std::move(body)] {
        body(*this);
        m_finished = true;
    })
{
}

GridReader::~GridReader()
{
    cancel();
    m_stop.request_stop();
    m_thread.join();
}

} // namespace qw
