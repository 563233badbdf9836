#include "OrdinaryUser.h"

#include <QWPlatform/foundation/Clock.h>
#include <QWUtilities/plugins/scan/TrialLock.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <functional>
#include <optional>

using namespace std::chrono_literals;

namespace
{
/// Time passes while someone sleeps, and the test says what happens meanwhile.
class ScriptedClock : public platform::Clock
{
public:
    QDateTime now() const override { return {}; }
    qint64 monotonicNanoseconds() const override { return elapsed.count(); }
    void sleep(std::chrono::nanoseconds time, std::stop_token) override
    {
        elapsed += time;
        if (whileSleeping)
            whileSleeping();
    }

    std::chrono::nanoseconds elapsed{0};
    std::function<void()> whileSleeping;
};
} // namespace

class tst_TrialLock : public QObject
{
    Q_OBJECT

private slots:
    void freeLockIsTakenAtOnce()
    {
        const qw::TrialLock lock(path(), m_clock);
        QVERIFY(!lock.isHeldByAnother());
        QCOMPARE(m_clock.elapsed, 0ns);
    }

    void secondWaitsUntilTheFirstLetsGo()
    {
        std::optional<qw::TrialLock> first(std::in_place, path(), m_clock);
        m_clock.whileSleeping = [&] {
            if (m_clock.elapsed > 1s)
                first.reset();
        };
        const qw::TrialLock second(path(), m_clock);
        QVERIFY(!second.isHeldByAnother());
        QVERIFY(!first);
    }

    void holderThatDoesNotEndIsNotWaitedForForEver()
    {
        const qw::TrialLock first(path(), m_clock);
        const qw::TrialLock second(path(), m_clock);
        QVERIFY(second.isHeldByAnother());
        QVERIFY(m_clock.elapsed > 1min && m_clock.elapsed < 10min);
    }

    void eachTrialOfOthersIsWaitedForAnew()
    {
        std::optional<qw::TrialLock> other(std::in_place, path(), m_clock);
        auto since = m_clock.elapsed;
        m_clock.whileSleeping = [&] {
            if (m_clock.elapsed < 10min && m_clock.elapsed - since > 1min) {
                since = m_clock.elapsed;
                const QDateTime before = lastTaken();
                do { // a file's time moves on in steps of some milliseconds
                    other.reset();
                    other.emplace(path(), m_unwatchedClock);
                } while (lastTaken() == before);
            } else if (m_clock.elapsed >= 10min) {
                other.reset();
            }
        };
        const qw::TrialLock lock(path(), m_clock);
        QVERIFY(!lock.isHeldByAnother());
        QVERIFY(m_clock.elapsed >= 10min);
    }

    void lockEndsWithItsHolder()
    {
        QProcess holder;
        holder.start("flock", {path(), "sh", "-c", "echo $$; exec sleep 600"});
        QVERIFY2(holder.waitForReadyRead(), qPrintable(holder.errorString()));
        const pid_t sleeper = holder.readAllStandardOutput().trimmed().toInt(); // it has the file open as well
        QVERIFY(sleeper > 1);
        {
            const qw::TrialLock lock(path(), m_clock);
            QVERIFY(lock.isHeldByAnother());
        }
        ::kill(sleeper, SIGKILL);
        QVERIFY(holder.waitForFinished());
        const qw::TrialLock lock(path(), m_clock);
        QVERIFY(!lock.isHeldByAnother());
    }

    void fileOfAnotherUserIsALockToo()
    {
        {
            const qw::TrialLock makesTheFile(path(), m_clock);
        }
        QVERIFY(QFile::setPermissions(path(), QFileDevice::ReadOwner | QFileDevice::ReadOther));
        const OrdinaryUser user;
        QVERIFY(user.isReady);
        const qw::TrialLock first(path(), m_clock);
        const qw::TrialLock second(path(), m_clock);
        QVERIFY(!first.isHeldByAnother() && second.isHeldByAnother());
    }

    void placeWithoutFilesIsNoReasonToWait()
    {
        const qw::TrialLock lock(path() + "/nowhere", m_clock);
        QVERIFY(!lock.isHeldByAnother());
        QCOMPARE(m_clock.elapsed, 0ns);
    }

    void init()
    {
        m_folder.emplace();
        m_clock.elapsed = 0ns;
        m_clock.whileSleeping = nullptr;
    }

private:
    QString path() const { return m_folder->filePath("lock"); }
    QDateTime lastTaken() const { return QFileInfo(path()).lastModified(); }

    std::optional<QTemporaryDir> m_folder;
    ScriptedClock m_clock;
    ScriptedClock m_unwatchedClock;
};

QTEST_GUILESS_MAIN(tst_TrialLock)
#include "tst_TrialLock.moc"
