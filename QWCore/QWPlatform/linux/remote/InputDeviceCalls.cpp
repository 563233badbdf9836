#include "InputDeviceCalls.h"

#include <array>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace platform
{

namespace
{
using KeyBytes = std::array<quint8, (KEY_CNT + 7) / 8>;

std::optional<KeyBits> askKeys(int descriptor, unsigned long request)
{
    KeyBytes bytes{};
    if (::ioctl(descriptor, request, bytes.data()) < 0)
        return std::nullopt;
    KeyBits keys;
    for (size_t code = 0; code < keys.size(); ++code)
        keys[code] = bytes[code / 8] & (1u << (code % 8));
    return keys;
}
} // namespace

InputDeviceCalls::~InputDeviceCalls() = default;

int InputDeviceCalls::open(const QByteArray &path)
{
    return ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
}

bool InputDeviceCalls::grab(int descriptor)
{
    return ::ioctl(descriptor, EVIOCGRAB, 1) == 0;
}

void InputDeviceCalls::ungrab(int descriptor)
{
    ::ioctl(descriptor, EVIOCGRAB, 0);
}

std::optional<KeyBits> InputDeviceCalls::keys(int descriptor)
{
    return askKeys(descriptor, EVIOCGBIT(EV_KEY, sizeof(KeyBytes)));
}

std::optional<KeyBits> InputDeviceCalls::keysDown(int descriptor)
{
    return askKeys(descriptor, EVIOCGKEY(sizeof(KeyBytes)));
}

ssize_t InputDeviceCalls::read(int descriptor, void *buffer, size_t size)
{
    return ::read(descriptor, buffer, size);
}

void InputDeviceCalls::close(int descriptor)
{
    ::close(descriptor);
}

} // namespace platform
