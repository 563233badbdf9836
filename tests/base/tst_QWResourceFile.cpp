#include "ResourceFileBytes.h"
#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWError.h>
#include <QWBase/files/QWResourceFile.h>

#include <QFile>

#include <cstring>
#include <sys/stat.h>

using platform::fourCharCode;

class tst_QWResourceFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resourcesComeByType();
    void thingWordsComeInHostOrder();
    void thingsThatShareTheirBytesShareThemInHostOrderToo();
    void missingFileIsAnError();
    void whatIsNoRegularFileIsAnError();
    void fileCutOffAnywhereIsAnErrorOrHarmless();
};

namespace
{
std::optional<QWResourceFile> open(const FakeSystem &system, const QByteArray &bytes, QWError *error = nullptr)
{
    system.writeFile("~/Library/a.rsrc", bytes);
    return QWResourceFile::initWithPath("~/Library/a.rsrc", error);
}
} // namespace

void tst_QWResourceFile::resourcesComeByType()
{
    FakeSystem system;
    platform::SystemScope current(system);
    QWError error;
    const auto file = open(system, resourceFileBytes(), &error);
    QVERIFY2(file, qPrintable(error.reason()));
    QVERIFY(!error.isSet());
    QCOMPARE(file->resourcesOfType(fourCharCode("STR ")), std::vector<QByteArray>{"\x11"
                                                                                  "Acme: Super Delay"});
    QCOMPARE(file->resourcesOfType(fourCharCode("thng")).size(), std::size_t(1));
    QVERIFY(file->resourcesOfType(fourCharCode("icns")).empty());
}

void tst_QWResourceFile::thingWordsComeInHostOrder()
{
    FakeSystem system;
    platform::SystemScope current(system);
    const auto file = open(system, resourceFileBytes());
    QVERIFY(file);
    const QByteArray thing = file->resourcesOfType(fourCharCode("thng")).front();
    QCOMPARE(thing.size(), 44);
    quint32 words[6];
    std::memcpy(words, thing.constData(), sizeof words);
    QCOMPARE(words[0], fourCharCode("aufx"));
    QCOMPARE(words[1], fourCharCode("Dlay"));
    QCOMPARE(words[2], fourCharCode("Acme"));
    QCOMPARE(words[5], fourCharCode("dlle"));
    quint16 codeId = 0;
    std::memcpy(&codeId, thing.constData() + 24, sizeof codeId);
    QCOMPARE(codeId, quint16(1000));
}

void tst_QWResourceFile::thingsThatShareTheirBytesShareThemInHostOrderToo()
{
    FakeSystem system;
    platform::SystemScope current(system);
    const auto one = open(system, resourceFileBytes());
    const auto two = open(system, resourceFileBytes(2));
    QVERIFY(one && two);
    const auto things = two->resourcesOfType(fourCharCode("thng"));
    QCOMPARE(things.size(), std::size_t(2));
    QCOMPARE(things[0], one->resourcesOfType(fourCharCode("thng")).front());
    QCOMPARE(static_cast<const void *>(things[0].constData()), static_cast<const void *>(things[1].constData()));
}

void tst_QWResourceFile::missingFileIsAnError()
{
    FakeSystem system;
    platform::SystemScope current(system);
    QWError error;
    QVERIFY(!QWResourceFile::initWithPath("/Library/none.rsrc", &error));
    QVERIFY(error.isSet());
    QVERIFY(error.message().contains("/Library/none.rsrc"));
    QVERIFY(!QWResourceFile::initWithPath("/Library/none.rsrc"));
}

void tst_QWResourceFile::whatIsNoRegularFileIsAnError()
{
    FakeSystem system;
    platform::SystemScope current(system);
    system.makeDirectory("/Library/folder.rsrc");
    QCOMPARE(::mkfifo(QFile::encodeName(system.real("/Library/pipe.rsrc")).constData(), 0600), 0); // nobody writes
    for (const char *path : {"/Library/folder.rsrc", "/Library/pipe.rsrc"}) {
        QWError error;
        QVERIFY(!QWResourceFile::initWithPath(path, &error));
        QVERIFY(error.isSet());
    }
}

void tst_QWResourceFile::fileCutOffAnywhereIsAnErrorOrHarmless()
{
    FakeSystem system;
    platform::SystemScope current(system);
    const QByteArray whole = resourceFileBytes();
    for (qsizetype size = 0; size < whole.size(); ++size) {
        QWError error;
        const auto file = open(system, whole.first(size), &error);
        QVERIFY2(!file, qPrintable(QString("%1 bytes").arg(size)));
        QVERIFY(error.isSet());
    }
}

QW_TEST_MAIN(tst_QWResourceFile)
#include "tst_QWResourceFile.moc"
