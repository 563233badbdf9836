#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

/// A program that listens on the Linux machine as it is, with an input device that umockdev puts in front of it:
/// "/sys", the device node, the kernel's answers and its events.
class tst_RemoteOnKernelDevice : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void machineWithoutReceiverIsIdle();
    void everyButtonOfTheDeviceIsHeard();
    void deviceThatDoesNotTellItsKeysIsIdle();

private:
    /// Lines that the listening program prints until it heard @p expected calls.
    QStringList _listen(const QStringList &deviceArguments, int expected);

    QString m_run;
    QString m_errors; ///< What the program wrote to standard error.
};

void tst_RemoteOnKernelDevice::init()
{
    m_run = QStandardPaths::findExecutable("umockdev-run");
    if (m_run.isEmpty())
        QSKIP("umockdev is not installed");
}

QStringList tst_RemoteOnKernelDevice::_listen(const QStringList &deviceArguments, int expected)
{
    QProcess program;
    program.setWorkingDirectory(QW_RECEIVER_DIR);
    program.start(m_run, deviceArguments + QStringList{"--", QW_REMOTE_LISTENER, QString::number(expected)});
    program.waitForFinished(60'000);
    m_errors = program.readAllStandardError();
    return QString(program.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

void tst_RemoteOnKernelDevice::machineWithoutReceiverIsIdle()
{
    QCOMPARE(_listen({}, 1), QStringList("idle"));
    QVERIFY2(m_errors.contains("Finding the AppleIRController service failed"), qPrintable(m_errors));
}

void tst_RemoteOnKernelDevice::everyButtonOfTheDeviceIsHeard()
{
    const QStringList presses{"down 0", "up 0",   "down 1", "up 1",   "down 1", "up 1",   "down 5",
                              "up 5",   "down 4", "up 4",   "down 2", "up 2",   "down 3", "up 3"};
    const QStringList holds{"down 0", "down 1", "down 5", "up 5", "down 4", "up 4", "down 2", "up 2"};
    const QStringList device{"--device",       "receiver.umockdev",
                             "--ioctl",        "/dev/input/event5=receiver.ioctls",
                             "--evemu-events", "/dev/input/event5=presses.events"};
    QCOMPARE(_listen(device, int(presses.size() + holds.size())), QStringList("active") + presses + holds);
    QCOMPARE(m_errors, QString());
}

void tst_RemoteOnKernelDevice::deviceThatDoesNotTellItsKeysIsIdle()
{
    QCOMPARE(_listen({"--device", "receiver.umockdev"}, 1), QStringList("idle"));
    QVERIFY2(m_errors.contains("Retrieving the remote interface elements failed"), qPrintable(m_errors));
}

QTEST_GUILESS_MAIN(tst_RemoteOnKernelDevice)
#include "tst_RemoteOnKernelDevice.moc"
