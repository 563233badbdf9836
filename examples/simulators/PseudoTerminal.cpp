#include "PseudoTerminal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace
{
/// So that nothing is echoed to a host that was not quick enough; the settings outlive the closing.
bool makeRaw(const char *path)
{
    const int file = ::open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (file < 0)
        return false;
    termios settings{};
    const bool isRaw =
        ::tcgetattr(file, &settings) == 0 && (::cfmakeraw(&settings), ::tcsetattr(file, TCSANOW, &settings) == 0);
    ::close(file);
    return isRaw;
}
} // namespace

PseudoTerminal::PseudoTerminal(QString link)
    : m_link(std::move(link))
    , m_isOpen(_open())
{
}

PseudoTerminal::~PseudoTerminal()
{
    if (m_isOpen)
        QFile::remove(m_link);
    if (m_file >= 0)
        ::close(m_file);
}

bool PseudoTerminal::hasPeer() const
{
    pollfd state{.fd = m_file, .events = POLLIN, .revents = 0};
    return ::poll(&state, 1, 0) >= 0 && !(state.revents & POLLHUP);
}

QByteArray PseudoTerminal::read() const
{
    QByteArray bytes(4096, Qt::Uninitialized);
    bytes.truncate(std::max<ssize_t>(::read(m_file, bytes.data(), static_cast<std::size_t>(bytes.size())), 0));
    return bytes;
}

bool PseudoTerminal::write(const QByteArray &bytes) const
{
    return ::write(m_file, bytes.constData(), static_cast<std::size_t>(bytes.size())) == bytes.size();
}

bool PseudoTerminal::_open()
{
    m_file = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (m_file < 0 || ::grantpt(m_file) != 0 || ::unlockpt(m_file) != 0)
        return false;
    const QByteArray slave = ::ptsname(m_file);
    return makeRaw(slave.constData()) && _makeLink(slave);
}

bool PseudoTerminal::_makeLink(const QByteArray &target)
{
    QDir().mkpath(QFileInfo(m_link).path());
    if (QFileInfo(m_link).isSymLink())
        QFile::remove(m_link);
    return QFile::link(QFile::decodeName(target), m_link);
}
