// The threads of a grid at once, for ThreadSanitizer: a program without QtTest, whose watchdog's own synchronisation
// the sanitizer cannot see. Every grid is pressed while LEDs, settings and observers change; then it hangs up.
#include "GridListener.h"
#include "RealSerialMachine.h"

#include <simulators/PseudoTerminal.h>

#include <QCoreApplication>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <poll.h>
#include <thread>

using namespace std::chrono_literals;

namespace
{
constexpr int wantedCalls = 500;
constexpr auto longEnough = 60s;

/// Presses until enough was heard; waits for LEDs in between, and takes what comes for them.
bool press(const PseudoTerminal &device, const GridListener &listener)
{
    const auto end = std::chrono::steady_clock::now() + longEnough;
    while (listener.count() < wantedCalls && std::chrono::steady_clock::now() < end) {
        device.write(QByteArray::fromHex("0035 1035 0146 0046"));
        pollfd lights{.fd = device.file(), .events = POLLIN, .revents = 0};
        ::poll(&lights, 1, 1);
        device.read();
    }
    return listener.count() >= wantedCalls;
}

void changeLEDs(QWMonomeRemote &remote, const std::atomic<bool> &stop)
{
    const quint8 rows[8] = {1, 2, 4, 8, 16, 32, 64, 128};
    for (unsigned i = 0; !stop; ++i) {
        remote.toggleLEDAtPosition({static_cast<float>(i % 8), static_cast<float>(i / 8 % 8)});
        remote.setLEDFrameAtQuadrant(rows, i % 4);
        remote.setIntensity(static_cast<float>(i % 16) / 15);
        if (i % 32 == 0)
            remote.clearLEDs();
        std::this_thread::yield();
    }
}

void changeObservers(QWMonomeRemote &remote, const std::atomic<bool> &stop)
{
    for (unsigned i = 0; !stop; ++i) {
        GridListener passing;
        remote.addObserver(passing);
        remote.setOrientation(i % 4);
        remote.setOrigin(i % 2);
        std::this_thread::yield();
        remote.removeObserver(passing); // which is destroyed now
    }
}

bool useGrid(const QString &serial)
{
    RealSerialMachine machine;
    auto device = std::make_unique<PseudoTerminal>(machine.folder() + "/tty.usbserial-" + serial);
    GridListener listener;
    std::atomic<bool> stop = false;
    QWMonomeRemote &remote = QWMonomeRemote::remote();
    remote.addObserver(listener);
    std::thread lights([&] { changeLEDs(remote, stop); });
    std::thread observers([&] { changeObservers(remote, stop); });
    bool isWell = remote.isConnected() && press(*device, listener);
    device.reset();
    const auto end = std::chrono::steady_clock::now() + longEnough;
    while (remote.isConnected() && std::chrono::steady_clock::now() < end)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    isWell = isWell && !remote.isConnected();
    stop = true;
    lights.join();
    observers.join();
    remote.removeObserver(listener);
    return isWell;
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    for (const char *serial : {"m64-0123", "m40h0020"}) {
        if (useGrid(serial))
            continue;
        std::fprintf(stderr, "%s: the presses or the hang-up were not heard\n", serial);
        return 1;
    }
    return 0;
}
