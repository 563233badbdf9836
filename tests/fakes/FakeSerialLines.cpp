#include "FakeSerialLines.h"

#include <algorithm>

platform::SerialLines::Opening FakeSerialLines::open(const QString &path)
{
    const std::lock_guard guard(m_mutex);
    m_opened.append(path);
    if (m_failures.contains(path))
        return m_failures.value(path);
    m_open[++m_last];
    return {.descriptor = m_last, .error = 0, .advice = {}};
}

std::ptrdiff_t FakeSerialLines::read(int descriptor, std::span<std::uint8_t> bytes)
{
    const std::lock_guard guard(m_mutex);
    ++m_reads[descriptor];
    const auto line = m_open.find(descriptor);
    if (line == m_open.end() || line->second.empty())
        return -1;
    const QByteArray next = line->second.front();
    line->second.pop_front();
    const auto count = std::min<std::ptrdiff_t>(next.size(), std::ssize(bytes));
    std::copy_n(next.begin(), count, bytes.begin());
    if (count < next.size())
        line->second.push_front(next.mid(count));
    return count;
}

std::ptrdiff_t FakeSerialLines::write(int descriptor, std::span<const std::uint8_t> bytes)
{
    if (const auto call = _takeCall())
        call();
    const std::lock_guard guard(m_mutex);
    m_writes.append({descriptor, QByteArray(reinterpret_cast<const char *>(bytes.data()), std::ssize(bytes))});
    return m_open.contains(descriptor) ? std::ssize(bytes) : -1;
}

void FakeSerialLines::drain(int descriptor)
{
    const std::lock_guard guard(m_mutex);
    m_drained.append(descriptor);
}

void FakeSerialLines::close(int descriptor)
{
    const std::lock_guard guard(m_mutex);
    m_closed.append(descriptor);
    m_open.erase(descriptor);
}

void FakeSerialLines::feed(int descriptor, const QByteArray &bytes)
{
    const std::lock_guard guard(m_mutex);
    m_open.at(descriptor).push_back(bytes);
}

void FakeSerialLines::atNextWrite(std::function<void()> call)
{
    const std::lock_guard guard(m_mutex);
    m_atNextWrite = std::move(call);
}

void FakeSerialLines::failToOpen(const QString &path, int error, const QString &advice)
{
    const std::lock_guard guard(m_mutex);
    m_failures.remove(path);
    if (error)
        m_failures.insert(path, {.descriptor = 0, .error = error, .advice = advice});
}

int FakeSerialLines::last() const
{
    const std::lock_guard guard(m_mutex);
    return m_last;
}

QList<FakeSerialLines::Write> FakeSerialLines::takeWrites()
{
    const std::lock_guard guard(m_mutex);
    return std::exchange(m_writes, {});
}

QByteArray FakeSerialLines::takeWritten(int descriptor)
{
    QByteArray bytes;
    for (const Write &write : takeWrites())
        if (write.descriptor == descriptor)
            bytes += write.bytes;
    return bytes;
}

QList<QString> FakeSerialLines::opened() const
{
    const std::lock_guard guard(m_mutex);
    return m_opened;
}

QList<int> FakeSerialLines::closed() const
{
    const std::lock_guard guard(m_mutex);
    return m_closed;
}

QList<int> FakeSerialLines::drained() const
{
    const std::lock_guard guard(m_mutex);
    return m_drained;
}

int FakeSerialLines::reads(int descriptor) const
{
    const std::lock_guard guard(m_mutex);
    const auto found = m_reads.find(descriptor);
    return found == m_reads.end() ? 0 : found->second;
}

std::function<void()> FakeSerialLines::_takeCall()
{
    const std::lock_guard guard(m_mutex);
    return std::exchange(m_atNextWrite, {});
}
