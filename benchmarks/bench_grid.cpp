#include "controllers/RealSerialMachine.h"

#include <QWBase/QWApplication.h>
#include <QWUtilities/controllers/QWMonomeRemote.h>
#include <QWUtilities/controllers/grid/GridMapping.h>
#include <QWUtilities/controllers/grid/GridProtocol.h>
#include <simulators/PseudoTerminal.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace
{
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

double nanoseconds(Clock::duration time)
{
    return static_cast<double>(std::chrono::duration_cast<std::chrono::nanoseconds>(time).count());
}

double median(std::vector<double> &values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Presses and releases of all buttons; every fourth message is none.
QByteArray presses(int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes.append(static_cast<char>((i % 4) << 4)).append(static_cast<char>((i * 7) & 0x77));
    return bytes;
}

/// Counts presses, and takes the time of the last.
class Counter : public QWMonomeRemoteObserver
{
public:
    void monomeRemoteButtonDownAtPosition(QWMonomeRemote &, QWGridPosition) override
    {
        lastTime = Clock::now().time_since_epoch();
        ++count;
    }

    std::atomic<qint64> count = 0;
    std::atomic<Clock::duration> lastTime{};
};

/// A grid on a pseudo-terminal whose LEDs are taken by a thread, with the remote that listens to it.
class Grid
{
public:
    Grid()
    {
        remote().addObserver(counter);
        while (counter.count == 0) { // until the show is over
            m_device.write(QByteArray(2, 0));
            std::this_thread::sleep_for(5ms);
        }
        std::this_thread::sleep_for(20ms);
        counter.count = 0;
    }

    ~Grid()
    {
        remote().removeObserver(counter);
        m_isEnding = true;
        m_reader.join();
    }

    Grid(const Grid &) = delete;
    Grid &operator=(const Grid &) = delete;

    QWMonomeRemote &remote() const { return QWMonomeRemote::remote(); }

    /// From now on LEDs are taken here only; a thread that waits for them would be woken by every write.
    void holdLEDs() { m_isHeld = true; }

    void takeLEDs() const
    {
        while (!m_device.read().isEmpty()) {
        }
    }
    const PseudoTerminal &device() const { return m_device; }

    Counter counter;

private:
    void _takeLEDs() const
    {
        pollfd state{.fd = m_device.file(), .events = POLLIN, .revents = 0};
        while (!m_isEnding && !m_isHeld)
            if (::poll(&state, 1, 50) > 0 && m_device.read().isEmpty())
                std::this_thread::sleep_for(1ms);
    }

    RealSerialMachine m_machine;
    PseudoTerminal m_device{m_machine.folder() + "/tty.usbserial-m64-0123"};
    std::atomic<bool> m_isEnding = false;
    std::atomic<bool> m_isHeld = false;
    std::thread m_reader{[this] { _takeLEDs(); }};
};

/// What the reader does with a message before observers come into play; per message.
void decode(benchmark::State &state)
{
    const QByteArray bytes = presses(256);
    const qw::GridMapping mapping{.orientation = 1, .origin = 1, .rows = 8, .columns = 8};
    const auto *data = reinterpret_cast<const std::uint8_t *>(bytes.constData());
    const auto start = Clock::now();
    for (auto _ : state)
        for (int i = 0; i < 512; i += 2) {
            const auto press = qw::decodeGridPress(qw::GridProtocol::Series, data[i], data[i + 1]);
            const QWGridPosition position{static_cast<float>(press.x), static_cast<float>(press.y)};
            if (press.kind != qw::GridPress::None)
                benchmark::DoNotOptimize(mapping.transformed(position));
        }
    state.counters["value"] = nanoseconds(Clock::now() - start) / static_cast<double>(state.iterations() * 256);
}

/// Of the series: 36 bytes in four messages, one LED changed; the median of many small batches, after each of which the
/// device takes them (a full line would drop them, which is quicker).
void writeFrame(benchmark::State &state)
{
    constexpr int batch = 100;
    Grid grid;
    grid.holdLEDs();
    std::vector<double> times;
    for (auto _ : state) {
        const auto start = Clock::now();
        for (int i = 0; i < batch; ++i)
            grid.remote().setLEDStateAtPosition(i % 2, {3, 2});
        times.push_back(nanoseconds(Clock::now() - start) / batch);
        grid.takeLEDs();
    }
    state.counters["value"] = median(times);
}

/// The system's part: as many bytes, written to a raw pseudo-terminal and nothing else.
void writeFrameBaseline(benchmark::State &state)
{
    constexpr int batch = 100;
    const QTemporaryDir folder;
    const PseudoTerminal device(folder.filePath("line"));
    const int line = ::open(qPrintable(device.link()), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    const QByteArray frame(36, 0);
    std::vector<double> times;
    for (auto _ : state) {
        const auto start = Clock::now();
        for (int i = 0; i < batch; ++i)
            benchmark::DoNotOptimize(::write(line, frame.constData(), static_cast<std::size_t>(frame.size())));
        times.push_back(nanoseconds(Clock::now() - start) / batch);
        while (!device.read().isEmpty()) {
        }
    }
    ::close(line);
    state.counters["value"] = median(times);
}

/// As much as the line takes, until all has reached the observer; per message.
void throughput(benchmark::State &state)
{
    Grid grid;
    const QByteArray chunk(512, 0);
    constexpr qint64 messages = 200'000;
    for (auto _ : state) {
        grid.counter.count = 0;
        const auto start = Clock::now();
        qint64 written = 0;
        while (written < messages * 2) {
            if (grid.device().write(chunk))
                written += chunk.size();
            else
                std::this_thread::sleep_for(100us);
        }
        while (grid.counter.count < written / 2)
            std::this_thread::sleep_for(100us);
        state.counters["value"] = nanoseconds(Clock::now() - start) / static_cast<double>(written / 2);
    }
}

/// From the device's write to the observer, at moments that have nothing to do with the reader's rests; median.
void latency(benchmark::State &state)
{
    Grid grid;
    for (auto _ : state) {
        std::vector<double> times;
        for (int i = 0; i < 501; ++i) {
            std::this_thread::sleep_for(3ms + std::chrono::microseconds(i * 37 % 1'000));
            const qint64 before = grid.counter.count;
            const auto start = Clock::now();
            grid.device().write(QByteArray(2, 0));
            while (grid.counter.count == before)
                std::this_thread::sleep_for(50us);
            times.push_back(nanoseconds(grid.counter.lastTime.load() - start.time_since_epoch()));
        }
        state.counters["value"] = median(times);
    }
}

double processorSeconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](timeval time) {
        return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Of one processor, while nothing is pressed and no LED changes; percent.
void idle(benchmark::State &state)
{
    const Grid grid;
    for (auto _ : state) {
        const double before = processorSeconds();
        std::this_thread::sleep_for(2s);
        state.counters["value"] = (processorSeconds() - before) / 2 * 100;
    }
}
/// A thread that rests a millisecond at a time and does nothing else.
void idleBaseline(benchmark::State &state)
{
    for (auto _ : state) {
        const double before = processorSeconds();
        const auto end = Clock::now() + 2s;
        while (Clock::now() < end)
            std::this_thread::sleep_for(1ms);
        state.counters["value"] = (processorSeconds() - before) / 2 * 100;
    }
}
} // namespace

int main(int argc, char **argv)
{
    using benchmark::RegisterBenchmark;
    const QWApplication application(argc, argv);
    RegisterBenchmark("grid-decode/ours", decode);
    RegisterBenchmark("grid-frame-write/ours", writeFrame)->Iterations(100);
    RegisterBenchmark("grid-frame-write/baseline", writeFrameBaseline)->Iterations(100);
    RegisterBenchmark("grid-throughput/ours", throughput)->Iterations(1);
    RegisterBenchmark("grid-latency/ours", latency)->Iterations(1);
    RegisterBenchmark("grid-idle/ours", idle)->Iterations(1);
    RegisterBenchmark("grid-idle/baseline", idleBaseline)->Iterations(1);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
