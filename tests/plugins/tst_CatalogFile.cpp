#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/plugins/catalog/CatalogFile.h>

#include <QDir>
#include <QFile>

#include <csignal>
#include <fcntl.h>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

/// Records in a file of their own, saved as a catalog does.
class Fixture
{
public:
    Fixture() { QDir().mkpath(folder.path() + "/support"); }

    std::shared_ptr<QWVSTDescription> add(const QString &name)
    {
        records.push_back(
            QWVSTDescription::descriptionWithState({{"path", QString("/" + name + ".vst")}, {"name", name}}));
        return records.back();
    }

    void save(std::size_t firstChanged)
    {
        file.save(records.size(), firstChanged,
                  [this](std::size_t i) -> const QWCatalogRecord & { return *records[i]; });
    }

    /// What a whole rewrite gives, by way of the plain property list writer.
    QByteArray expected() const
    {
        QVariantList states;
        for (const auto &record : records)
            states.append(record->state());
        return platform::PropertyList::toXml(states);
    }

    QByteArray content() const
    {
        QFile read(path);
        return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray("no file");
    }

    void overwrite(const QByteArray &bytes) const
    {
        QFile other(path);
        QVERIFY(other.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(other.write(bytes), bytes.size());
    }

    struct stat status() const
    {
        struct stat result
        {
        };
        ::stat(QFile::encodeName(path).constData(), &result);
        return result;
    }

    QTemporaryDir folder;
    QString path = folder.path() + "/support/db.plist";
    qw::CatalogFile file{path};
    std::vector<std::shared_ptr<QWVSTDescription>> records;
};

class tst_CatalogFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyCatalog();
    void namesOfAllKindsAreWrittenAsThePropertyListWriterDoes_data();
    void namesOfAllKindsAreWrittenAsThePropertyListWriterDoes();
    void nullCharacterDoesNotLoseTheCatalog();
    void changedTailIsWholeRewrite();
    void randomChangesAreWholeRewrites();
    void foreignChangeLeadsToWholeRewrite_data();
    void foreignChangeLeadsToWholeRewrite();
    void writesInPlace();
    void longerForeignFileIsCutToLength();
    void missingFoldersAreMade();
    void unwritablePlacesAreSilent_data();
    void unwritablePlacesAreSilent();
    void shortWriteLeadsToWholeRewrite();
    void onlyTheTailIsWritten();
    void readsMissingAsNone();
};

void tst_CatalogFile::emptyCatalog()
{
    Fixture f;
    f.save(0);
    QCOMPARE(f.content(), f.expected());
    f.add("A");
    f.save(0);
    QCOMPARE(f.content(), f.expected());
    f.records.clear();
    f.save(0);
    QCOMPARE(f.content(), f.expected());
}

void tst_CatalogFile::namesOfAllKindsAreWrittenAsThePropertyListWriterDoes_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << "";
    QTest::newRow("markup") << "a <b> & \"c\" 'd' ]]> &amp;";
    QTest::newRow("white space") << " \t\n\r\r\n ";
    QTest::newRow("emoji") << "🎛️ Délay 中文";
    QTest::newRow("right to left") << "שלום עולם";
    QTest::newRow("control characters") << QString("a\u0001b\u001fc\u007f");
    QTest::newRow("1,000 characters") << QString(1000, QChar(0x20AC));
    QTest::newRow("only escapes") << QString(1000, '&');
    QTest::newRow("lone surrogate") << "a" + QString(QChar(0xD83C)) + "b";
    for (const char16_t odd : {u'&', u'<', u'>', u'\r', u'\x7F', u'\x80', u'\xE9', u'\x200B', u'\x8001'})
        for (qsizetype place = 0; place < 19; ++place) {
            QString name = "eighteen letters ab";
            name[place] = odd;
            QTest::addRow("U+%04X at %d", unsigned(odd), int(place)) << name;
        }
}

void tst_CatalogFile::namesOfAllKindsAreWrittenAsThePropertyListWriterDoes()
{
    QFETCH(QString, name);
    Fixture f;
    f.add("before");
    f.add("x")->setName(name);
    f.add("after")->setVendor(name);
    f.save(0);
    QCOMPARE(f.content(), f.expected());
}

void tst_CatalogFile::nullCharacterDoesNotLoseTheCatalog()
{
    Fixture f;
    f.add("x")->setName(QString("many letters: a") + QChar(0) + "b");
    f.save(0);
    const auto list = platform::PropertyList::fromData(f.content());
    QVERIFY(list);
    QCOMPARE(list->toList().front().toMap().value("name"), QVariant("many letters: ab"));
}

void tst_CatalogFile::changedTailIsWholeRewrite()
{
    Fixture f;
    for (int i = 0; i < 50; ++i) {
        f.add(QString("Plug %1").arg(i));
        f.save(f.records.size() - 1);
        QCOMPARE(f.content(), f.expected());
        f.records.back()->setState({{"isInstrument", true}, {"vendor", "Acme"}, {"flags", 7LL}});
        f.save(f.records.size() - 1);
        QCOMPARE(f.content(), f.expected());
        f.records.back()->setName(""); // shorter than before
        f.save(f.records.size() - 1);
        QCOMPARE(f.content(), f.expected());
    }
    f.save(f.records.size()); // nothing changed
    QCOMPARE(f.content(), f.expected());
}

void tst_CatalogFile::randomChangesAreWholeRewrites()
{
    std::mt19937 random(7);
    Fixture f;
    for (int round = 0; round < 300; ++round) {
        std::size_t first = f.records.size();
        const auto any = [&] { return f.records.empty() ? 0 : random() % f.records.size(); };
        switch (random() % 4) {
        case 0:
            f.add(QString(static_cast<qsizetype>(random() % 300), '&'));
            break;
        case 1:
            first = any();
            f.records.resize(first); // the last ones go
            break;
        case 2:
            first = any();
            if (first < f.records.size())
                f.records.erase(f.records.begin() + static_cast<std::ptrdiff_t>(first));
            break;
        default:
            first = any();
            if (first < f.records.size())
                f.records[first]->setName(QString(static_cast<qsizetype>(random() % 50), 'x'));
        }
        f.save(first);
        QCOMPARE(f.content(), f.expected());
    }
}

void tst_CatalogFile::foreignChangeLeadsToWholeRewrite_data()
{
    QTest::addColumn<QString>("change");
    for (const char *change :
         {"appended", "truncated", "emptied", "overwritten", "removed", "replaced", "touched", "folder removed"})
        QTest::newRow(change) << change;
}

void tst_CatalogFile::foreignChangeLeadsToWholeRewrite()
{
    QFETCH(QString, change);
    Fixture f;
    f.add("A");
    f.add("B");
    f.save(0);
    const QByteArray content = f.content();
    if (change == "appended")
        f.overwrite(content + "rest");
    else if (change == "truncated")
        f.overwrite(content.first(content.size() / 2));
    else if (change == "emptied")
        f.overwrite({});
    else if (change == "overwritten")
        f.overwrite(QByteArray(content.size() + 1, 'x'));
    else if (change == "removed")
        QVERIFY(QFile::remove(f.path));
    else if (change == "replaced") {
        f.path += ".new";
        f.overwrite(QByteArray(content.size(), 'x'));
        f.path.chop(4);
        QCOMPARE(::rename(QFile::encodeName(f.path + ".new").constData(), QFile::encodeName(f.path).constData()), 0);
    } else if (change == "touched") {
        f.overwrite(QByteArray(content.size(), 'x')); // same size, same inode
        const timespec times[2] = {{1000, 0}, {1000, 0}};
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(f.path).constData(), times, 0), 0);
    } else {
        QVERIFY(QDir(f.folder.path() + "/support").removeRecursively());
    }
    f.add("C");
    f.save(2);
    QCOMPARE(f.content(), f.expected());
    f.add("D");
    f.save(3);
    QCOMPARE(f.content(), f.expected());
}

void tst_CatalogFile::writesInPlace()
{
    Fixture f;
    f.overwrite("someone's");
    QVERIFY(QFile::link(f.path, f.path + ".link"));
    const auto before = f.status();
    f.add("A");
    f.save(0);
    f.add("B");
    f.save(1);
    QCOMPARE(f.status().st_ino, before.st_ino);
    QCOMPARE(QDir(f.folder.path() + "/support").entryList(QDir::Files | QDir::Hidden).size(), 2);
}

void tst_CatalogFile::longerForeignFileIsCutToLength()
{
    Fixture f;
    f.overwrite(QByteArray(100'000, 'x'));
    f.add("A");
    f.save(0);
    QCOMPARE(f.content(), f.expected());
}

void tst_CatalogFile::missingFoldersAreMade()
{
    Fixture f;
    const QString path = f.folder.path() + "/a/b/c/db.plist";
    qw::CatalogFile file(path);
    f.add("A");
    file.save(1, 0, [&](std::size_t) -> const QWCatalogRecord & { return *f.records[0]; });
    QVERIFY(QFile::exists(path));
}

void tst_CatalogFile::unwritablePlacesAreSilent_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("a folder") << "support";
    QTest::newRow("below a file") << "support/file/db.plist";
    QTest::newRow("no such device") << "/dev/full";
    QTest::newRow("kernel's own") << "/proc/version";
    QTest::newRow("empty") << "";
}

void tst_CatalogFile::unwritablePlacesAreSilent()
{
    QFETCH(QString, path);
    Fixture f;
    QFile(f.folder.path() + "/support/file").open(QIODevice::WriteOnly);
    qw::CatalogFile file(path.isEmpty() || path.startsWith('/') ? path : f.folder.path() + '/' + path);
    f.add("A");
    const auto recordAt = [&](std::size_t) -> const QWCatalogRecord & { return *f.records[0]; };
    file.save(1, 0, recordAt);
    file.save(1, 0, recordAt);
    QVERIFY(!file.read().value_or(QByteArray()).contains("<plist"));
}

void tst_CatalogFile::shortWriteLeadsToWholeRewrite()
{
    Fixture f;
    f.add("A");
    f.save(0);
    const auto room = static_cast<rlim_t>(f.content().size() + 10);
    struct rlimit before;
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    ::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit narrow
    {
        room, before.rlim_max
    };
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &narrow), 0);
    f.add("B");
    f.save(1);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0);
    QVERIFY(f.content() != f.expected());
    f.save(2); // nothing changed since
    QCOMPARE(f.content(), f.expected());
}

void tst_CatalogFile::onlyTheTailIsWritten()
{
    Fixture f;
    for (int i = 0; i < 100; ++i)
        f.add(QString("Plug %1").arg(i));
    f.save(0);
    std::vector<std::size_t> asked;
    f.add("new");
    f.file.save(f.records.size(), 100, [&](std::size_t i) -> const QWCatalogRecord & {
        asked.push_back(i);
        return *f.records[i];
    });
    QCOMPARE(asked, std::vector<std::size_t>{100});
}

void tst_CatalogFile::readsMissingAsNone()
{
    Fixture f;
    QVERIFY(!f.file.read());
    f.overwrite("");
    QCOMPARE(f.file.read(), std::optional(QByteArray("")));
    f.overwrite("abc");
    QCOMPARE(f.file.read(), std::optional(QByteArray("abc")));
    QVERIFY(!qw::CatalogFile(f.folder.path()).read());
    QCOMPARE(::mkfifo(QFile::encodeName(f.path + ".fifo").constData(), 0600), 0);
    QVERIFY(!qw::CatalogFile(f.path + ".fifo").read()); // and does not wait for a writer
}

QW_TEST_MAIN(tst_CatalogFile)
#include "tst_CatalogFile.moc"
