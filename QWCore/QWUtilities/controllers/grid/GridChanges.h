#pragma once

#include <atomic>

namespace qw
{

/// Lets several threads send a state that each of them changes, without a lock, so that the newest is sent last: who
/// finds that it has changed while sending sends again.
class GridChanges
{
public:
    unsigned count() const { return m_count; }

    /// To be called after each change; how many there have been.
    unsigned note() { return ++m_count; }

    template <class Send>
    void send(const Send &send) const
    {
        unsigned sent = 0;
        do {
            sent = m_count;
            send();
        } while (sent != m_count);
    }

private:
    std::atomic<unsigned> m_count = 0;
};

} // namespace qw
