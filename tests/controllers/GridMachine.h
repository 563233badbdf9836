#pragma once

#include "fakes/FakeSystem.h"

#include <QWBase/QWApplicationLog.h>
#include <QWUtilities/controllers/QWMonomeRemote.h>

#include <QFile>

/// A machine with a grid, stepped by the test.
class GridMachine
{
public:
    static constexpr auto series64 = "/dev/tty.usbserial-m64-0123";
    static constexpr auto series128 = "/dev/tty.usbserial-m128-0012";
    static constexpr auto fortyH = "/dev/tty.usbserial-m40h0020";

    /// @p path: plugged in before the remote is made; "" for none.
    explicit GridMachine(const QString &path = series64)
    {
        if (!path.isEmpty())
            system.serialDevices.plugIn(path);
    }

    FakeSerialRegistry &devices() { return system.serialDevices; }
    FakeSerialLines &lines() { return system.lines; }
    FakeClock &clock() { return system.clock; }
    QWMonomeRemote &remote() { return QWMonomeRemote::remote(); }

    /// Lets @p readers rest for @p time, and waits until they rest again.
    bool rest(std::chrono::nanoseconds time = std::chrono::milliseconds(1), std::size_t readers = 1)
    {
        if (!clock().waitForSleepers(readers))
            return false;
        clock().advance(time);
        return clock().waitForSleepers(readers);
    }

    /// To the end of the show with which the reader begins: the next rest follows the first read.
    bool endShow()
    {
        bool isResting = rest(std::chrono::milliseconds(750));
        for (int step = 0; step < 15; ++step)
            isResting = isResting && rest(std::chrono::nanoseconds(33'333'333));
        return isResting;
    }

    /// The remote, its show over and what was written forgotten.
    QWMonomeRemote &readyRemote()
    {
        QWMonomeRemote &made = remote();
        if (!endShow())
            qFatal("The reader does not come to rest");
        lines().takeWrites();
        return made;
    }

    /// One read by the reader that gets @p bytes.
    bool receive(const QByteArray &bytes)
    {
        lines().feed(lines().last(), bytes);
        return rest();
    }

    QString log() const
    {
        QFile file(QWApplicationLog::sharedLog().path());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    FakeSystem system;

private:
    platform::SystemScope m_current{system};
};
