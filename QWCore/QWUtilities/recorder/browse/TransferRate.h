#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QtGlobal>

#include <deque>
#include <optional>

namespace qw
{

/// How quickly bytes have come in the last few seconds. Times are those of a steady clock, in nanoseconds.
class QWUTILITIES_TEST_EXPORT TransferRate
{
public:
    /// Bytes received by then, of one and the same transfer.
    void add(qint64 now, quint64 received);

    /// Bytes a second; none before half a second has passed.
    std::optional<double> bytesPerSecond() const;

private:
    struct Sample
    {
        qint64 time;
        quint64 received;
    };

    std::deque<Sample> m_samples; ///< Oldest first.
};

} // namespace qw
