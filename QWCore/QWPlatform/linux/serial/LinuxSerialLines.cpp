#include "LinuxSerialLines.h"

#include <QFile>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace platform
{

namespace
{
using namespace std::chrono_literals;

constexpr auto longestDrain = 1s;

/// What a user can do about an error of opening; "" where nothing is known to help.
QString adviceFor(int error, const QString &path)
{
    switch (error) {
    case EACCES:
    case EPERM:
        return "This user may not open " + path +
               ". Install the rule 70-quorwell-grid.rules in /etc/udev/rules.d and plug the device in again, or join "
               "its group (sudo usermod -aG dialout \"$USER\") and log in again.";
    case EBUSY:
        return path + " is in use by another application. Quit that one and plug the device in again.";
    default:
        return {};
    }
}

/// The settings of a raw line that belongs to no job: bytes pass as they are, and a read returns with the first one.
termios rawSettings(termios settings)
{
    ::cfmakeraw(&settings);
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHOE | ICANON | ISIG);
    settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    settings.c_cflag |= CS8 | CREAD | CLOCAL;
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 10;
    return settings;
}

bool makeRaw(int file)
{
    termios settings{};
    if (::tcgetattr(file, &settings) != 0)
        return false;
    settings = rawSettings(settings);
    return ::tcsetattr(file, TCSANOW, &settings) == 0 && ::tcflush(file, TCIOFLUSH) == 0;
}

bool claim(int file)
{
    return ::ioctl(file, TIOCEXCL) == 0 && makeRaw(file);
}

bool hasUnsentBytes(int file)
{
    int count = 0;
    return ::ioctl(file, TIOCOUTQ, &count) == 0 && count > 0;
}

SerialLines::Opening failure(int error, const QString &path)
{
    return {.descriptor = 0, .error = error, .advice = adviceFor(error, path)};
}
} // namespace

SerialLines::Opening LinuxSerialLines::open(const QString &path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return failure(errno, path);
    const int error = claim(file) ? 0 : errno;
    const int descriptor = error ? 0 : m_lines.add(file);
    if (descriptor)
        return {.descriptor = descriptor, .error = 0, .advice = {}};
    ::close(file);
    return failure(error ? error : EMFILE, path);
}

std::ptrdiff_t LinuxSerialLines::read(int descriptor, std::span<std::uint8_t> bytes)
{
    const LineTable::Use line(m_lines, descriptor);
    return line.file() < 0 ? -1 : ::read(line.file(), bytes.data(), bytes.size());
}

std::ptrdiff_t LinuxSerialLines::write(int descriptor, std::span<const std::uint8_t> bytes)
{
    const LineTable::Use line(m_lines, descriptor);
    return line.file() < 0 ? -1 : _writer(descriptor).write(descriptor, line.file(), bytes);
}

void LinuxSerialLines::drain(int descriptor)
{
    const LineTable::Use line(m_lines, descriptor);
    if (line.file() < 0)
        return;
    const auto end = std::chrono::steady_clock::now() + longestDrain;
    const auto isDone = [&] {
        return _writer(descriptor).finish(descriptor, line.file()) && !hasUnsentBytes(line.file());
    };
    while (!isDone() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(1ms);
    if (hasUnsentBytes(line.file()))
        ::tcflush(line.file(), TCOFLUSH); // a device that takes nothing would hold up the closing, too
    else
        ::tcdrain(line.file());
}

void LinuxSerialLines::close(int descriptor)
{
    {
        const LineTable::Use line(m_lines, descriptor);
        if (line.file() >= 0)
            ::ioctl(line.file(), TIOCNXCL); // others may hold the device open; it is free for all of them again
    }
    m_lines.close(descriptor);
}

} // namespace platform
