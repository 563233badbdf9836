#include "plugins/OrdinaryUser.h"

#include <QWPlatform/linux/serial/LineTable.h>
#include <QWPlatform/linux/serial/LinuxSerialLines.h>
#include <simulators/PseudoTerminal.h>

#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

using namespace platform;

namespace
{
bool isOpen(int file)
{
    return ::fcntl(file, F_GETFD) >= 0;
}

std::span<const std::uint8_t> spanOf(const QByteArray &bytes)
{
    return {reinterpret_cast<const std::uint8_t *>(bytes.constData()), static_cast<std::size_t>(bytes.size())};
}

QByteArray readFrom(LinuxSerialLines &lines, int descriptor)
{
    std::array<std::uint8_t, 512> buffer;
    const std::ptrdiff_t count = lines.read(descriptor, buffer);
    return count > 0 ? QByteArray(reinterpret_cast<const char *>(buffer.data()), count) : QByteArray();
}

QByteArray everyByte()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i)
        bytes.append(static_cast<char>(i));
    return bytes;
}
} // namespace

class tst_LinuxSerialLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void tableNeverGivesANumberTwice();
    void tableClosesAfterTheLastUse();
    void tableIsFullAtItsCapacity();
    void closedNumberReachesNothingThoughItsFileIsReused();
    void closingMeetsReadingOnAnotherThread();

    void everyBytePassesBothWays();
    void lineIsRaw();
    void lineIsForThisProcessAlone();
    void lineIsFreeAgainAfterClosing();
    void settlingForgetsWhatCameBefore();
    void descriptorZeroIsRefused();
    void errorsAreTold_data();
    void errorsAreTold();
    void forbiddenDeviceComesWithAdvice();
    void fullLineDropsAndNeverBlocks();
    void fullLineTearsNoMessage();
    void drainSendsWhatAFullLineTore();
    void hangUpEndsReadingAndWriting();
    void drainEndsWithAnUnreadLine();

private:
    QString _link() const { return m_folder->filePath("tty.usbserial-m64-0123"); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_LinuxSerialLines::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_LinuxSerialLines::tableNeverGivesANumberTwice()
{
    LineTable table;
    QSet<int> numbers;
    for (int i = 0; i < 500; ++i) {
        const int number = table.add(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        QVERIFY(number > 0);
        numbers.insert(number);
        table.close(number);
    }
    QCOMPARE(numbers.size(), 500);
}

void tst_LinuxSerialLines::tableClosesAfterTheLastUse()
{
    LineTable table;
    const int file = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    const int number = table.add(file);
    {
        const LineTable::Use first(table, number);
        {
            const LineTable::Use second(table, number);
            table.close(number);
            table.close(number); // again: nothing
            QCOMPARE(second.file(), file);
            QCOMPARE(LineTable::Use(table, number).file(), -1);
        }
        QVERIFY(isOpen(file));
    }
    QVERIFY(!isOpen(file));
}

void tst_LinuxSerialLines::tableIsFullAtItsCapacity()
{
    LineTable table;
    QList<int> numbers;
    for (int i = 0; i < LineTable::capacity; ++i)
        numbers.append(table.add(::open("/dev/null", O_RDONLY | O_CLOEXEC)));
    QVERIFY(!numbers.contains(0));
    const int file = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    QCOMPARE(table.add(file), 0);
    table.close(numbers[7]);
    QVERIFY(table.add(file) > 0);
}

void tst_LinuxSerialLines::closedNumberReachesNothingThoughItsFileIsReused()
{
    LineTable table;
    const int file = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    const int number = table.add(file);
    table.close(number);
    const int reused = ::open("/dev/zero", O_RDONLY | O_CLOEXEC);
    QCOMPARE(reused, file); // the system gives the lowest number that is free
    QCOMPARE(LineTable::Use(table, number).file(), -1);
    const int next = table.add(reused);
    QVERIFY(next != number);
    QCOMPARE(LineTable::Use(table, number).file(), -1);
    QCOMPARE(LineTable::Use(table, next).file(), reused);
}

void tst_LinuxSerialLines::closingMeetsReadingOnAnotherThread()
{
    LineTable table;
    std::atomic<int> current = 0;
    std::atomic<bool> stop = false;
    std::atomic<int> foreign = 0;
    std::thread reader([&] {
        char byte;
        while (!stop) {
            const LineTable::Use line(table, current);
            if (line.file() >= 0 && ::read(line.file(), &byte, 1) != 0)
                ++foreign; // /dev/null is at its end; anything else is not ours
        }
    });
    for (int i = 0; i < 2'000; ++i) {
        current = table.add(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        const int old = current;
        table.close(old);
        ::close(::open("/dev/zero", O_RDONLY | O_CLOEXEC)); // likely to get the number just given back
    }
    stop = true;
    reader.join();
    QCOMPARE(foreign.load(), 0);
}

void tst_LinuxSerialLines::everyBytePassesBothWays()
{
    const PseudoTerminal device(_link());
    QVERIFY(device.isOpen());
    LinuxSerialLines lines;
    const auto line = lines.open(device.link());
    QCOMPARE(line.error, 0);
    QVERIFY(line.descriptor > 0);
    QCOMPARE(lines.write(line.descriptor, spanOf(everyByte())), 256);
    QByteArray sent;
    QTRY_VERIFY((sent += device.read(), sent.size() >= 256));
    QCOMPARE(sent, everyByte());
    QVERIFY(device.write(everyByte()));
    QByteArray received;
    QTRY_VERIFY((received += readFrom(lines, line.descriptor), received.size() >= 256));
    QCOMPARE(received, everyByte());
    QVERIFY(device.read().isEmpty()); // nothing was echoed
}

void tst_LinuxSerialLines::lineIsRaw()
{
    const PseudoTerminal device(_link());
    LinuxSerialLines lines;
    QVERIFY(lines.open(device.link()).descriptor);
    termios settings{};
    QCOMPARE(::tcgetattr(device.file(), &settings), 0);
    QCOMPARE(settings.c_lflag & (ECHO | ECHOE | ICANON | ISIG | IEXTEN), 0u);
    QCOMPARE(settings.c_oflag & OPOST, 0u);
    QCOMPARE(settings.c_iflag & (ICRNL | IXON | ISTRIP), 0u);
    QCOMPARE(settings.c_cflag & CSIZE, static_cast<tcflag_t>(CS8));
    QVERIFY(settings.c_cflag & CREAD);
    QVERIFY(settings.c_cflag & CLOCAL);
    QCOMPARE(settings.c_cc[VMIN], 1);
    QCOMPARE(settings.c_cc[VTIME], 10);
}

void tst_LinuxSerialLines::lineIsForThisProcessAlone()
{
    const PseudoTerminal device(_link());
    const int before = ::open(qPrintable(device.link()), O_RDWR | O_NOCTTY | O_CLOEXEC);
    LinuxSerialLines lines;
    QVERIFY(lines.open(device.link()).descriptor);
    int isExclusive = 0;
    QCOMPARE(::ioctl(before, TIOCGEXCL, &isExclusive), 0);
    QVERIFY(isExclusive);
    ::close(before);
}

void tst_LinuxSerialLines::lineIsFreeAgainAfterClosing()
{
    const PseudoTerminal device(_link());
    const int other = ::open(qPrintable(device.link()), O_RDWR | O_NOCTTY | O_CLOEXEC);
    LinuxSerialLines lines;
    const int descriptor = lines.open(device.link()).descriptor;
    lines.close(descriptor);
    int isExclusive = 1;
    QCOMPARE(::ioctl(other, TIOCGEXCL, &isExclusive), 0);
    QVERIFY(!isExclusive);
    ::close(other);
    QVERIFY(!device.hasPeer());
}

void tst_LinuxSerialLines::settlingForgetsWhatCameBefore()
{
    const PseudoTerminal device(_link());
    QVERIFY(device.write("before"));
    LinuxSerialLines lines;
    const auto line = lines.open(device.link());
    QVERIFY(readFrom(lines, line.descriptor).isEmpty());
}

/// Descriptor 0 is this program's standard input, here a terminal that must not be touched.
void tst_LinuxSerialLines::descriptorZeroIsRefused()
{
    const PseudoTerminal terminal(_link());
    const int standardInput = ::dup(STDIN_FILENO);
    const int other = ::open(qPrintable(terminal.link()), O_RDWR | O_NOCTTY | O_CLOEXEC);
    QCOMPARE(::dup2(other, STDIN_FILENO), STDIN_FILENO);
    LinuxSerialLines lines;
    QCOMPARE(lines.write(0, spanOf("echo")), -1);
    QVERIFY(terminal.write("typed"));
    std::array<std::uint8_t, 512> buffer;
    QCOMPARE(lines.read(0, buffer), -1);
    lines.drain(0);
    lines.close(0);
    QVERIFY(isOpen(STDIN_FILENO));
    QVERIFY(terminal.read().isEmpty());
    char typed[5];
    QCOMPARE(::read(STDIN_FILENO, typed, 5), 5);
    if (standardInput >= 0)
        ::dup2(standardInput, STDIN_FILENO);
    ::close(standardInput);
    ::close(other);
}

void tst_LinuxSerialLines::errorsAreTold_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("error");
    QTest::newRow("no such device") << QString("/nowhere/tty.usbserial-m64-0123") << ENOENT;
    QTest::newRow("no terminal") << QString("/dev/null") << ENOTTY;
    QTest::newRow("folder") << QString("/tmp") << EISDIR;
    QTest::newRow("empty") << QString() << ENOENT;
}

void tst_LinuxSerialLines::errorsAreTold()
{
    QFETCH(QString, path);
    QFETCH(int, error);
    LinuxSerialLines lines;
    const int nextFile = ::dup(STDERR_FILENO);
    ::close(nextFile);
    const auto line = lines.open(path);
    QCOMPARE(line.descriptor, 0);
    QCOMPARE(line.error, error);
    QVERIFY(!isOpen(nextFile)); // what was opened on the way is closed
}

void tst_LinuxSerialLines::forbiddenDeviceComesWithAdvice()
{
    const PseudoTerminal device(_link());
    QVERIFY(::chmod(qPrintable(device.link()), 0) == 0);
    const OrdinaryUser user;
    QVERIFY(user.isReady);
    LinuxSerialLines lines;
    const auto line = lines.open(device.link());
    QCOMPARE(line.error, EACCES);
    QVERIFY(line.advice.contains("70-quorwell-grid.rules"));
    QVERIFY(line.advice.contains("dialout"));
    QVERIFY(line.advice.contains(device.link()));
}

void tst_LinuxSerialLines::fullLineDropsAndNeverBlocks()
{
    const PseudoTerminal device(_link());
    LinuxSerialLines lines;
    const auto line = lines.open(device.link());
    const QByteArray frame(36, 'x');
    qint64 taken = 0;
    for (int i = 0; i < 20'000; ++i)
        taken += std::max<std::ptrdiff_t>(lines.write(line.descriptor, spanOf(frame)), 0);
    QVERIFY(taken > 0);
    QVERIFY(taken < 20'000 * 36);
    qint64 arrived = 0;
    QTRY_VERIFY((arrived += device.read().size(), arrived > taken - 36)); // the last one may be torn
    QVERIFY(arrived <= taken);
}

/// Whoever reads messages of a fixed length would be out of step for good.
void tst_LinuxSerialLines::fullLineTearsNoMessage()
{
    const PseudoTerminal device(_link());
    LinuxSerialLines lines;
    const auto line = lines.open(device.link());
    int dropped = 0;
    QByteArray arrived;
    for (int i = 0; i < 20'000; ++i) {
        dropped += lines.write(line.descriptor, spanOf(QByteArray(36, static_cast<char>(i % 251)))) < 0;
        if (i % 1'000 == 999)
            arrived += device.read(); // a part of what is there, with room for a part of a message
    }
    const QByteArray last(36, '\xff');
    QTRY_VERIFY((arrived += device.read(), lines.write(line.descriptor, spanOf(last)) == 36));
    QTRY_VERIFY((arrived += device.read(), lines.write(line.descriptor, {}), arrived.endsWith(last)));
    QVERIFY(dropped > 0);
    for (qsizetype i = 0; i < arrived.size(); i += 36)
        QCOMPARE(arrived.mid(i, 36), QByteArray(36, arrived[i]));
}

void tst_LinuxSerialLines::drainSendsWhatAFullLineTore()
{
    const PseudoTerminal device(_link());
    LinuxSerialLines lines;
    const auto line = lines.open(device.link());
    qint64 taken = 0;
    for (std::ptrdiff_t count = 0; count >= 0; taken += std::max<std::ptrdiff_t>(count, 0))
        count = lines.write(line.descriptor, spanOf(QByteArray(35, 'x')));
    std::atomic<qint64> arrived = 0;
    std::atomic<bool> stop = false;
    std::thread reader([&] {
        while (!stop)
            arrived += device.read().size();
    });
    lines.drain(line.descriptor);
    const auto hasAll = [&] { return arrived == taken; };
    const bool hasArrived = QTest::qWaitFor(hasAll);
    stop = true;
    reader.join();
    QVERIFY(hasArrived);
}

void tst_LinuxSerialLines::hangUpEndsReadingAndWriting()
{
    auto device = std::make_unique<PseudoTerminal>(_link());
    LinuxSerialLines lines;
    const auto line = lines.open(device->link());
    device.reset();
    QVERIFY(!QFile::exists(_link()));
    std::array<std::uint8_t, 512> buffer;
    QVERIFY(lines.read(line.descriptor, buffer) <= 0);
    QCOMPARE(lines.write(line.descriptor, spanOf("x")), -1);
    lines.drain(line.descriptor);
    lines.close(line.descriptor);
    QCOMPARE(lines.read(line.descriptor, buffer), -1);
}

void tst_LinuxSerialLines::drainEndsWithAnUnreadLine()
{
    const PseudoTerminal device(_link());
    LinuxSerialLines lines;
    const auto line = lines.open(device.link());
    lines.write(line.descriptor, spanOf("\x90"));
    lines.drain(line.descriptor);
    lines.close(line.descriptor);
    QCOMPARE(device.read(), QByteArray("\x90")); // what was sent arrives though the line is closed
}

QTEST_GUILESS_MAIN(tst_LinuxSerialLines)
#include "tst_LinuxSerialLines.moc"
