#include "RecorderTools.h"

#include <simulators/HttpServer.h>

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace recordertest;

/// Takes of a recorder that serves on this machine, downloaded by what downloads for users.
class tst_RealRecordings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_browser = std::make_unique<NotingBrowser>();
        m_server = std::make_unique<HttpServer>();
        QVERIFY(m_server->listen());
        m_sound = QByteArray("sound ").repeated(100'000);
        m_server->answer("/download", HttpReply::text(m_sound, "audio/x-wav"));
    }

    void cleanup()
    {
        m_device.reset();
        m_server.reset();
        m_browser.reset();
        m_folder.reset();
    }

    void aTakeComesWholeUnderItsTitle()
    {
        download("Café <1>");
        QTRY_COMPARE(m_browser->finished, QStringList{"Café <1>"});
        QCOMPARE(files(), QStringList{"Café <1>.wav"});
        QCOMPARE(content("Café <1>.wav"), m_sound);
        QCOMPARE(m_server->requests().back().query.queryItemValue("filename"), "take");
        QCOMPARE(m_server->requests().back().query.queryItemValue("format"), "wav");
        QCOMPARE(m_browser->fractions.back(), 1.0F);
    }

    void aFileThatIsThereStays()
    {
        download("One");
        QTRY_COMPARE(m_browser->finished.size(), 1);
        m_server->answer("/download", HttpReply::text("other"));
        download("One");
        QTRY_COMPARE(m_browser->finished.size(), 2);
        QCOMPARE(files().size(), 2);
        QCOMPARE(content("One.wav"), m_sound);
        QCOMPARE(m_device->recordings().front()->downloadPath(), m_folder->filePath("One.wav"));
    }

    void aTitleThatNoFileSystemTakesIsShortened()
    {
        download(QString(1000, u'x'));
        QTRY_COMPARE(m_browser->finished.size(), 1);
        QCOMPARE(files().size(), 1);
        QVERIFY(files().front().startsWith("xxx") && files().front().endsWith(".wav"));
        QCOMPARE(content(files().front()), m_sound);
    }

    void aFolderInTheTitleIsMade()
    {
        download("Day 1/One");
        QTRY_COMPARE(m_browser->finished.size(), 1);
        QCOMPARE(content("Day 1/One.wav"), m_sound);
    }

    /// Of 800 bytes each, which the server makes while it sends them: 80 MB.
    void hundredThousandTakesAreLoaded()
    {
        constexpr qint64 takes = 100'000;
        constexpr qint64 entrySize = 800;
        const QByteArray begin = "<plist version=\"1.0\"><array>";
        const QByteArray end = "</array></plist>";
        const qint64 size = begin.size() + takes * entrySize + end.size();
        HttpReply list;
        list.body = HttpBody::generated(size, [=](qint64 offset, qint64 most) {
            if (offset < begin.size())
                return begin.mid(offset, most);
            const qint64 place = offset - begin.size();
            if (place >= takes * entrySize)
                return end.mid(place - takes * entrySize, most);
            const QByteArray take = "<dict><key>title</key><string>Take " + QByteArray::number(place / entrySize) +
                                    "</string><key>filename</key><string>take</string></dict>";
            return take.leftJustified(entrySize, '\n').mid(place % entrySize, most);
        });
        m_server->answer("/list.plist", list);
        resolve();
        QTRY_VERIFY_WITH_TIMEOUT(!m_device->isLooking(), 120'000);
        QCOMPARE(m_device->recordings().size(), size_t(takes));
        QCOMPARE(m_device->recordings().front()->title(), "Take 0");
        QCOMPARE(m_device->recordings().back()->title(), "Take 99999");
    }

    void failuresLeaveNoFile_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("status");
        QTest::newRow("404") << "One" << 404;
        QTest::newRow("a folder that no file system takes") << QString(1000, u'x') + "/One" << 200;
        QTest::newRow("a path out of the folder") << "../One" << 200;
    }

    void failuresLeaveNoFile()
    {
        QFETCH(const QString, title);
        QFETCH(const int, status);
        if (status != 200)
            m_server->answer("/download", HttpReply::failure(status));
        download(title);
        QTRY_COMPARE(m_browser->failures.size(), 1);
        QVERIFY(!m_browser->failures.front().isEmpty());
        QVERIFY(files().isEmpty());
    }

    void aStoppedTakeLeavesNoFile()
    {
        HttpReply slow = HttpReply::text(m_sound);
        slow.pieceSize = 1000;
        slow.pieceDelay = std::chrono::milliseconds(1);
        m_server->answer("/download", slow);
        m_browser->stops = true;
        download("One");
        QTRY_COMPARE(m_browser->stopped, QStringList{"One"});
        QTRY_VERIFY(files().isEmpty());
    }

    void aTakeThatGoesInMidDownloadLeavesNoFile()
    {
        HttpReply endless = HttpReply::text(m_sound);
        endless.cutAfter = 1000;
        endless.stayAfterPieces = true;
        m_server->answer("/download", endless);
        download("One");
        QTRY_VERIFY(!m_browser->fractions.empty());
        m_device.reset();
        QTRY_VERIFY(files().isEmpty());
        QVERIFY(m_browser->failures.isEmpty());
    }

private:
    void resolve()
    {
        const auto service = std::make_shared<TestService>("Vesk on Studio");
        m_device = QWVeskDevice::deviceWithNetServiceBrowser(service, *m_browser);
        service->resolve({rawAddress("127.0.0.1")}, QUrl(m_server->address()).port());
    }

    void download(const QString &title)
    {
        const QVariantList list{QVariantMap{{"title", title}, {"filename", "take"}}};
        m_server->answer("/list.plist", HttpReply::text(platform::PropertyList::toXml(list)));
        resolve();
        QTRY_VERIFY(!m_device->isLooking());
        QCOMPARE(m_device->recordings().size(), size_t(1));
        m_device->recordings().front()->downloadToAs(m_folder->path(), "wav");
    }

    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden); }

    QByteArray content(const QString &name) const
    {
        QFile file(m_folder->filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<NotingBrowser> m_browser;
    std::unique_ptr<HttpServer> m_server;
    std::shared_ptr<QWVeskDevice> m_device;
    QByteArray m_sound;
};

QTEST_GUILESS_MAIN(tst_RealRecordings)
#include "tst_RealRecordings.moc"
