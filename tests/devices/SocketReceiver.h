#pragma once

#include <QWPlatform/linux/remote/InputDeviceCalls.h>

#include <QByteArrayList>

#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

/// The receiver's device as a socket: what the test writes is read as the kernel's events. Grabs and key states, which
/// need a device, are the test's to say.
class SocketReceiver : public platform::InputDeviceCalls
{
public:
    explicit SocketReceiver(int socketType = SOCK_SEQPACKET)
        : m_type(socketType)
    {
        for (const unsigned key :
             {KEY_MENU, KEY_PLAYPAUSE, KEY_ENTER, KEY_FORWARD, KEY_BACK, KEY_VOLUMEUP, KEY_VOLUMEDOWN})
            ownKeys.set(key);
    }

    ~SocketReceiver() override { unplug(); }

    int open(const QByteArray &path) override
    {
        opened += path;
        int ends[2];
        if (::socketpair(AF_UNIX, m_type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends) != 0)
            return -1;
        unplug();
        m_far = ends[0];
        ++openDescriptors;
        return ends[1];
    }

    bool grab(int) override { return isGrabbed = canBeGrabbed; }
    void ungrab(int) override { isGrabbed = false; }
    std::optional<platform::KeyBits> keys(int) override { return ownKeys; }
    std::optional<platform::KeyBits> keysDown(int) override { return heldKeys; }

    ssize_t read(int descriptor, void *buffer, size_t size) override
    {
        ++reads;
        errno = readError;
        return readError ? -1 : InputDeviceCalls::read(descriptor, buffer, size);
    }

    void close(int descriptor) override
    {
        --openDescriptors;
        InputDeviceCalls::close(descriptor);
    }

    void write(const QByteArray &bytes) const
    {
        if (::send(m_far, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL) != bytes.size())
            qFatal("The socket takes no more");
    }

    static QByteArray event(int type, int code, int value, qint64 microseconds = 0)
    {
        input_event event{};
        event.input_event_sec = decltype(event.input_event_sec)(microseconds / 1'000'000);
        event.input_event_usec = decltype(event.input_event_usec)(microseconds % 1'000'000);
        event.type = quint16(type);
        event.code = quint16(code);
        event.value = value;
        return QByteArray(reinterpret_cast<const char *>(&event), sizeof event);
    }

    /// A key's event and the report that ends it, as the driver sends them.
    static QByteArray key(int code, int value) { return event(EV_KEY, code, value) + event(EV_SYN, SYN_REPORT, 0); }

    void unplug()
    {
        if (m_far >= 0)
            ::close(std::exchange(m_far, -1));
    }

    bool canBeGrabbed = true;
    bool isGrabbed = false;
    int readError = 0; ///< What read() fails with; 0 for not at all.
    int reads = 0;
    int openDescriptors = 0;
    QByteArrayList opened;
    platform::KeyBits ownKeys;
    std::optional<platform::KeyBits> heldKeys = platform::KeyBits();

private:
    const int m_type;
    int m_far = -1;
};
