#include <QWPlatform/System.h>
#include <QWPlatform/foundation/processes/ChildProcesses.h>
#include <QWPlatform/machine/SystemServices.h>

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace platform;

namespace
{
constexpr rlim_t allowedSize = 100;

/// While it stands, no file of this process grows beyond the size.
class SmallFiles
{
public:
    SmallFiles()
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit small{allowedSize, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }

    ~SmallFiles() { ::setrlimit(RLIMIT_FSIZE, &m_before); }

    SmallFiles(const SmallFiles &) = delete;
    SmallFiles &operator=(const SmallFiles &) = delete;

private:
    rlimit m_before;
};
} // namespace

class tst_FileSizeSignal : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::current(); } // the machine itself

    void writeBeyondTheAllowedSizeFailsAndEndsNothing()
    {
        const QTemporaryDir folder;
        const int file = ::open(QFile::encodeName(folder.filePath("file")).constData(), O_CREAT | O_WRONLY, 0600);
        QVERIFY(file >= 0);
        ssize_t first = 0;
        ssize_t second = 0;
        int error = 0;
        {
            const SmallFiles small;
            const QByteArray data(2 * allowedSize, 'x');
            first = ::write(file, data.constData(), data.size());
            second = ::write(file, data.constData(), data.size());
            error = errno;
        }
        ::close(file);
        QCOMPARE(first, ssize_t(allowedSize));
        QCOMPARE(second, ssize_t(-1));
        QCOMPARE(error, EFBIG);
    }

    void childrenAreEndedByItAsUsual()
    {
        const auto result = SystemServices::current().childProcesses->run({"/bin/sh", {"-c", "kill -XFSZ $$"}, false});
        QVERIFY(result.started);
        QVERIFY(!result.exited);
        QCOMPARE(result.status, SIGXFSZ);
    }
};

QTEST_GUILESS_MAIN(tst_FileSizeSignal)
#include "tst_FileSizeSignal.moc"
