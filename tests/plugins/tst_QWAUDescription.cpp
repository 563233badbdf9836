#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWUtilities/plugins/QWAUDescription.h>

using platform::System;
using platform::SystemScope;

class tst_QWAUDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registryNameGivesManufacturerAndName_data();
    void registryNameGivesManufacturerAndName();
    void nameOfALengthByteAloneIsAnEmptyName();
    void nameThatCannotBeReadLeavesTheFieldsAlone();
    void unknownIsLocalized();
    void namesLoadOnDemand();
    void loadedNamesAreNotLoadedAgain();
    void kindIsThatOfTheComponent();
    void stateOfABareRecordHoldsTwoKeys();
    void stateHoldsAnEmptyTextAsItIs();
    void stateReadsBackEqual();
    void stateAppliesOnlyThePresentKeys();
    void wronglyTypedValuesCountAsAbsent_data();
    void wronglyTypedValuesCountAsAbsent();
};

namespace
{
std::shared_ptr<QWAUDescription> recordOf(const platform::AudioComponent &component)
{
    auto record = QWAUDescription::description();
    record->setComponentDescription(QWComponentDescription(component));
    return record;
}
} // namespace

void tst_QWAUDescription::registryNameGivesManufacturerAndName_data()
{
    QTest::addColumn<QString>("registryName");
    QTest::addColumn<QString>("manufacturer");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("loads");
    const QString longName(1000, 'x');
    QTest::newRow("colon and blank") << "Acme: Super Delay"
                                     << "Acme"
                                     << "Super Delay" << true;
    QTest::newRow("colon alone") << "Acme:Delay"
                                 << "Acme"
                                 << "Delay" << true;
    QTest::newRow("three pieces") << "A: B: C"
                                  << "Unknown"
                                  << "A: B: C" << true;
    QTest::newRow("three pieces, no blanks") << "A:B:C"
                                             << "Unknown"
                                             << "A:B:C" << true;
    QTest::newRow("both separators") << "A: B:C"
                                     << "A"
                                     << "B:C" << true;
    QTest::newRow("no colon") << "NoColon"
                              << "Unknown"
                              << "NoColon" << true;
    QTest::newRow("name alone") << "Super Delay"
                                << "Unknown"
                                << "Super Delay" << true;
    QTest::newRow("no manufacturer") << ": Delay"
                                     << ""
                                     << "Delay" << false;
    QTest::newRow("no name") << "Acme: "
                             << "Acme"
                             << "" << true;
    QTest::newRow("UTF-8") << "Äcmé: Verzögerung 🎛"
                           << "Äcmé"
                           << "Verzögerung 🎛" << true;
    QTest::newRow("right to left") << "אבג: דהו"
                                   << "אבג"
                                   << "דהו" << true;
    QTest::newRow("ampersand") << "A & B: C && D"
                               << "A & B"
                               << "C && D" << true;
    QTest::newRow("1,000 characters") << "Acme: " + longName << "Acme" << longName << true;
}

void tst_QWAUDescription::registryNameGivesManufacturerAndName()
{
    QFETCH(QString, registryName);
    QFETCH(QString, manufacturer);
    QFETCH(QString, name);
    QFETCH(bool, loads);
    FakeSystem system;
    SystemScope current(system);
    const auto record = recordOf(system.components.add("aufx", "Dlay", "Acme", registryName));
    QCOMPARE(record->loadInfo(), loads);
    QCOMPARE(record->manufacturer(), manufacturer);
    QCOMPARE(record->name(), name);
}

void tst_QWAUDescription::nameOfALengthByteAloneIsAnEmptyName()
{
    FakeSystem system;
    SystemScope current(system);
    const auto record = recordOf(system.components.add("aufx", "Dlay", "Acme", ""));
    system.components.entries.back().name = QByteArray(1, '\0');
    QVERIFY(record->loadInfo());
    QCOMPARE(record->state().value("manufacturer"), QVariant("Unknown"));
    QCOMPARE(record->state().value("name"), QVariant(""));
}

void tst_QWAUDescription::nameThatCannotBeReadLeavesTheFieldsAlone()
{
    FakeSystem system;
    SystemScope current(system);
    const auto record = recordOf(system.components.add("aufx", "Dlay", "Acme", ""));
    QVERIFY(!record->loadInfo());
    QCOMPARE(record->state().keys(), (QStringList{"componentDescription", "ignore"}));
    record->setManufacturer("Acme");
    QVERIFY(record->loadInfo()); // it is not empty now
}

void tst_QWAUDescription::unknownIsLocalized()
{
    FakeSystem system;
    SystemScope current(system);
    system.addHostResource("Localizable.strings", "\"Unknown\" = \"Unbekannt\";");
    const auto record = recordOf(system.components.add("aufx", "Dlay", "Acme", "Super Delay"));
    QVERIFY(record->loadInfo());
    QCOMPARE(record->manufacturer(), "Unbekannt");
}

void tst_QWAUDescription::namesLoadOnDemand()
{
    FakeSystem system;
    SystemScope current(system);
    const auto component = system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
    QCOMPARE(recordOf(component)->name(), "Delay");
    QCOMPARE(recordOf(component)->manufacturer(), "Acme");
    QCOMPARE(QWAUDescription::description()->name(), ""); // names no unit
}

void tst_QWAUDescription::loadedNamesAreNotLoadedAgain()
{
    FakeSystem system;
    SystemScope current(system);
    const auto record = recordOf(system.components.add("aufx", "Dlay", "Acme", "Acme: Delay"));
    record->setName("");
    record->setManufacturer("Other");
    QCOMPARE(record->name(), "");
    QCOMPARE(record->manufacturer(), "Other");
}

void tst_QWAUDescription::kindIsThatOfTheComponent()
{
    FakeSystem system;
    SystemScope current(system);
    const auto instrument = recordOf(system.components.add("aumu", "Synh", "Acme", "Acme: Synth"));
    const auto effect = recordOf(system.components.add("aumf", "Dlay", "Acme", "Acme: Delay"));
    const auto player = recordOf(system.components.add("augn", "afpl", "appl", "System: Player"));
    QVERIFY(instrument->isInstrument() && !instrument->isEffect() && !instrument->isPlayer());
    QVERIFY(!effect->isInstrument() && effect->isEffect() && !effect->isPlayer());
    QVERIFY(!player->isInstrument() && !player->isEffect() && player->isPlayer());
}

void tst_QWAUDescription::stateOfABareRecordHoldsTwoKeys()
{
    const QWComponentDescription unit(1, 2, 3);
    const auto record = QWAUDescription::description();
    record->setComponentDescription(unit);
    QCOMPARE(record->state(), (QVariantMap{{"componentDescription", unit.state()}, {"ignore", false}}));
}

void tst_QWAUDescription::stateHoldsAnEmptyTextAsItIs()
{
    const auto record = QWAUDescription::description();
    record->setIdentifier("");
    QVERIFY(record->state().contains("identifier"));
    QCOMPARE(record->state().value("identifier"), QVariant(""));
}

void tst_QWAUDescription::stateReadsBackEqual()
{
    const QVariantMap state{{"componentDescription", QWComponentDescription(1, 2, 3, 4, 5).state()},
                            {"ignore", true},
                            {"name", "Delay <&>"},
                            {"manufacturer", "Ácme 🎛"},
                            {"identifier", "com.acme.delay"}};
    QCOMPARE(QWAUDescription::descriptionWithState(state)->state(), state);
}

void tst_QWAUDescription::stateAppliesOnlyThePresentKeys()
{
    const QVariantMap state{{"componentDescription", QWComponentDescription(1, 2, 3).state()},
                            {"ignore", false},
                            {"name", "Delay"},
                            {"manufacturer", "Acme"},
                            {"identifier", "com.acme.delay"}};
    const auto record = QWAUDescription::descriptionWithState(state);
    record->setState({{"ignore", true}});
    QVariantMap expected = state;
    expected["ignore"] = true;
    QCOMPARE(record->state(), expected);
    record->setState({{"name", "New"}, {"unheard of", 5LL}});
    expected["name"] = "New";
    QCOMPARE(record->state(), expected);
}

void tst_QWAUDescription::wronglyTypedValuesCountAsAbsent_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("component as text") << "componentDescription" << QVariant("aufx");
    QTest::newRow("component too short") << "componentDescription" << QVariant(QByteArray(19, 'a'));
    QTest::newRow("component too long") << "componentDescription" << QVariant(QByteArray(21, 'a'));
    QTest::newRow("component as dictionary") << "componentDescription" << QVariant(QVariantMap{{"type", 1LL}});
    QTest::newRow("name as number") << "name" << QVariant(5LL);
    QTest::newRow("manufacturer as truth") << "manufacturer" << QVariant(true);
    QTest::newRow("identifier as array") << "identifier" << QVariant(QVariantList{"a"});
    QTest::newRow("ignore as text") << "ignore" << QVariant("NO");
    QTest::newRow("ignore as data") << "ignore" << QVariant(QByteArray("1"));
}

void tst_QWAUDescription::wronglyTypedValuesCountAsAbsent()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    const auto record = QWAUDescription::descriptionWithState({{"ignore", true}, {"name", "Delay"}});
    const QVariantMap before = record->state();
    record->setState({{key, value}});
    QCOMPARE(record->state(), before);
}

QW_TEST_MAIN(tst_QWAUDescription)
#include "tst_QWAUDescription.moc"
