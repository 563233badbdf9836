#include "GridListener.h"
#include "RealSerialMachine.h"
#include "fakes/QWTestMain.h"
#include "plugins/OrdinaryUser.h"

#include <QWBase/QWApplicationLog.h>

#include <simulators/GridSimulator.h>

#include <atomic>

namespace
{
constexpr int longEnough = 20'000; // milliseconds, on a machine that is busy

QString fullGrid(const GridDevice &device)
{
    QString text;
    for (int row = 0; row < device.model().rows; ++row)
        for (int column = 0; column < device.model().columns; ++column)
            text += device.led(column, row) ? '#' : '.';
    return text;
}

/// What @p device shows after each message of @p bytes: a busy machine reads many of them at once.
struct Replay
{
    Replay(GridDevice device, const QByteArray &bytes)
    {
        for (const char byte : bytes) {
            device.receive(QByteArray(1, byte));
            hadPattern |= fullGrid(device).startsWith("........"
                                                      ".######."
                                                      "........");
            if (levels.isEmpty() || levels.last() != device.level())
                levels.append(device.level());
        }
        isDark = !fullGrid(device).contains('#');
    }

    bool hadPattern = false;
    bool isDark = true;
    QList<int> levels; ///< Each change.
};

/// The bytes that a simulator has noted.
QByteArray bytesOf(const QString &log)
{
    QFile file(log);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        for (const QByteArray &line : file.readAll().split('\n'))
            bytes += QByteArray::fromHex(line.mid(line.indexOf(' ') + 1));
    return bytes;
}
} // namespace

/// Everything real but the device: registry, lines, clock and threads, with a simulated grid on a pseudo-terminal.
class tst_GridOverPty : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void gridThatIsThereIsFound();
    void gridComesAndGoes();
    void gridComesBackUnderAnotherName();
    void gridOfAnEarlierTerminalsNumberIsAnotherOne();
    void showsItselfAndListens_data();
    void showsItselfAndListens();
    void ledsArrive();
    void burstArrivesInOrder();
    void messagesInPiecesAreNotJoined();
    void hangUpInTheMiddleOfABurst();
    void fullLineHoldsUpNobody();
    void everythingAtOnce();
    void shutdownLeavesADarkGrid();
    void forbiddenGridIsExplainedInTheLog();

private:
    QWMonomeRemote &_remote() { return QWMonomeRemote::remote(); }
    bool _isListening(const QString &heard = "down 0 0");
    bool _isQuiet();
    bool _hearsOf(const QString &word);
    bool _hears(const QStringList &expected);

    std::unique_ptr<RealSerialMachine> m_machine;
    std::unique_ptr<GridSimulator> m_grid;
    std::unique_ptr<GridListener> m_listener;
};

void tst_GridOverPty::init()
{
    m_machine = std::make_unique<RealSerialMachine>();
    m_grid = std::make_unique<GridSimulator>(m_machine->folder());
    m_listener = std::make_unique<GridListener>();
    _remote().addObserver(*m_listener);
}

void tst_GridOverPty::cleanup()
{
    m_machine.reset();
    m_grid.reset();
    m_listener.reset();
}

/// The show is over as soon as a press is heard: it is pressed until then.
bool tst_GridOverPty::_isListening(const QString &heard)
{
    return QTest::qWaitFor(
        [&] {
            m_grid->press(0, 0);
            const auto calls = m_listener->take();
            return calls.contains(heard);
        },
        longEnough);
}

/// All that was pressed before has been heard.
bool tst_GridOverPty::_isQuiet()
{
    m_grid->press(7, 7);
    return _hearsOf("down 7 7");
}

/// Sooner or later, whatever else.
bool tst_GridOverPty::_hearsOf(const QString &word)
{
    return QTest::qWaitFor([&] { return m_listener->take().contains(word); }, longEnough);
}

bool tst_GridOverPty::_hears(const QStringList &expected)
{
    QStringList heard;
    return QTest::qWaitFor([&] { return (heard += m_listener->take()) == expected; }, longEnough);
}

void tst_GridOverPty::gridThatIsThereIsFound()
{
    cleanup();
    m_machine = std::make_unique<RealSerialMachine>();
    m_grid = std::make_unique<GridSimulator>(m_machine->folder());
    QVERIFY(m_grid->plug("m128-0012"));
    QVERIFY(_remote().isConnected());
    QCOMPARE(_remote().serialNumber(), 12u);
    QCOMPARE(_remote().numberOfButtons(), 128u);
    QTRY_VERIFY_WITH_TIMEOUT(m_grid->hasHost(), longEnough);
}

void tst_GridOverPty::gridComesAndGoes()
{
    QVERIFY(!_remote().isConnected());
    QVERIFY(m_grid->plug("m64-0123"));
    QVERIFY(_hears(QStringList{"connected"}));
    QVERIFY(_remote().isConnected());
    m_grid->unplug();
    QVERIFY(_hears(QStringList{"removed"}));
    QVERIFY(!_remote().isConnected());
}

void tst_GridOverPty::gridComesBackUnderAnotherName()
{
    QVERIFY(m_grid->plug("m64-0123"));
    QVERIFY(_hears(QStringList{"connected"}));
    QVERIFY(m_grid->plug("m40h0020")); // the old one hangs up
    QVERIFY(_hears(QStringList{"removed", "connected"}));
    QCOMPARE(_remote().serialNumber(), 20u);
    QVERIFY(_isListening());
}

/// What ends without taking its link along, and then starts again, mostly gets the same terminal.
void tst_GridOverPty::gridOfAnEarlierTerminalsNumberIsAnotherOne()
{
    const PseudoTerminal device(m_machine->folder() + "/tty.usbserial-m64-0123");
    QVERIFY(_hears(QStringList{"connected"}));
    const QString terminal = QFileInfo(device.link()).symLinkTarget();
    QVERIFY(QFile::remove(device.link()) && QFile::link(terminal, device.link()));
    QVERIFY(_hears(QStringList{"removed", "connected"}));
}

void tst_GridOverPty::showsItselfAndListens_data()
{
    QTest::addColumn<QString>("serial");
    QTest::newRow("series") << QString("m64-0123");
    QTest::newRow("40h") << QString("m40h0020");
}

void tst_GridOverPty::showsItselfAndListens()
{
    QFETCH(QString, serial);
    const QString log = m_machine->folder() + "/received";
    QVERIFY(m_grid->logTo(log));
    QVERIFY(m_grid->plug(serial));
    const GridDevice fresh(m_grid->device()->model());
    QVERIFY(_isListening());
    const auto levels = [&] { return Replay(fresh, bytesOf(log)).levels; };
    QTRY_COMPARE_WITH_TIMEOUT(levels(), (QList<int>{15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 15}),
                              longEnough);
    const Replay show(fresh, bytesOf(log));
    QVERIFY(show.hadPattern);
    QVERIFY(show.isDark);
    QCOMPARE(m_grid->device()->misunderstood(), 0);
}

void tst_GridOverPty::ledsArrive()
{
    QVERIFY(m_grid->plug("m128-0012"));
    QVERIFY(_isListening());
    _remote().setLEDStateAtPosition(true, {3, 2});
    const quint8 rows[8] = {0, 0, 0x01, 0, 0, 0, 0, 0};
    _remote().setLEDFrameAtQuadrant(rows, 1);
    _remote().setIntensity(0.5f);
    QTRY_COMPARE_WITH_TIMEOUT(m_grid->device()->level(), 7, longEnough);
    QVERIFY(m_grid->device()->led(3, 2));
    QVERIFY(m_grid->device()->led(8, 2));
    QCOMPARE(fullGrid(*m_grid->device()).count('#'), 2);
}

void tst_GridOverPty::burstArrivesInOrder()
{
    QVERIFY(m_grid->plug("m64-0123"));
    QVERIFY(_isListening());
    QVERIFY(_isQuiet());
    QByteArray burst;
    QStringList expected;
    for (int i = 0; i < 256; ++i) {
        burst.append(static_cast<char>(i % 2 ? 0x10 : 0x00)).append(static_cast<char>((i / 2) % 128));
        const int place = (i / 2) % 128;
        expected.append(QString("%1 %2 %3").arg(i % 2 ? "up" : "down").arg(place >> 4).arg(place & 15));
    }
    m_grid->sendBytes(burst);
    QStringList heard;
    QTRY_VERIFY_WITH_TIMEOUT((heard += m_listener->take(), heard.size() >= expected.size()), longEnough);
    QCOMPARE(heard, expected);
}

void tst_GridOverPty::messagesInPiecesAreNotJoined()
{
    QVERIFY(m_grid->plug("m64-0123"));
    QVERIFY(_isListening());
    QVERIFY(_isQuiet());
    m_grid->sendBytes(QByteArray::fromHex("10"));
    QTRY_COMPARE_WITH_TIMEOUT(m_listener->count(), 1, longEnough); // up, at what an earlier read left behind it
    QStringList heard = m_listener->take();
    QVERIFY(heard.first().startsWith("up"));
    m_grid->sendBytes(QByteArray::fromHex("47"));
    const auto isHeardAgain = [&] {
        m_grid->press(6, 6);
        heard += m_listener->take();
        return heard.contains("down 6 6");
    };
    QVERIFY(QTest::qWaitFor(isHeardAgain, longEnough));
    QVERIFY(!heard.contains("up 4 7"));
}

void tst_GridOverPty::hangUpInTheMiddleOfABurst()
{
    QVERIFY(m_grid->plug("m64-0123"));
    QVERIFY(_isListening());
    for (int i = 0; i < 50; ++i)
        m_grid->sendBytes(QByteArray(511, 0));
    m_grid->unplug();
    QVERIFY(_hearsOf("removed"));
    _remote().setLEDStateAtPosition(true, {1, 1}); // into nothing
    QVERIFY(m_grid->plug("m64-0123"));
    QVERIFY(_isListening());
}

void tst_GridOverPty::fullLineHoldsUpNobody()
{
    const PseudoTerminal device(m_machine->folder() + "/tty.usbserial-m64-0123"); // takes nothing
    QTRY_VERIFY_WITH_TIMEOUT(_remote().isConnected(), longEnough);
    for (int i = 0; i < 5'000; ++i)
        _remote().setLEDStateAtPosition(i % 2, {1, 1});
    _remote().shutdown();
    QVERIFY(!_remote().isConnected());
}

/// LEDs, settings and observers change on two threads while grids come, press and go.
void tst_GridOverPty::everythingAtOnce()
{
    std::atomic<bool> stop = false;
    QWMonomeRemote &remote = _remote();
    std::thread lights([&] {
        for (unsigned i = 0; !stop; ++i) {
            remote.toggleLEDAtPosition({static_cast<float>(i % 8), static_cast<float>(i / 8 % 8)});
            remote.setIntensity(static_cast<float>(i % 16) / 15);
            std::this_thread::yield();
        }
    });
    std::thread observers([&] {
        for (unsigned i = 0; !stop; ++i) {
            GridListener passing;
            remote.addObserver(passing);
            remote.setOrientation(i % 4);
            remote.setOrigin(i % 2);
            remote.removeObserver(passing);
            std::this_thread::yield();
        }
    });
    bool wentWell = true;
    for (const char *serial : {"m64-0123", "m40h0020", "m128-0012"}) {
        wentWell = wentWell && m_grid->plug(serial) && _hearsOf("connected");
        wentWell = wentWell && QTest::qWaitFor(
                                   [&] {
                                       m_grid->press(0, 0);
                                       return !m_listener->take().isEmpty();
                                   },
                                   longEnough);
    }
    stop = true;
    lights.join();
    observers.join();
    QVERIFY(wentWell);
    QCOMPARE(remote.serialNumber(), 12u);
}

void tst_GridOverPty::shutdownLeavesADarkGrid()
{
    QVERIFY(m_grid->plug("m64-0123"));
    QVERIFY(_isListening());
    _remote().setLEDStateAtPosition(true, {3, 2});
    QTRY_VERIFY_WITH_TIMEOUT(m_grid->device()->led(3, 2), longEnough);
    _remote().shutdown();
    QTRY_VERIFY_WITH_TIMEOUT(!m_grid->hasHost(), longEnough);
    QVERIFY(!fullGrid(*m_grid->device()).contains('#'));
}

void tst_GridOverPty::forbiddenGridIsExplainedInTheLog()
{
    _remote(); // looks around
    const OrdinaryUser user;
    QVERIFY(user.isReady);
    const PseudoTerminal device(m_machine->folder() + "/tty.usbserial-m64-0123");
    QVERIFY(::chmod(qPrintable(device.link()), 0) == 0);
    QFile log(QWApplicationLog::sharedLog().path());
    QTRY_VERIFY_WITH_TIMEOUT(log.exists(), longEnough);
    QVERIFY(log.open(QIODevice::ReadOnly));
    QByteArray text;
    QTRY_VERIFY_WITH_TIMEOUT((text += log.readAll(), text.contains("70-quorwell-grid.rules")), longEnough);
    QVERIFY(text.contains("remoteAdded error: 13"));
    QVERIFY(!_remote().isConnected());
}

QW_TEST_MAIN(tst_GridOverPty)
#include "tst_GridOverPty.moc"
