#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/plugins/QWAUDescription.h>
#include <QWUtilities/plugins/catalog/CatalogReader.h>

#include <plist/plist.h>

class tst_CatalogReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatTheWriterWrites();
    void readsOtherWritersForms_data();
    void readsOtherWritersForms();
    void textsThatRecordsHaveInCommonAreTold();
    void readsBinaryLists();
    void wrongShapesGiveNoRecords_data();
    void wrongShapesGiveNoRecords();
    void elementsThatAreNoDictionariesArePassedOver();
    void wronglyTypedValuesAreAbsentAndTheRecordStays_data();
    void wronglyTypedValuesAreAbsentAndTheRecordStays();
    void truncatedAnywhereGivesNoRecords();
    void damagedAnywhereAgreesWithThePlainReader();
    void unitsReadBack();
    void keysThatComeTwiceAgreeWithThePlainReader_data();
    void keysThatComeTwiceAgreeWithThePlainReader();
    void textsThatXmlCannotHoldReadBack();
    void truthAndNumbersInTextListsAreRead();
};

namespace
{
template <class Record>
std::vector<std::shared_ptr<Record>> read(const QByteArray &data)
{
    std::vector<std::shared_ptr<Record>> records;
    qw::CatalogReader::read(data,
                            {[&]() -> QWCatalogRecord & { return *records.emplace_back(std::make_shared<Record>()); },
                             [&] { records.clear(); }});
    return records;
}

template <class Record>
QVariantList statesOf(const QByteArray &data)
{
    QVariantList states;
    for (const auto &record : read<Record>(data))
        states.append(record->state());
    return states;
}

/// What the plain reader of property lists and setState() make of @p data.
template <class Record>
QVariantList expectedStates(const QByteArray &data)
{
    QVariantList states;
    const auto list = platform::PropertyList::fromData(data);
    if (list && list->typeId() == QMetaType::QVariantList)
        for (const QVariant &element : list->toList())
            if (element.typeId() == QMetaType::QVariantMap)
                states.append(Record::descriptionWithState(element.toMap())->state());
    return states;
}

QVariantList someStates()
{
    return {QVariantMap{{"path", "~/Library/a & b <c>.vst"},
                        {"ignore", false},
                        {"isInstrument", true},
                        {"modificationDate", 1'234'567'890'123'456'789LL},
                        {"name", "Écho\r\n🎛"},
                        {"vendor", ""}},
            QVariantMap{{"path", "/b.vst"}, {"ignore", true}, {"isInstrument", false}, {"category", -1LL}}};
}

QByteArray listOf(const QByteArray &elements)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><array>" + elements +
           "</array></plist>\n";
}
} // namespace

void tst_CatalogReader::readsWhatTheWriterWrites()
{
    const QByteArray data = platform::PropertyList::toXml(someStates());
    QCOMPARE(statesOf<QWVSTDescription>(data), someStates());
    QCOMPARE(statesOf<QWVSTDescription>(platform::PropertyList::toXml(QVariantList())), QVariantList());
}

void tst_CatalogReader::readsOtherWritersForms_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::newRow("blanks") << QByteArray("\n <dict >\r\n<key>path</key>\n\n<string>/p</string></dict>\n");
    QTest::newRow("comments") << QByteArray(
        "<!-- a --><dict><!-- b --><key>path</key><string>/<!-- c -->p</string></dict>");
    QTest::newRow("CDATA") << QByteArray("<dict><key>path</key><string><![CDATA[/p]]></string></dict>");
    QTest::newRow("character references") << QByteArray("<dict><key>path</key><string>&#47;&#x70;</string></dict>");
    QTest::newRow("entity in key") << QByteArray("<dict><key>p&#97;th</key><string>/p</string></dict>");
    QTest::newRow("hexadecimal") << QByteArray(
        "<dict><key>flags</key><integer>0x10</integer><key>path</key><string>/p</string></dict>");
    QTest::newRow("plus sign") << QByteArray(
        "<dict><key>flags</key><integer>+16</integer><key>path</key><string>/p</string></dict>");
    QTest::newRow("nested") << QByteArray("<dict><key>extra</key><dict><key>path</key><string>/q</string></"
                                          "dict><key>path</key><string>/p</string></dict>");
    QTest::newRow("true with end tag") << QByteArray(
        "<dict><key>ignore</key><true></true><key>path</key><string>/p</string></dict>");
    QTest::newRow("empty record") << QByteArray("<dict/>");
    QTest::newRow("empty data") << QByteArray("<dict><key>name</key><data></data></dict>");
}

void tst_CatalogReader::readsOtherWritersForms()
{
    QFETCH(QByteArray, record);
    const QByteArray data = listOf(record);
    const QVariantList expected = expectedStates<QWVSTDescription>(data);
    QCOMPARE(expected.size(), 1);
    QCOMPARE(statesOf<QWVSTDescription>(data), expected);
}

void tst_CatalogReader::textsThatRecordsHaveInCommonAreTold()
{
    QVariantList states;
    for (const char *const vendor : {"Maker", "Maker", "Maker & Sons", "Maker", "Make", "", "", "Vendor", "Maker"}) {
        const auto name = QString("%1 %2").arg(vendor).arg(states.size() / 2); // some twice
        states.append(QVariantMap{
            {"path", name}, {"name", name}, {"ignore", false}, {"isInstrument", false}, {"vendor", vendor}});
    }
    QCOMPARE(statesOf<QWVSTDescription>(platform::PropertyList::toXml(states)), states);
}

void tst_CatalogReader::readsBinaryLists()
{
    const QByteArray xml = platform::PropertyList::toXml(someStates());
    plist_t list = nullptr;
    plist_from_xml(xml.constData(), static_cast<uint32_t>(xml.size()), &list);
    char *bytes = nullptr;
    uint32_t size = 0;
    plist_to_bin(list, &bytes, &size);
    const QByteArray binary(bytes, static_cast<qsizetype>(size));
    plist_to_bin_free(bytes);
    plist_free(list);
    QVERIFY(binary.startsWith("bplist00"));
    QCOMPARE(statesOf<QWVSTDescription>(binary), someStates());
}

void tst_CatalogReader::wrongShapesGiveNoRecords_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("blanks") << QByteArray("  \n");
    QTest::newRow("garbage") << QByteArray("\xff\xfe\x00garbage", 10);
    QTest::newRow("a dictionary") << platform::PropertyList::toXml(QVariantMap{{"path", "/p"}});
    QTest::newRow("text") << platform::PropertyList::toXml("text");
    QTest::newRow("two lists") << listOf("<dict/>") + listOf("<dict/>");
    QTest::newRow("rest behind") << listOf("<dict/>") + "<x/>";
    QTest::newRow("key without value") << listOf("<dict><key>path</key></dict>");
    QTest::newRow("value without key") << listOf("<dict><string>/p</string></dict>");
    QTest::newRow("crossed tags") << listOf("<dict><key>path</string></key></dict>");
    QTest::newRow("bad number") << listOf("<dict><key>flags</key><integer>12x</integer></dict>");
    QTest::newRow("empty number") << listOf("<dict><key>flags</key><integer></integer></dict>");
    QTest::newRow("bad data") << listOf("<dict><key>x</key><data>a</data></dict>");
    QTest::newRow("unknown entity") << listOf("<dict><key>path</key><string>&bomb;</string></dict>");
    QTest::newRow("bad UTF-8") << listOf("<dict><key>path</key><string>\xC3(</string></dict>");
    QTest::newRow("unknown element") << listOf("<dict><key>path</key><text>/p</text></dict>");
    QTest::newRow("100,000 levels") << listOf(QByteArray("<array>").repeated(100'000));
}

void tst_CatalogReader::wrongShapesGiveNoRecords()
{
    QFETCH(QByteArray, data);
    QCOMPARE(read<QWVSTDescription>(data).size(), std::size_t(0));
}

void tst_CatalogReader::elementsThatAreNoDictionariesArePassedOver()
{
    const QVariantMap record{{"path", "/p"}, {"ignore", false}, {"isInstrument", false}};
    const QByteArray data = platform::PropertyList::toXml(QVariantList{"text", record, 5LL, QVariantList{record}});
    QCOMPARE(statesOf<QWVSTDescription>(data), QVariantList{record});
}

void tst_CatalogReader::wronglyTypedValuesAreAbsentAndTheRecordStays_data()
{
    QTest::addColumn<QByteArray>("value");
    for (const char *value :
         {"<string>x</string>", "<integer>5</integer>", "<real>1.5</real>", "<true/>", "<data>AAAA</data>", "<array/>",
          "<dict/>", "<date>2009-03-05T16:07:00Z</date>", "<array><true/></array>"})
        QTest::newRow(value) << QByteArray(value);
}

void tst_CatalogReader::wronglyTypedValuesAreAbsentAndTheRecordStays()
{
    QFETCH(QByteArray, value);
    for (const char *key :
         {"path", "ignore", "isInstrument", "modificationDate", "name", "flags", "componentDescription"}) {
        const QByteArray data =
            listOf("<dict><key>vendor</key><string>V</string><key>" + QByteArray(key) + "</key>" + value + "</dict>");
        const QVariantList states = statesOf<QWVSTDescription>(data);
        QCOMPARE(states.size(), 1);
        QCOMPARE(states, expectedStates<QWVSTDescription>(data));
        QCOMPARE(states.front().toMap().value("vendor"), QVariant("V"));
        QCOMPARE(statesOf<QWAUDescription>(data), expectedStates<QWAUDescription>(data));
    }
}

void tst_CatalogReader::truncatedAnywhereGivesNoRecords()
{
    const QByteArray whole = platform::PropertyList::toXml(someStates()).trimmed();
    for (qsizetype size = 0; size < whole.size(); ++size)
        QVERIFY2(read<QWVSTDescription>(whole.first(size)).empty(), qPrintable(QString("%1 bytes").arg(size)));
}

void tst_CatalogReader::damagedAnywhereAgreesWithThePlainReader()
{
    const QByteArray whole = platform::PropertyList::toXml(someStates());
    for (qsizetype at = 0; at < whole.size(); ++at)
        for (const char c : {'<', '>', '&', '/', 'x', '\0', '\xff'}) {
            QByteArray damaged = whole;
            damaged[at] = c;
            QCOMPARE(statesOf<QWVSTDescription>(damaged), expectedStates<QWVSTDescription>(damaged));
        }
}

void tst_CatalogReader::unitsReadBack()
{
    const QVariantList states{QVariantMap{{"componentDescription", QWComponentDescription(1, 2, 3, 4, 5).state()},
                                          {"ignore", true},
                                          {"name", "Delay"}},
                              QVariantMap{{"componentDescription", QByteArray(20, '\xff')}, {"ignore", false}}};
    QCOMPARE(statesOf<QWAUDescription>(platform::PropertyList::toXml(states)), states);
}

void tst_CatalogReader::keysThatComeTwiceAgreeWithThePlainReader_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::newRow("path") << QByteArray("<key>path</key><string>/a</string><key>path</key><string>/b</string>");
    QTest::newRow("second of another type")
        << QByteArray("<key>ignore</key><true/><key>ignore</key><string>x</string>");
    QTest::newRow("not side by side") << QByteArray(
        "<key>name</key><string>A</string><key>path</key><string>/a</string><key>name</key><integer>1</integer>");
    QTest::newRow("not sorted") << QByteArray("<key>path</key><string>/a</string><key>name</key><string>A</string>");
    QTest::newRow("empty key") << QByteArray("<key></key><true/><key>path</key><string>/a</string>");
}

void tst_CatalogReader::keysThatComeTwiceAgreeWithThePlainReader()
{
    QFETCH(QByteArray, entries);
    const QByteArray data = listOf("<dict>" + entries + "</dict>");
    QCOMPARE(statesOf<QWVSTDescription>(data).size(), 1);
    QCOMPARE(statesOf<QWVSTDescription>(data), expectedStates<QWVSTDescription>(data));
    QCOMPARE(statesOf<QWAUDescription>(data), expectedStates<QWAUDescription>(data));
}

void tst_CatalogReader::textsThatXmlCannotHoldReadBack()
{
    const QVariantList states{QVariantMap{{"path", "~/Library/a\x01\x1b/\uFEFF\uE01B0001.vst"},
                                          {"ignore", false},
                                          {"isInstrument", false},
                                          {"name", QStringLiteral("\uFEFF\x0e")},
                                          {"vendor", QStringLiteral("\uFEFFé")}}};
    const QByteArray data = platform::PropertyList::toXml(states);
    QCOMPARE(statesOf<QWVSTDescription>(data), states);
    const QByteArray raw = listOf("<dict><key>path</key><string>/a\x01\x1b.vst</string></dict>"); // of former versions
    QCOMPARE(statesOf<QWVSTDescription>(raw).front().toMap().value("path"), QVariant("/a\x01\x1b.vst"));
}

void tst_CatalogReader::truthAndNumbersInTextListsAreRead()
{
    const QVariantList states = statesOf<QWVSTDescription>(
        "( { path = \"/a\"; ignore = 1; isInstrument = YES; modificationDate = 1234567890123; },\n"
        "  { path = \"/b\"; ignore = NO; isInstrument = yes; flags = many; } )");
    QCOMPARE(states,
             (QVariantList{
                 QVariantMap{
                     {"path", "/a"}, {"ignore", true}, {"isInstrument", true}, {"modificationDate", 1234567890123LL}},
                 QVariantMap{{"path", "/b"}, {"ignore", false}, {"isInstrument", false}}}));
    QVERIFY(statesOf<QWAUDescription>("( { ignore = \"YES\"; } )").front().toMap().value("ignore").toBool());
}

QW_TEST_MAIN(tst_CatalogReader)
#include "tst_CatalogReader.moc"
