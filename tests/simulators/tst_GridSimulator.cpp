#include <simulators/GridSimulator.h>
#include <simulators/GridView.h>
#include <simulators/GridWindow.h>

#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{
/// A host that opens the line and reads what comes.
class Host
{
public:
    explicit Host(const QString &link)
        : m_file(::open(qPrintable(link), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
    }

    ~Host() { ::close(m_file); }
    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;

    bool send(const QByteArray &bytes)
    {
        return ::write(m_file, bytes.constData(), static_cast<std::size_t>(bytes.size())) == bytes.size();
    }

    /// All that came so far.
    const QByteArray &received()
    {
        char bytes[512];
        const ssize_t count = ::read(m_file, bytes, sizeof bytes);
        m_received.append(bytes, std::max<ssize_t>(count, 0));
        return m_received;
    }

private:
    int m_file;
    QByteArray m_received;
};

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

/// The simulator's windows, and its program led by a script.
class tst_GridSimulator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsWhetherAHostIsThere();
    void unpluggingHangsUpAndTakesTheLinkAway();
    void unknownSerialsAreNotPluggedIn();
    void clicksAreButtons();
    void rightClickHoldsAButton();
    void keysAreButtons();
    void ledsShowInTheWindow();
    void windowNamesTheGridThatIsPluggedIn();
    void programRunsAScript();
    void programIsLedByItsInput();
    void programTakesItsLinkAlong();
};

void tst_GridSimulator::knowsWhetherAHostIsThere()
{
    QTemporaryDir folder;
    GridSimulator grid(folder.path());
    QVERIFY(grid.plug("m64-0123"));
    QVERIFY(!grid.hasHost());
    grid.press(1, 1); // nobody hears it, now or later
    {
        Host host(grid.link());
        QTRY_VERIFY(grid.hasHost());
        grid.press(2, 3);
        QTRY_COMPARE(host.received(), QByteArray::fromHex("0023"));
        QVERIFY(host.send(QByteArray::fromHex("2045 a3")));
        QTRY_COMPARE(grid.device()->level(), 3);
        QVERIFY(grid.device()->led(4, 5));
    }
    QTRY_VERIFY(!grid.hasHost());
    QCOMPARE(grid.received(), 3);
    QCOMPARE(grid.sent(), 2);
}

void tst_GridSimulator::unpluggingHangsUpAndTakesTheLinkAway()
{
    QTemporaryDir folder;
    GridSimulator grid(folder.path());
    QVERIFY(grid.plug("m64-0123"));
    const QString link = grid.link();
    QCOMPARE(link, folder.filePath("tty.usbserial-m64-0123"));
    Host host(link);
    QTRY_VERIFY(grid.hasHost());
    grid.unplug();
    QVERIFY(!QFile::exists(link));
    QVERIFY(!grid.hasHost());
    QVERIFY(!host.send("x"));
    grid.press(1, 1);
    QVERIFY(grid.plug("m40h0020"));
    QVERIFY(QFile::exists(grid.link()));
}

void tst_GridSimulator::unknownSerialsAreNotPluggedIn()
{
    QTemporaryDir folder;
    GridSimulator grid(folder.path());
    QVERIFY(!grid.plug("m0000123"));
    QVERIFY(!grid.isPlugged());
    QVERIFY(QDir(folder.path()).isEmpty());
}

void tst_GridSimulator::clicksAreButtons()
{
    QTemporaryDir folder;
    GridSimulator grid(folder.path());
    QVERIFY(grid.plug("m64-0123"));
    GridWindow window(grid, "m64-0123");
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    Host host(grid.link());
    QTRY_VERIFY(grid.hasHost());
    QTest::mouseClick(&window.view(), Qt::LeftButton, {}, window.view().buttonRect(3, 5).center().toPoint());
    QTRY_COMPARE(host.received(), QByteArray::fromHex("0035 1035"));
    QTest::mouseClick(&window.view(), Qt::LeftButton, {},
                      window.view().buttonRect(0, 0).topLeft().toPoint() - QPoint(2, 2));
    QCOMPARE(grid.sent(), 4); // between the buttons is nothing
}

void tst_GridSimulator::rightClickHoldsAButton()
{
    GridView view;
    view.resize(view.sizeHint());
    QSignalSpy pressed(&view, &GridView::pressed), released(&view, &GridView::released);
    const QPoint place = view.buttonRect(2, 2).center().toPoint();
    QTest::mouseClick(&view, Qt::RightButton, {}, place);
    QCOMPARE(pressed.size(), 1);
    QCOMPARE(released.size(), 0);
    QTest::mouseClick(&view, Qt::LeftButton, {}, place);
    QCOMPARE(pressed.size(), 1);
    QCOMPARE(released.size(), 1);
}

void tst_GridSimulator::keysAreButtons()
{
    GridView view;
    view.setDimensions(2, 2);
    QSignalSpy pressed(&view, &GridView::pressed), released(&view, &GridView::released);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(&view, Qt::Key_Right); // no further than the edge
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyPress(&view, Qt::Key_Space);
    QCOMPARE(pressed.value(0), (QVariantList{1, 1}));
    QCOMPARE(released.size(), 0);
    QTest::keyRelease(&view, Qt::Key_Space);
    QCOMPARE(released.value(0), (QVariantList{1, 1}));
}

void tst_GridSimulator::ledsShowInTheWindow()
{
    QTemporaryDir folder;
    GridSimulator grid(folder.path());
    QVERIFY(grid.plug("m64-0123"));
    GridWindow window(grid, "m64-0123");
    window.show();
    Host host(grid.link());
    QTRY_VERIFY(grid.hasHost());
    const QPoint place = window.view().buttonRect(4, 5).center().toPoint();
    const QColor dark = window.view().grab().toImage().pixelColor(place);
    QVERIFY(host.send(QByteArray::fromHex("2045 af")));
    QTRY_COMPARE(grid.received(), 3);
    const QColor bright = window.view().grab().toImage().pixelColor(place);
    QVERIFY(host.send(QByteArray::fromHex("a0")));
    QTRY_COMPARE(grid.received(), 4);
    const QColor dim = window.view().grab().toImage().pixelColor(place);
    QVERIFY(bright != dark);
    QVERIFY(dim != dark);
    QVERIFY(dim != bright);
}

void tst_GridSimulator::windowNamesTheGridThatIsPluggedIn()
{
    QTemporaryDir folder;
    GridSimulator grid(folder.path());
    QVERIFY(grid.plug("m64-0123"));
    GridWindow window(grid, "m64-0123");
    QVERIFY(grid.plug("m128-0077")); // as a script does
    QVERIFY(window.windowTitle().endsWith("m128-0077"));
    grid.unplug();
    window.findChild<QPushButton *>()->click();
    QCOMPARE(grid.link(), folder.filePath("tty.usbserial-m128-0077"));
}

void tst_GridSimulator::programRunsAScript()
{
    QTemporaryDir folder;
    QFile script(folder.filePath("script"));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("# one tap\nhost\n\ntap 3 5\nbytes 0011\nnonsense\n");
    script.close();
    QProcess program;
    program.start(QW_GRID_SIMULATOR, {"--headless", "--folder", folder.filePath("devices"), "--script",
                                      script.fileName(), "--log", folder.filePath("log")});
    QVERIFY(program.waitForReadyRead());
    const QString link = QString::fromUtf8(program.readLine()).trimmed();
    QCOMPARE(link, folder.filePath("devices/tty.usbserial-m64-0123"));
    Host host(link);
    QVERIFY(host.send(QByteArray::fromHex("90 af")));
    QTRY_COMPARE(host.received(), QByteArray::fromHex("0035 1035 0011"));
    QTRY_COMPARE(contents(folder.filePath("log")).trimmed().split(' ').mid(1), (QByteArrayList{"90", "af"}));
    program.terminate();
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), 0);
    QVERIFY(program.readAllStandardError().contains("not understood: nonsense"));
}

void tst_GridSimulator::programIsLedByItsInput()
{
    QTemporaryDir folder;
    QProcess program;
    program.start(QW_GRID_SIMULATOR,
                  {"--headless", "--folder", folder.path(), "--serial", "m40h0020", "--script", "-"});
    QVERIFY(program.waitForReadyRead());
    const QString link = QString::fromUtf8(program.readLine()).trimmed();
    {
        Host host(link);
        program.write("host\npress 7 0\n");
        QTRY_COMPARE(host.received(), QByteArray::fromHex("0170"));
        QVERIFY(host.send(QByteArray::fromHex("ff71 0530")));
        QByteArray output("\n"); // which may come in pieces
        const auto isShown = [&] {
            program.write("show\n");
            program.waitForReadyRead();
            return (output += program.readAll()).contains("\n5\n........\n########\n........\n");
        };
        QTRY_VERIFY(isShown());
    }
    program.write("unplug\n");
    QTRY_VERIFY(!QFileInfo(link).isSymLink());
    program.write("plug m64-0123\n");
    QTRY_VERIFY(QFile::exists(folder.filePath("tty.usbserial-m64-0123")));
    program.write("quit\n");
    QVERIFY(program.waitForFinished());
}

void tst_GridSimulator::programTakesItsLinkAlong()
{
    QTemporaryDir folder;
    QProcess program;
    program.start(QW_GRID_SIMULATOR, {"--headless", "--folder", folder.path()});
    QVERIFY(program.waitForReadyRead());
    const QString link = QString::fromUtf8(program.readLine()).trimmed();
    QVERIFY(QFile::exists(link));
    program.terminate();
    QVERIFY(program.waitForFinished());
    QVERIFY(!QFileInfo(link).isSymLink());
}

QTEST_MAIN(tst_GridSimulator)
#include "tst_GridSimulator.moc"
