#include "TransferRate.h"

namespace qw
{

namespace
{
constexpr qint64 second = 1'000'000'000;
constexpr qint64 rateWindow = 5 * second;
constexpr qint64 rateBegins = second / 2;
constexpr qint64 sampleDistance = second / 10;
} // namespace

void TransferRate::add(qint64 now, quint64 received)
{
    if (!m_samples.empty() && received < m_samples.back().received)
        m_samples.clear(); // begun anew
    // The newest takes the place of the one before until that is some way behind the one before it.
    if (m_samples.size() > 1 && m_samples.back().time - m_samples[m_samples.size() - 2].time < sampleDistance)
        m_samples.pop_back();
    m_samples.push_back({now, received});
    while (m_samples.size() > 2 && m_samples[1].time <= now - rateWindow)
        m_samples.pop_front();
}

std::optional<double> TransferRate::bytesPerSecond() const
{
    if (m_samples.empty() || m_samples.back().time - m_samples.front().time < rateBegins)
        return std::nullopt;
    const Sample &oldest = m_samples.front();
    const Sample &newest = m_samples.back();
    return static_cast<double>(newest.received - oldest.received) * second /
           static_cast<double>(newest.time - oldest.time);
}

} // namespace qw
