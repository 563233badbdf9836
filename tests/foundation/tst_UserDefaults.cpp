#include "NoThreads.h"

#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QPoint>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace platform;

namespace
{
constexpr int keysOfAWriter = 40;

/// What the second program does: sets its own keys one by one, each written on its own.
int writeKeys(const QString &path, const QString &prefix)
{
    bool good = true;
    for (int i = 0; i < keysOfAWriter; ++i) {
        UserDefaults defaults(path);
        defaults.setObject(prefix + QString::number(i), i);
        good = defaults.synchronize() && good;
    }
    return good ? 0 : 1;
}
} // namespace

class tst_UserDefaults : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("Library/Preferences/com.example.host.plist");
    }

    void whatWasSetIsSeenAtOnceAndStoredAtTheEnd()
    {
        {
            UserDefaults defaults(m_path);
            defaults.setObject("a", "x");
            QCOMPARE(defaults.object("a"), QVariant("x"));
            QVERIFY(!QFile::exists(m_path));
        }
        QCOMPARE(stored(), (QVariantMap{{"a", "x"}}));
        QCOMPARE(UserDefaults(m_path).string("a"), "x");
    }

    void changesAreWrittenByThemselves()
    {
        UserDefaults defaults(m_path);
        defaults.setObject("a", 1);
        QTRY_COMPARE(stored(), (QVariantMap{{"a", 1}}));
        defaults.removeObject("a");
        QTRY_COMPARE(stored(), QVariantMap());
    }

    void registeredValuesAreUsedButNeverWritten()
    {
        UserDefaults defaults(m_path);
        defaults.registerDefaults({{"a", 1}, {"b", 1}});
        defaults.registerDefaults({{"b", 2}});
        QCOMPARE(defaults.integer("a"), 1);
        QCOMPARE(defaults.integer("b"), 2);
        QVERIFY(!defaults.isSet("a"));
        defaults.setObject("a", 3);
        QVERIFY(defaults.isSet("a"));
        QCOMPARE(defaults.integer("a"), 3);
        QVERIFY(defaults.synchronize());
        QCOMPARE(stored(), (QVariantMap{{"a", 3}}));
        defaults.removeObject("a");
        QVERIFY(!defaults.isSet("a"));
        QCOMPARE(defaults.integer("a"), 1);
    }

    void valuesAreConverted_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("boolean");
        QTest::addColumn<qlonglong>("integer");
        QTest::addColumn<double>("real");
        QTest::addColumn<QString>("string");
        QTest::newRow("true") << QVariant(true) << true << 1LL << 1.0 << "1";
        QTest::newRow("false") << QVariant(false) << false << 0LL << 0.0 << "0";
        QTest::newRow("integer") << QVariant(-7LL) << true << -7LL << -7.0 << "-7";
        QTest::newRow("real") << QVariant(-2.75) << true << -2LL << -2.75 << "-2.75";
        QTest::newRow("huge real") << QVariant(1e30) << true << 0LL << 1e30 << "1e+30";
        QTest::newRow("YES") << QVariant("YES") << true << 0LL << 0.0 << "YES";
        QTest::newRow("NO") << QVariant("NO") << false << 0LL << 0.0 << "NO";
        QTest::newRow("number in text") << QVariant("12") << true << 12LL << 12.0 << "12";
        QTest::newRow("text") << QVariant("x") << false << 0LL << 0.0 << "x";
        QTest::newRow("array") << QVariant(QVariantList{1}) << false << 0LL << 0.0 << "";
        QTest::newRow("data") << QVariant(QByteArray("1")) << false << 0LL << 0.0 << "";
        QTest::newRow("none") << QVariant() << false << 0LL << 0.0 << "";
    }

    void valuesAreConverted()
    {
        QFETCH(QVariant, value);
        UserDefaults defaults(m_path);
        defaults.registerDefaults({{"k", value}});
        QTEST(defaults.boolean("k"), "boolean");
        QTEST(defaults.integer("k"), "integer");
        QTEST(defaults.real("k"), "real");
        QTEST(defaults.string("k"), "string");
    }

    void whatAListCannotHoldIsRefused_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QVariant deep = true;
        for (int level = 0; level < 512; ++level)
            deep = QVariantList{deep};
        QTest::newRow("class") << "k" << QVariant(QPoint(1, 2));
        QTest::newRow("null character in the text") << "k" << QVariant(QString(QChar(0)));
        QTest::newRow("null character in the key") << QString("k") + QChar(0) << QVariant(1);
        QTest::newRow("one level more than a file may have") << "k" << deep;
    }

    void whatAListCannotHoldIsRefused()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        UserDefaults defaults(m_path);
        defaults.setObject("k", "old");
        QVERIFY(defaults.synchronize());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("The setting \"k\" cannot hold"));
        defaults.setObject(key, value);
        defaults.setObject("other", "new");
        QVERIFY(defaults.synchronize());
        QCOMPARE(stored(), (QVariantMap{{"k", "old"}, {"other", "new"}}));
    }

    void onlyChangedKeysAreApplied()
    {
        UserDefaults first(m_path);
        UserDefaults second(m_path);
        first.setObject("a", 1);
        first.setObject("b", 1);
        QVERIFY(first.synchronize());
        second.setObject("b", 2);
        second.setObject("c", 2);
        QVERIFY(second.synchronize());
        first.removeObject("a");
        QVERIFY(first.synchronize());
        QCOMPARE(stored(), (QVariantMap{{"b", 2}, {"c", 2}}));
        QCOMPARE(first.integer("c"), 2); // read again with the writing
    }

    void programsThatWriteTogetherLoseNothing()
    {
        QProcess others[2];
        for (QProcess &other : others) {
            const QString prefix = &other == others ? "one " : "two ";
            other.start(QCoreApplication::applicationFilePath(), {"--write-keys", m_path, prefix});
        }
        QCOMPARE(writeKeys(m_path, "own "), 0);
        for (QProcess &other : others) {
            QVERIFY(other.waitForFinished());
            QCOMPARE(other.exitCode(), 0);
        }
        QCOMPARE(stored().size(), 3 * keysOfAWriter);
    }

    void unreadableFilesAreSetAside()
    {
        const QByteArray garbage[] = {"<plist><dict>", PropertyList::toXml(QVariantList{1})};
        for (const QByteArray &data : garbage) {
            write(data);
            UserDefaults defaults(m_path);
            QCOMPARE(defaults.object("a"), QVariant());
            QCOMPARE(read(m_path), data); // asking changes nothing
            defaults.setObject("a", 1);
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be read; they are kept as"));
            QVERIFY(defaults.synchronize());
            QCOMPARE(stored(), (QVariantMap{{"a", 1}}));
        }
        QCOMPARE(read(m_path + ".unreadable"), garbage[0]);
        QCOMPARE(read(m_path + ".unreadable 2"), garbage[1]);
    }

    void failuresKeepTheChanges()
    {
        const QString folder = m_folder->filePath("Library");
        QFile blocker(folder); // a file where the folder should be
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        UserDefaults defaults(m_path);
        defaults.setObject("a", 1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be written now"));
        QVERIFY(!defaults.synchronize());
        QCOMPARE(defaults.integer("a"), 1);
        QVERIFY(blocker.remove());
        QVERIFY(defaults.synchronize());
        QCOMPARE(stored(), (QVariantMap{{"a", 1}}));
    }

    void failuresAreTriedAgain()
    {
        UserDefaults defaults(m_path);
        QDir().mkpath(QFileInfo(m_path).path());
        QLockFile lock(m_path + ".lock");
        QVERIFY(lock.lock());
        defaults.setObject("a", 1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be written now"));
        QVERIFY(!defaults.synchronize());
        lock.unlock();
        QTRY_COMPARE_WITH_TIMEOUT(stored(), (QVariantMap{{"a", 1}}), 20'000);
    }

    void mainThreadDoesNotWaitForALockThatOthersHold()
    {
        makeFolder();
        QLockFile lock(m_path + ".lock");
        QVERIFY(lock.lock());
        UserDefaults defaults(m_path);
        defaults.setObject("a", 1);
        QTest::failOnWarning(QRegularExpression("cannot be written now"));
        turnPastTheDelay(); // the loop turns although the writing has begun
        QVERIFY(!QFile::exists(m_path));
        lock.unlock();
        QTRY_COMPARE_WITH_TIMEOUT(stored(), (QVariantMap{{"a", 1}}), 10'000);
    }

    void lockThatIsHeldIsToldOnce()
    {
        makeFolder();
        QLockFile lock(m_path + ".lock");
        QVERIFY(lock.lock());
        UserDefaults defaults(m_path);
        defaults.setObject("a", 1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be written now"));
        QVERIFY(!defaults.synchronize());
        QTest::failOnWarning(QRegularExpression("cannot be written now"));
        QVERIFY(!defaults.synchronize());
        lock.unlock();
        QVERIFY(defaults.synchronize());
        QCOMPARE(stored(), (QVariantMap{{"a", 1}}));
    }

    void changesDuringAWritingAreNotLost()
    {
        UserDefaults defaults(m_path);
        makeFolder();
        QLockFile lock(m_path + ".lock");
        QVERIFY(lock.lock());
        defaults.setObject("a", 1);
        defaults.setObject("b", 1);
        turnPastTheDelay(); // a thread has taken them
        defaults.setObject("a", 2);
        defaults.removeObject("b");
        QCOMPARE(defaults.integer("a"), 2);
        QVERIFY(!defaults.isSet("b"));
        lock.unlock();
        QVERIFY(defaults.synchronize());
        QCOMPARE(stored(), (QVariantMap{{"a", 2}}));
    }

    void lockThatACrashLeftEmptyIsTakenOver()
    {
        makeFolder();
        QFile left(m_path + ".lock");
        QVERIFY(left.open(QIODevice::WriteOnly));
        left.close();
        UserDefaults defaults(m_path);
        defaults.setObject("a", 1);
        QTRY_COMPARE_WITH_TIMEOUT(stored(), (QVariantMap{{"a", 1}}), 10'000); // before, 30 seconds passed
    }

    void whatIsNoFileInPlaceOfTheLockIsMovedAside_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("folder") << "mkdir %1 && touch %1/x";
        QTest::newRow("pipe") << "mkfifo %1";
        QTest::newRow("link to nothing") << "ln -s /nowhere/at/all %1";
    }

    void whatIsNoFileInPlaceOfTheLockIsMovedAside()
    {
        QFETCH(QString, command);
        makeFolder();
        const QString lock = m_path + ".lock";
        QCOMPARE(QProcess::execute("/bin/sh", {"-c", command.arg('\'' + lock + '\'')}), 0);
        UserDefaults defaults(m_path);
        defaults.setObject("a", 1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("in the place of the lock .* is kept as"));
        QVERIFY(defaults.synchronize());
        QCOMPARE(stored(), (QVariantMap{{"a", 1}}));
        QVERIFY(QFileInfo(lock + ".unreadable").isSymLink() || QFileInfo::exists(lock + ".unreadable"));
    }

    void fileOfHolesIsSetAside()
    {
        write("{ a = b; }");
        QVERIFY(QFile(m_path).resize(3'000'000'000));
        UserDefaults defaults(m_path);
        QVERIFY(!defaults.isSet("a"));
        defaults.setObject("c", 1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be read; they are kept as"));
        QVERIFY(defaults.synchronize());
        QCOMPARE(stored(), (QVariantMap{{"c", 1}}));
        QCOMPARE(QFileInfo(m_path + ".unreadable").size(), 3'000'000'000);
    }

    void withoutAThreadItIsWrittenAllTheSame()
    {
        UserDefaults defaults(m_path);
        defaults.setObject("a", 1);
        const NoThreads poverty;
        turnPastTheDelay();
        QCOMPARE(stored(), (QVariantMap{{"a", 1}}));
    }

    void aFolderInItsPlaceIsLeftAlone()
    {
        QDir().mkpath(m_path);
        UserDefaults defaults(m_path);
        defaults.setObject("a", 1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be written now"));
        QVERIFY(!defaults.synchronize());
        QVERIFY(QFileInfo(m_path).isDir());
        QVERIFY(QDir(m_path).removeRecursively());
    }

    void binaryFilesAreReadAndWrittenAsXml()
    {
        write(QByteArray::fromHex("62706c6973743030d101025161516208"
                                  "0b0d00000000000001010000000000000003000000000000000000000000000000") +
              '\x0f');
        UserDefaults defaults(m_path);
        QCOMPARE(defaults.string("a"), "b");
        defaults.setObject("c", true);
        QVERIFY(defaults.synchronize());
        QVERIFY(read(m_path).startsWith("<?xml"));
        QCOMPARE(stored(), (QVariantMap{{"a", "b"}, {"c", true}}));
    }

    void nothingChangedWritesNothing()
    {
        UserDefaults defaults(m_path);
        defaults.registerDefaults({{"a", 1}});
        QVERIFY(defaults.synchronize());
        QVERIFY(!QFile::exists(m_path));
    }

private:
    /// Timers run in the order in which they are due: what was changed before is being written afterwards.
    static void turnPastTheDelay()
    {
        bool isDue = false;
        QTimer::singleShot(600, [&] { isDue = true; });
        QTRY_VERIFY_WITH_TIMEOUT(isDue, 60'000);
    }

    void makeFolder() const { QDir().mkpath(QFileInfo(m_path).path()); }

    QVariantMap stored() const
    {
        return PropertyList::dictionaryFromFile(m_path).value_or(QVariantMap{{"missing", true}});
    }

    QByteArray read(const QString &path) const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }

    void write(const QByteArray &data) const
    {
        QDir().mkpath(QFileInfo(m_path).path());
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.value(1) == "--write-keys")
        return writeKeys(arguments.value(2), arguments.value(3));
    tst_UserDefaults test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_UserDefaults.moc"
