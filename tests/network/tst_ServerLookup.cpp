#include <QWPlatform/linux/network/ServerLookup.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QNetworkProxy>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QUrl>

using platform::ServerLookup;

namespace
{
int threads()
{
    return int(QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

/// Starts, and returns once the thread that asks has gone: its answer then waits for the loop, which has not run.
bool answerWaits(ServerLookup &lookup)
{
    const int before = threads();
    lookup.start(QUrl("http://127.0.0.1/"));
    QElapsedTimer clock;
    clock.start();
    while (threads() > before && clock.elapsed() < 20'000)
        QThread::yieldCurrentThread();
    return threads() <= before;
}
} // namespace

class tst_ServerLookup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addressIsKnown();
    void answerThatWaitsIsForgotten();
    void answerThatWaitsIsForgottenForTheNext();
};

void tst_ServerLookup::addressIsKnown()
{
    ServerLookup lookup;
    QSignalSpy found(&lookup, &ServerLookup::found);
    lookup.start(QUrl("http://127.0.0.1/"));
    QTRY_COMPARE(found.size(), 1);
}

void tst_ServerLookup::answerThatWaitsIsForgotten()
{
    ServerLookup lookup;
    QSignalSpy found(&lookup, &ServerLookup::found);
    QSignalSpy failed(&lookup, &ServerLookup::failed);
    QVERIFY(answerWaits(lookup));
    lookup.cancel();
    QCoreApplication::sendPostedEvents();
    QVERIFY(found.isEmpty());
    QVERIFY(failed.isEmpty());
}

void tst_ServerLookup::answerThatWaitsIsForgottenForTheNext()
{
    ServerLookup lookup;
    QSignalSpy found(&lookup, &ServerLookup::found);
    QVERIFY(answerWaits(lookup));
    lookup.start(QUrl("http://127.0.0.2/"));
    QTRY_COMPARE(found.size(), 1);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(found.size(), 1);
}

QTEST_GUILESS_MAIN(tst_ServerLookup)
#include "tst_ServerLookup.moc"
