#include <QWPlatform/linux/network/DownloadFile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <cstring>
#include <unistd.h>

using platform::DownloadFile;

namespace
{
const QByteArray contents = "what was downloaded";

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<none>");
}

void put(const QString &path, const QByteArray &data = "older")
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
        qFatal("The file cannot be written");
}
} // namespace

/// With each of the ways in which a disk may take the file.
class tst_DownloadFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void fileAppearsOnceItIsWhole();
    void fileThatIsNotPlacedGoes();
    void clearedFileBeginsAnew();
    void fileIsReplacedWhenAsked();
    void whatIsThereStays_data();
    void whatIsThereStays();
    void whatAppearsMeanwhileStays();
    void freeNameIsFoundAmongMany_data();
    void freeNameIsFoundAmongMany();
    void longNameIsShortened();
    void folderThatWentIsTold();
    void folderThatCannotBeWrittenIsTold();
    void nameWithoutMeaningIsRefused_data();
    void nameWithoutMeaningIsRefused();
    void rightsAreThoseOfNewFiles();
    void killedProcessLeavesNothingUnderTheName();

private:
    QString _path(const QString &name = "Take 1.wav") const { return m_folder->filePath(name); }
    std::unique_ptr<DownloadFile> _written(const QString &path, bool overwrite = false) const;
    QStringList _shown() const { return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }
    QStringList _all() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

Q_DECLARE_METATYPE(DownloadFile::Means)

void tst_DownloadFile::initTestCase_data()
{
    QTest::addColumn<DownloadFile::Means>("means");
    QTest::newRow("nameless") << DownloadFile::Means{.nameless = true, .exclusiveRename = true};
    QTest::newRow("renamed") << DownloadFile::Means{.nameless = false, .exclusiveRename = true};
    QTest::newRow("linked") << DownloadFile::Means{.nameless = false, .exclusiveRename = false};
    QTest::newRow("reserved") << DownloadFile::Means{.nameless = false, .exclusiveRename = false, .links = false};
}

std::unique_ptr<DownloadFile> tst_DownloadFile::_written(const QString &path, bool overwrite) const
{
    QFETCH_GLOBAL(const DownloadFile::Means, means);
    auto file = std::make_unique<DownloadFile>(path, overwrite, means);
    const std::error_code opened = file->open();
    const std::error_code written = opened ? opened : file->write(contents);
    return written ? nullptr : std::move(file);
}

void tst_DownloadFile::fileAppearsOnceItIsWhole()
{
    const auto file = _written(_path());
    QVERIFY(file);
    QCOMPARE(_shown(), QStringList());
    QVERIFY(!file->place());
    QCOMPARE(file->path(), _path());
    QCOMPARE(_all(), QStringList("Take 1.wav"));
    QCOMPARE(contentsOf(_path()), contents);
    QCOMPARE(file->descriptor(), -1);
}

void tst_DownloadFile::fileThatIsNotPlacedGoes()
{
    QVERIFY(_written(_path())); // and destroyed
    QCOMPARE(_all(), QStringList());
}

void tst_DownloadFile::clearedFileBeginsAnew()
{
    const auto file = _written(_path());
    QVERIFY(!file->clear());
    QVERIFY(!file->write("new"));
    QVERIFY(!file->place());
    QCOMPARE(contentsOf(_path()), "new");
}

void tst_DownloadFile::fileIsReplacedWhenAsked()
{
    put(_path());
    const auto file = _written(_path(), true);
    QCOMPARE(contentsOf(_path()), "older");
    QVERIFY(!file->place());
    QCOMPARE(contentsOf(_path()), contents);
    QCOMPARE(file->path(), _path());
    QCOMPARE(_all(), QStringList("Take 1.wav"));
}

void tst_DownloadFile::whatIsThereStays_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *const kind : {"file", "folder", "link", "link to nothing"})
        QTest::newRow(kind) << QString(kind);
}

void tst_DownloadFile::whatIsThereStays()
{
    QFETCH(const QString, kind);
    put(_path("other"), "other");
    if (kind == u"file")
        put(_path());
    else if (kind == u"folder")
        QVERIFY(QDir(m_folder->path()).mkdir("Take 1.wav"));
    else
        QVERIFY(QFile::link(kind == u"link" ? _path("other") : _path("none"), _path()));
    const QFileInfo before(_path());
    const auto file = _written(_path());
    QVERIFY(!file->place());
    QCOMPARE(file->path(), _path("Take 1 2.wav"));
    QCOMPARE(contentsOf(file->path()), contents);
    QCOMPARE(contentsOf(_path("other")), "other");
    QCOMPARE(_all(), QStringList({"Take 1 2.wav", "Take 1.wav", "other"}));
    QCOMPARE(QFileInfo(_path()).isSymLink(), before.isSymLink());
}

void tst_DownloadFile::whatAppearsMeanwhileStays()
{
    const auto first = _written(_path());
    const auto second = _written(_path());
    put(_path());
    put(_path("Take 1 2.wav"));
    QVERIFY(!first->place());
    QVERIFY(!second->place());
    QCOMPARE(first->path(), _path("Take 1 3.wav"));
    QCOMPARE(second->path(), _path("Take 1 4.wav"));
    QCOMPARE(contentsOf(_path()), "older");
    QCOMPARE(contentsOf(_path("Take 1 2.wav")), "older");
}

void tst_DownloadFile::freeNameIsFoundAmongMany_data()
{
    QTest::addColumn<int>("taken");
    for (const int taken : {1, 2, 3, 4, 5, 7, 8, 9, 16, 17, 1000})
        QTest::addRow("%d", taken) << taken;
}

void tst_DownloadFile::freeNameIsFoundAmongMany()
{
    QFETCH(const int, taken);
    put(_path());
    for (int number = 2; number <= taken; ++number)
        put(_path(QString("Take 1 %1.wav").arg(number)), {});
    const auto file = _written(_path());
    QVERIFY(!file->place());
    QCOMPARE(file->path(), _path(QString("Take 1 %1.wav").arg(taken + 1)));
}

void tst_DownloadFile::longNameIsShortened()
{
    const QString path = _path(QString(1000, u'ü') + ".wav");
    for (const auto &[units, end] : {std::pair(125, ".wav"), std::pair(124, " 2.wav")}) {
        const auto file = _written(path);
        QVERIFY(file);
        QVERIFY(!file->place());
        QCOMPARE(file->path(), _path(QString(units, u'ü') + end));
        QCOMPARE(contentsOf(file->path()), contents);
    }
}

void tst_DownloadFile::folderThatWentIsTold()
{
    QVERIFY(QDir(m_folder->path()).mkdir("takes"));
    const auto file = _written(_path("takes/Take 1.wav"));
    QVERIFY(QDir(_path("takes")).removeRecursively());
    QCOMPARE(file->place().value(), ENOENT);
    QVERIFY(!QFile::exists(_path("takes")));
}

void tst_DownloadFile::folderThatCannotBeWrittenIsTold()
{
    QFETCH_GLOBAL(const DownloadFile::Means, means);
    if (::geteuid() == 0) { // who may write everywhere but where the kernel itself refuses
        DownloadFile file("/proc/self/Take 1.wav", false, means);
        const std::error_code error = file.open();
        QVERIFY(error.value() == ENOENT || error.value() == EACCES || error.value() == EPERM);
        return;
    }
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
    DownloadFile file(_path(), false, means);
    QCOMPARE(file.open().value(), EACCES);
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void tst_DownloadFile::nameWithoutMeaningIsRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("none") << "";
    QTest::newRow("cut by a zero") << QString("Take") + QChar(0) + ".wav";
}

void tst_DownloadFile::nameWithoutMeaningIsRefused()
{
    QFETCH(const QString, name);
    QFETCH_GLOBAL(const DownloadFile::Means, means);
    DownloadFile file(m_folder->path() + '/' + name, false, means);
    QCOMPARE(file.open().value(), EINVAL);
    QCOMPARE(_all(), QStringList());
}

void tst_DownloadFile::rightsAreThoseOfNewFiles()
{
    put(_path("new"));
    const auto file = _written(_path());
    QVERIFY(!file->place());
    QCOMPARE(QFileInfo(_path()).permissions(), QFileInfo(_path("new")).permissions());
}

void tst_DownloadFile::killedProcessLeavesNothingUnderTheName()
{
    QFETCH_GLOBAL(const DownloadFile::Means, means);
    QProcess child;
    child.start(QFileInfo("/proc/self/exe").symLinkTarget(),
                {"--hold", _path(), QString::number(means.nameless), QString::number(means.exclusiveRename),
                 QString::number(means.links)});
    QVERIFY(child.waitForStarted());
    QTRY_VERIFY(child.canReadLine() || child.state() == QProcess::NotRunning);
    QCOMPARE(child.readAll(), "written\n");
    child.kill();
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    QCOMPARE(_shown(), QStringList());
    QCOMPARE(_all().size(), means.nameless ? 0 : 1);
}

namespace
{
/// A download that stands still until the process is ended.
int hold(char **arguments)
{
    const DownloadFile::Means means{
        .nameless = *arguments[1] == '1', .exclusiveRename = *arguments[2] == '1', .links = *arguments[3] == '1'};
    DownloadFile file(arguments[0], false, means);
    if (file.open() || file.write(contents))
        return 1;
    std::puts("written");
    std::fflush(stdout);
    for (;;)
        ::pause();
}
} // namespace

int main(int argc, char **argv)
{
    if (argc == 6 && std::strcmp(argv[1], "--hold") == 0)
        return hold(argv + 2);
    QCoreApplication application(argc, argv);
    tst_DownloadFile test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_DownloadFile.moc"
