#include "LineWriter.h"

#include <unistd.h>

namespace platform
{

std::ptrdiff_t LineWriter::write(int number, int file, std::span<const std::uint8_t> bytes)
{
    const std::lock_guard guard(m_mutex);
    if (!_sendRest(number, file))
        return -1;
    const std::ptrdiff_t count = ::write(file, bytes.data(), bytes.size());
    if (count <= 0)
        return -1;
    const auto rest = bytes.subspan(static_cast<std::size_t>(count));
    m_rest.assign(rest.begin(), rest.end());
    return std::ssize(bytes);
}

bool LineWriter::finish(int number, int file)
{
    const std::lock_guard guard(m_mutex);
    return _sendRest(number, file);
}

bool LineWriter::_sendRest(int number, int file)
{
    if (m_number != number)
        m_rest.clear();
    m_number = number;
    if (m_rest.empty())
        return true;
    const std::ptrdiff_t count = ::write(file, m_rest.data(), m_rest.size());
    if (count > 0)
        m_rest.erase(m_rest.begin(), m_rest.begin() + count);
    return m_rest.empty();
}

} // namespace platform
