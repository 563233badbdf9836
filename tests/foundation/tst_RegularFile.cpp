#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/files/RegularFile.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace platform;

class tst_RegularFile : public QObject
{
    Q_OBJECT

private slots:
    void allBytesAreRead_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {0, 1, 4096, 1'000'000})
            QTest::addRow("%d", size) << size;
    }

    void allBytesAreRead()
    {
        QFETCH(int, size);
        const QByteArray data(size, 'x');
        QCOMPARE(readRegularFile(write(data)), std::optional(data));
    }

    void fileThatDoesNotTellItsSizeIsReadWhole()
    {
        QVERIFY(readRegularFile("/proc/self/status").value_or("").startsWith("Name:"));
        QVERIFY(readRegularFile("/proc/self/status")->contains("nonvoluntary_ctxt_switches")); // its last line
    }

    void longerFileThanAllowedIsNotRead()
    {
        const QByteArray path = write(QByteArray(100, 'x'));
        QVERIFY(readRegularFile(path, 100));
        QVERIFY(!readRegularFile(path, 99));
        QVERIFY(!readRegularFile("/proc/self/status", 99));
    }

    void fileOfHolesIsNotRead()
    {
        const QByteArray path = write("{ a = b; }");
        QVERIFY(PropertyList::fromFile(QFile::decodeName(path)));
        QVERIFY(QFile(QFile::decodeName(path)).resize(3'000'000'000)); // takes no room on the disk
        QVERIFY(!readRegularFile(path));
        QVERIFY(!PropertyList::fromFile(QFile::decodeName(path)));
    }

    void whatIsNoRegularFileIsNotRead()
    {
        const QByteArray pipe = QFile::encodeName(m_folder.filePath("pipe"));
        QCOMPARE(::mkfifo(pipe.constData(), 0600), 0); // nobody writes
        for (const QByteArray &path : {pipe, QFile::encodeName(m_folder.path()), QByteArray("/dev/zero"),
                                       QByteArray("/nowhere/file"), QByteArray()})
            QVERIFY2(!readRegularFile(path), path.constData());
    }

private:
    QByteArray write(const QByteArray &data) const
    {
        QFile file(m_folder.filePath("file"));
        if (file.open(QIODevice::WriteOnly))
            file.write(data);
        return QFile::encodeName(file.fileName());
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(tst_RegularFile)
#include "tst_RegularFile.moc"
