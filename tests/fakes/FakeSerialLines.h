#pragma once

#include <QWPlatform/devices/serial/SerialLines.h>

#include <QByteArray>
#include <QHash>
#include <QList>

#include <deque>
#include <functional>
#include <map>
#include <mutex>

/// Serial lines whose other end the test holds. Any thread.
class FakeSerialLines : public platform::SerialLines
{
public:
    struct Write
    {
        int descriptor;
        QByteArray bytes;

        bool operator==(const Write &) const = default;
    };

    Opening open(const QString &path) override;
    std::ptrdiff_t read(int descriptor, std::span<std::uint8_t> bytes) override;
    std::ptrdiff_t write(int descriptor, std::span<const std::uint8_t> bytes) override;
    void drain(int descriptor) override;
    void close(int descriptor) override;

    /// What one read of the line will get, after what was fed before.
    void feed(int descriptor, const QByteArray &bytes);

    /// Called at the next write, before its bytes arrive; what it writes itself arrives first.
    void atNextWrite(std::function<void()> call);

    /// Opening @p path fails from now on; 0 lets it succeed again.
    void failToOpen(const QString &path, int error, const QString &advice = {});

    /// The descriptor given last; 0 when none was.
    int last() const;

    /// All writes, to closed lines and to 0 too, since the last call.
    QList<Write> takeWrites();

    /// The bytes of those writes to @p descriptor, one after the other.
    QByteArray takeWritten(int descriptor);

    QList<QString> opened() const;
    QList<int> closed() const;
    QList<int> drained() const;

    /// How often @p descriptor was read.
    int reads(int descriptor) const;

private:
    std::function<void()> _takeCall();

    mutable std::mutex m_mutex; ///< Guards the rest.
    std::function<void()> m_atNextWrite;
    QHash<QString, Opening> m_failures;
    std::map<int, std::deque<QByteArray>> m_open;
    std::map<int, int> m_reads;
    QList<Write> m_writes;
    QList<QString> m_opened;
    QList<int> m_closed;
    QList<int> m_drained;
    int m_last = 0;
};
