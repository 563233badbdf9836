#include "ChildOutput.h"

#include "BoundedOutput.h"
#include "ChildState.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace platform
{

namespace
{
constexpr int pollTime = 100; ///< Milliseconds between two looks at a child that writes nothing.
constexpr std::size_t pieceSize = 16384;
} // namespace

ChildOutput::ChildOutput(bool wanted)
{
    if (wanted && ::pipe2(m_ends.data(), O_CLOEXEC) != 0)
        m_ends = {-1, -1};
}

ChildOutput::~ChildOutput()
{
    _close(0);
    _close(1);
}

QByteArray ChildOutput::read(pid_t child, qsizetype longest) const
{
    BoundedOutput output(longest);
    bool isOpen = m_ends[0] >= 0;
    while (isOpen && !hasEnded(child)) {
        endIfStopped(child); // while others may go on writing
        isOpen = _readSome(output);
    }
    if (isOpen)
        _readRest(output);
    return output.text();
}

/// False when nobody can write any more.
bool ChildOutput::_readSome(BoundedOutput &output) const
{
    pollfd readable{m_ends[0], POLLIN, 0};
    if (::poll(&readable, 1, pollTime) <= 0) // nothing, or a signal of ours
        return true;
    char piece[pieceSize];
    const ssize_t count = ::read(m_ends[0], piece, sizeof piece);
    if (count > 0)
        output.append(piece, count);
    return count > 0 || (count < 0 && errno == EINTR);
}

/// What lies in the pipe now: all that the child wrote, and not what others go on writing.
void ChildOutput::_readRest(BoundedOutput &output) const
{
    int waiting = 0;
    char piece[pieceSize];
    ::ioctl(m_ends[0], FIONREAD, &waiting);
    while (waiting > 0) {
        const ssize_t count = ::read(m_ends[0], piece, std::min(sizeof piece, static_cast<std::size_t>(waiting)));
        if (count <= 0)
            return;
        output.append(piece, count);
        waiting -= static_cast<int>(count);
    }
}

void ChildOutput::_close(int end)
{
    if (m_ends[end] >= 0)
        ::close(m_ends[end]);
    m_ends[end] = -1;
}

} // namespace platform
