#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <fcntl.h>
#include <sys/stat.h>

class tst_QWVSTDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsPathAndExactDate();
    void missingBundleHasNoDate();
    void dateSurvivesTheCatalogFile();
    void stateOfANewRecordHoldsOnlyWhatIsKnown();
    void stateReadsBackEqual();
    void absentKeysLeaveTheirFields();
    void stateCannotRenameARecord();
    void wronglyTypedValuesCountAsAbsent_data();
    void wronglyTypedValuesCountAsAbsent();
    void truthMayBeStoredAsANumber();
    void recordTellsItsCatalogWhenItChanges();
};

void tst_QWVSTDescription::recordsPathAndExactDate()
{
    FakeSystem system;
    platform::SystemScope current(system);
    system.addVSTBundle("~/Library/Audio/Plug-Ins/VST/Echo.vst");
    const timespec times[2] = {{1'234'567'890, 123'456'789}, {1'234'567'890, 123'456'789}};
    const QByteArray real = system.real("~/Library/Audio/Plug-Ins/VST/Echo.vst").toUtf8();
    QCOMPARE(::utimensat(AT_FDCWD, real.constData(), times, 0), 0);

    const auto record = QWVSTDescription::descriptionWithPath("~/Library/Audio/Plug-Ins/VST/Echo.vst");
    QCOMPARE(record->path(), "~/Library/Audio/Plug-Ins/VST/Echo.vst");
    QCOMPARE(record->modificationDate(), std::optional<qint64>(1'234'567'890'123'456'789));
    QVERIFY(!record->ignore());
    QVERIFY(!record->isInstrument());
}

void tst_QWVSTDescription::missingBundleHasNoDate()
{
    FakeSystem system;
    platform::SystemScope current(system);
    QVERIFY(!QWVSTDescription::descriptionWithPath("/Library/Nowhere.vst")->modificationDate());
}

void tst_QWVSTDescription::dateSurvivesTheCatalogFile()
{
    const qint64 date = 1'234'567'890'123'456'789;
    const auto record = QWVSTDescription::descriptionWithState({{"path", "/x.vst"}, {"modificationDate", date}});
    const auto list = platform::PropertyList::fromData(platform::PropertyList::toXml(record->state()));
    QVERIFY(list);
    QCOMPARE(QWVSTDescription::descriptionWithState(list->toMap())->modificationDate(), std::optional(date));
}

void tst_QWVSTDescription::stateOfANewRecordHoldsOnlyWhatIsKnown()
{
    FakeSystem system;
    platform::SystemScope current(system);
    QCOMPARE(QWVSTDescription::descriptionWithPath("/x.vst")->state(),
             (QVariantMap{{"path", "/x.vst"}, {"ignore", false}, {"isInstrument", false}}));
}

void tst_QWVSTDescription::stateReadsBackEqual()
{
    const QVariantMap state{{"path", "~/a & b.vst"},
                            {"ignore", true},
                            {"isInstrument", true},
                            {"modificationDate", qlonglong(-5)},
                            {"name", QString("Écho")},
                            {"vendor", ""},
                            {"category", qlonglong(2)},
                            {"flags", qlonglong(0x111)},
                            {"uniqueID", qlonglong(0xFFFFFFFF)}};
    const auto record = QWVSTDescription::descriptionWithState(state);
    QCOMPARE(record->state(), state);
    QCOMPARE(record->name(), QString("Écho"));
    QCOMPARE(record->uniqueID(), std::optional<qint64>(0xFFFFFFFF));
}

void tst_QWVSTDescription::absentKeysLeaveTheirFields()
{
    const auto record = QWVSTDescription::descriptionWithState(
        {{"path", "/x.vst"}, {"name", "Echo"}, {"isInstrument", true}, {"modificationDate", 7LL}});
    record->setState({{"ignore", true}});
    QCOMPARE(record->state(), (QVariantMap{{"path", "/x.vst"},
                                           {"name", "Echo"},
                                           {"isInstrument", true},
                                           {"modificationDate", 7LL},
                                           {"ignore", true}}));
    record->setState({});
    QVERIFY(record->ignore());
}

void tst_QWVSTDescription::stateCannotRenameARecord()
{
    const auto record = QWVSTDescription::descriptionWithState({{"path", "~/Library/x.vst"}});
    record->setState({{"path", "/home/someone/Library/x.vst"}, {"name", "X"}});
    QCOMPARE(record->path(), "~/Library/x.vst");
    QCOMPARE(record->name(), "X");
}

void tst_QWVSTDescription::wronglyTypedValuesCountAsAbsent_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    const QVariantList values{"text",
                              5LL,
                              2.5,
                              true,
                              QByteArray("data"),
                              QVariantList{1LL},
                              QVariantMap{{"a", 1LL}},
                              QDateTime::fromSecsSinceEpoch(0)};
    const QHash<QString, QList<int>> right{{"path", {0}},
                                           {"name", {0}},
                                           {"vendor", {0}},
                                           {"ignore", {1, 2, 3}},
                                           {"isInstrument", {1, 2, 3}},
                                           {"modificationDate", {1, 2}},
                                           {"category", {1, 2}},
                                           {"flags", {1, 2}},
                                           {"uniqueID", {1, 2}}};
    for (auto key = right.begin(); key != right.end(); ++key)
        for (int i = 0; i < values.size(); ++i)
            if (!key->contains(i))
                QTest::addRow("%s as %s", qPrintable(key.key()), values[i].typeName()) << key.key() << values[i];
}

void tst_QWVSTDescription::wronglyTypedValuesCountAsAbsent()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QWVSTDescription record;
    const QVariantMap before = record.state();
    record.setState({{key, value}});
    QCOMPARE(record.state(), before);
}

void tst_QWVSTDescription::truthMayBeStoredAsANumber()
{
    QVERIFY(QWVSTDescription::descriptionWithState({{"ignore", 1LL}})->ignore());
    QVERIFY(!QWVSTDescription::descriptionWithState({{"ignore", 0LL}})->ignore());
}

void tst_QWVSTDescription::recordTellsItsCatalogWhenItChanges()
{
    const auto changes = std::make_shared<QWCatalogRecord::Changes>(QWCatalogRecord::Changes{10});
    QWVSTDescription fifth;
    QWVSTDescription third;
    fifth.setPlace(changes, 5);
    third.setPlace(changes, 3);
    QCOMPARE(changes->first, std::size_t(10));
    fifth.setState({{"name", 5LL}}); // wrongly typed: nothing changed
    QCOMPARE(changes->first, std::size_t(10));
    fifth.setIgnore(true);
    QCOMPARE(changes->first, std::size_t(5));
    third.setName("Third");
    QCOMPARE(changes->first, std::size_t(3));
    fifth.setVendor("Acme");
    QCOMPARE(changes->first, std::size_t(3));
}

QW_TEST_MAIN(tst_QWVSTDescription)
#include "tst_QWVSTDescription.moc"
