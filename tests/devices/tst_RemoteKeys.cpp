#include <QWPlatform/linux/remote/RemoteKeys.h>

#include <QTest>

#include <map>
#include <random>

using platform::KeyBits;
using platform::RemoteElementValue;
using platform::RemoteKeys;

namespace
{
/// "cookie,value" of each.
QString text(const std::vector<RemoteElementValue> &values)
{
    QStringList texts;
    for (const auto &[cookie, value] : values)
        texts += QString("%1,%2").arg(cookie).arg(value);
    return texts.join(' ');
}

/// What the values of one key, one after the other, become.
QString translated(RemoteKeys &keys, unsigned code, const QList<int> &values)
{
    std::vector<RemoteElementValue> elements;
    for (const int value : values)
        if (const auto element = keys.translate(code, value))
            elements.push_back(*element);
    return text(elements);
}
} // namespace

class tst_RemoteKeys : public QObject
{
    Q_OBJECT

private slots:
    void keyBecomesElements_data();
    void keyBecomesElements();
    void otherKeysAndValuesBecomeNothing();
    void keysDoNotDisturbOneAnother();
    void lostEventsAreMadeUpFor();
    void releasingAllEndsOnlyWhatWasTold();
    void elementsAreThoseOfTheKeysThatThereAre();
    void anyStreamKeepsDownsAndUpsInTurn();
};

void tst_RemoteKeys::keyBecomesElements_data()
{
    QTest::addColumn<unsigned>("code");
    QTest::addColumn<QString>("shortPress");
    QTest::addColumn<QString>("hold");
    QTest::addColumn<bool>("isToldAtOnce");
    QTest::newRow("menu") << unsigned(KEY_MENU) << "20,1"
                          << "18,1" << false;
    QTest::newRow("play") << unsigned(KEY_PLAYPAUSE) << "21,1"
                          << "35,1" << false;
    QTest::newRow("centre") << unsigned(KEY_ENTER) << "21,1"
                            << "35,1" << false;
    QTest::newRow("previous") << unsigned(KEY_BACK) << "23,1"
                              << "3,1 3,0" << false;
    QTest::newRow("next") << unsigned(KEY_FORWARD) << "22,1"
                          << "4,1 4,0" << false;
    QTest::newRow("plus") << unsigned(KEY_VOLUMEUP) << "29,1 29,0"
                          << "29,1 29,0" << true;
    QTest::newRow("minus") << unsigned(KEY_VOLUMEDOWN) << "30,1 30,0"
                           << "30,1 30,0" << true;
}

void tst_RemoteKeys::keyBecomesElements()
{
    QFETCH(const unsigned, code);
    QFETCH(const QString, shortPress);
    QFETCH(const QString, hold);
    QFETCH(const bool, isToldAtOnce);
    RemoteKeys keys;
    QCOMPARE(translated(keys, code, {1, 0}), shortPress);
    QCOMPARE(translated(keys, code, {1, 2, 2, 2, 0}), hold);
    QCOMPARE(translated(keys, code, {1, 0}), shortPress); // a hold leaves nothing behind

    QCOMPARE(!translated(keys, code, {1}).isEmpty(), isToldAtOnce);
    QCOMPARE(translated(keys, code, {1, 1}), QString()); // down already
    keys.translate(code, 0);
    QCOMPARE(translated(keys, code, {2, 2, 0}), QString()); // was down before listening began
}

void tst_RemoteKeys::otherKeysAndValuesBecomeNothing()
{
    RemoteKeys keys;
    const QList<unsigned> own{KEY_MENU, KEY_PLAYPAUSE, KEY_ENTER, KEY_BACK, KEY_FORWARD, KEY_VOLUMEUP, KEY_VOLUMEDOWN};
    for (unsigned code = 0; code <= 0xffff; ++code)
        if (!own.contains(code))
            QCOMPARE(translated(keys, code, {1, 2, 0}), QString());
    for (const unsigned code : own)
        QCOMPARE(translated(keys, code, {-1, 3, 0x7fffffff, -0x7fffffff}), QString());
}

void tst_RemoteKeys::keysDoNotDisturbOneAnother()
{
    RemoteKeys keys;
    QCOMPARE(translated(keys, KEY_BACK, {1, 2}), QString("3,1"));
    QCOMPARE(translated(keys, KEY_MENU, {1, 0}), QString("20,1"));
    QCOMPARE(translated(keys, KEY_VOLUMEUP, {1}), QString("29,1"));
    QCOMPARE(translated(keys, KEY_BACK, {0}), QString("3,0"));
    QCOMPARE(translated(keys, KEY_VOLUMEUP, {0}), QString("29,0"));
}

void tst_RemoteKeys::lostEventsAreMadeUpFor()
{
    RemoteKeys keys;
    translated(keys, KEY_BACK, {1, 2});
    translated(keys, KEY_MENU, {1});
    translated(keys, KEY_VOLUMEDOWN, {1});
    KeyBits down;
    down.set(KEY_VOLUMEUP);
    down.set(KEY_VOLUMEDOWN);
    QCOMPARE(text(keys.catchUp(down)), QString("20,1 3,0 29,1"));
    QCOMPARE(text(keys.catchUp(down)), QString());
    QCOMPARE(text(keys.catchUp(KeyBits())), QString("29,0 30,0"));
}

void tst_RemoteKeys::releasingAllEndsOnlyWhatWasTold()
{
    RemoteKeys keys;
    translated(keys, KEY_MENU, {1});         // not told yet
    translated(keys, KEY_PLAYPAUSE, {1, 2}); // told, but has no end
    translated(keys, KEY_FORWARD, {1, 2});
    translated(keys, KEY_VOLUMEUP, {1});
    QCOMPARE(text(keys.releaseAll()), QString("4,0 29,0"));
    QCOMPARE(text(keys.releaseAll()), QString());
    QCOMPARE(translated(keys, KEY_MENU, {0}), QString());
}

void tst_RemoteKeys::elementsAreThoseOfTheKeysThatThereAre()
{
    QCOMPARE(RemoteKeys::cookiesOfKeys(KeyBits()), std::vector<quint32>());
    QCOMPARE(RemoteKeys::cookiesOfKeys(KeyBits().set()), (std::vector<quint32>{20, 18, 21, 35, 23, 3, 22, 4, 29, 30}));
    KeyBits two;
    two.set(KEY_ENTER);
    two.set(KEY_VOLUMEDOWN);
    QCOMPARE(RemoteKeys::cookiesOfKeys(two), (std::vector<quint32>{21, 35, 30}));
}

void tst_RemoteKeys::anyStreamKeepsDownsAndUpsInTurn()
{
    std::mt19937 random(2009);
    RemoteKeys keys;
    std::map<quint32, qint32> last{{3, 0}, {4, 0}, {29, 0}, {30, 0}};
    for (int i = 0; i < 100'000; ++i) {
        const auto element = keys.translate(110 + random() % 60, qint32(random() % 4));
        if (!element || !last.contains(element->cookie))
            continue;
        QCOMPARE(element->value, 1 - last[element->cookie]);
        last[element->cookie] = element->value;
    }
}

QTEST_APPLESS_MAIN(tst_RemoteKeys)
#include "tst_RemoteKeys.moc"
