#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWUtilities/shortcuts/QWShortcutKey.h>
#include <QWUtilities/shortcuts/menus/QWShortcutKeyMenuItem.h>

#include <QKeyEvent>

using platform::KeyEvent;

namespace
{
constexpr quint32 shift = 0x20000;
constexpr quint32 control = 0x40000;
constexpr quint32 option = 0x80000;
constexpr quint32 command = 0x100000;
constexpr quint32 keypad = 0x200000;
constexpr quint32 allFour = shift | control | option | command;

QWShortcutKey keyOf(int key, Qt::KeyboardModifiers modifiers, const QString &text)
{
    QWShortcutKey result;
    result.setFromEvent(QKeyEvent(QEvent::KeyPress, key, modifiers, text));
    return result;
}
} // namespace

class tst_QWShortcutKey : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void displayString_data();
    void displayString();
    void modifiersShowInOneOrder();
    void spaceIsLocalized();
    void reserved_data();
    void reserved();
    void nothingElseIsReserved();
    void comesFromAnEvent_data();
    void comesFromAnEvent();
    void eventWithoutCharactersGivesNoKey();
    void clearKeyStaysClearWithModifiers();
    void stateComesBack();
    void stateTakesOnlyWhatIsPresent();
    void numbersOfOtherTypesAreRead();
    void menuItemShowsTheKey();
    void flagsOfLoneModifiers_data();
    void flagsOfLoneModifiers();
    void keypadAndArrowsCarryTheirBits();
};

void tst_QWShortcutKey::displayString_data()
{
    QTest::addColumn<int>("character");
    QTest::addColumn<quint32>("modifiers");
    QTest::addColumn<QString>("shown");
    QTest::newRow("clear") << 0 << command << "";
    QTest::newRow("up") << 0xf700 << 0u << "↑";
    QTest::newRow("down") << 0xf701 << 0u << "↓";
    QTest::newRow("left") << 0xf702 << 0u << "←";
    QTest::newRow("right") << 0xf703 << 0u << "→";
    for (int i = 1; i <= 15; ++i)
        QTest::addRow("F%d", i) << 0xf703 + i << 0u << QString("F%1").arg(i);
    QTest::newRow("F16 has no name") << 0xf713 << 0u << QString(QChar(0xf713));
    QTest::newRow("insert has no glyph") << 0xf727 << 0u << QString(QChar(0xf727));
    QTest::newRow("forward delete") << 0xf728 << 0u << "⌦";
    QTest::newRow("home") << 0xf729 << 0u << "⇱";
    QTest::newRow("end") << 0xf72b << 0u << "⇲";
    QTest::newRow("page up") << 0xf72c << 0u << "⇞";
    QTest::newRow("page down") << 0xf72d << 0u << "⇟";
    QTest::newRow("clear key") << 0xf739 << 0u << "⌧";
    QTest::newRow("escape") << 27 << 0u << "⎋";
    QTest::newRow("tab") << 9 << 0u << "⇥";
    QTest::newRow("back-tab") << 25 << 0u << "⇥";
    QTest::newRow("enter") << 3 << 0u << "⌤";
    QTest::newRow("return") << 13 << 0u << "⏎";
    QTest::newRow("delete") << 127 << 0u << "⌫";
    QTest::newRow("space") << 32 << 0u << "[space]";
    QTest::newRow("letter") << int('s') << (shift | command) << "⇧⌘S";
    QTest::newRow("accented letter") << 0xe9 << 0u << "É";
    QTest::newRow("other alphabet") << 0x444 << 0u << "Ф";
    QTest::newRow("digit") << int('5') << 0u << "5";
    QTest::newRow("keypad digit") << int('5') << keypad << "[5]";
    QTest::newRow("keypad letter") << int('a') << (keypad | control) << "⌃[A]";
    QTest::newRow("keypad arrow") << 0xf702 << keypad << "←";
    QTest::newRow("keypad F1") << 0xf704 << keypad << "F1";
    QTest::newRow("keypad space") << 32 << keypad << "[space]";
    QTest::newRow("keypad enter") << 3 << keypad << "⌤";
}

void tst_QWShortcutKey::displayString()
{
    QFETCH(int, character);
    QFETCH(quint32, modifiers);
    QTEST(QWShortcutKey(char16_t(character), modifiers).displayString(), "shown");
}

void tst_QWShortcutKey::modifiersShowInOneOrder()
{
    QCOMPARE(QWShortcutKey('a', allFour).displayString(), QString("⌃⌥⇧⌘A"));
    QCOMPARE(QWShortcutKey('a', control | shift).displayString(), QString("⌃⇧A"));
    QCOMPARE(QWShortcutKey('a', option | command).displayString(), QString("⌥⌘A"));
}

void tst_QWShortcutKey::spaceIsLocalized()
{
    FakeSystem system;
    platform::SystemScope current(system);
    system.addHostResource("en.lproj/Localizable.strings", "\"[space]\" = \"Leertaste\";");
    QCOMPARE(QWShortcutKey(' ', shift).displayString(), QString("⇧Leertaste"));
}

namespace
{
struct Reserved
{
    char16_t character;
    std::vector<quint32> modifiers;
};

const std::vector<Reserved> reservedKeys{
    {' ',
     {command, command | shift, command | control, command | option, command | shift | control,
      command | shift | option, command | control | option, allFour}},
    {9, {shift, control, control | shift, command, command | shift}},
    {27, {0, option | command}},
    {'$', {command}},
    {0xf704, {control}},
    {0xf705, {control}},
    {0xf706, {control}},
    {0xf708, {control}},
    {0xf70a, {control}},
    {0xf707, {control, control | shift}},
    {0xf709, {control, control | shift}},
    {'`', {command, shift | command}},
    {'-', {command, option | command}},
    {'.', {control | option | command}},
    {',', {control | option | command}},
    {'/', {option | command}},
    {'=', {shift | command, option | command}},
    {'3', {shift | command, control | shift | command}},
    {'4', {shift | command, control | shift | command}},
    {'8', {option | command, control | option | command}},
    {'d', {option | command}},
    {'q', {shift | command, option | shift | command, allFour}},
    {'h', {command, option | command}},
};

bool isListed(char16_t character, quint32 modifiers)
{
    return std::any_of(reservedKeys.begin(), reservedKeys.end(), [&](const Reserved &row) {
        const auto &list = row.modifiers;
        return row.character == character && std::find(list.begin(), list.end(), modifiers) != list.end();
    });
}
} // namespace

void tst_QWShortcutKey::reserved_data()
{
    QTest::addColumn<int>("character");
    QTest::addColumn<quint32>("modifiers");
    for (const Reserved &row : reservedKeys) {
        for (const quint32 modifiers : row.modifiers)
            QTest::addRow("%04x with %x", row.character, modifiers) << int(row.character) << modifiers;
    }
}

void tst_QWShortcutKey::reserved()
{
    QFETCH(int, character);
    QFETCH(quint32, modifiers);
    QVERIFY(QWShortcutKey(char16_t(character), modifiers).isReserved());
    QVERIFY(QWShortcutKey(char16_t(character), modifiers | keypad).isReserved());
}

void tst_QWShortcutKey::nothingElseIsReserved()
{
    for (int character = 0; character <= 0xffff; ++character) {
        for (quint32 bits = 0; bits < 16; ++bits) {
            const QWShortcutKey key(char16_t(character), bits * shift);
            if (key.isReserved() != isListed(key.character(), key.modifiers()))
                QFAIL(qPrintable(QString("%1 with %2").arg(character, 4, 16).arg(key.modifiers(), 0, 16)));
        }
    }
}

void tst_QWShortcutKey::comesFromAnEvent_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("held");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("character");
    QTest::addColumn<quint32>("modifiers");
    const Qt::KeyboardModifiers none;
    const auto row = [](const char *name, int key, Qt::KeyboardModifiers held, const QString &text, int character,
                        quint32 modifiers) { QTest::newRow(name) << key << held << text << character << modifiers; };
    row("a", Qt::Key_A, none, "a", 'a', 0);
    row("Shift", Qt::Key_A, Qt::ShiftModifier, "A", 'a', shift);
    row("Caps Lock", Qt::Key_A, none, "A", 'a', 0);
    row("Command", Qt::Key_A, Qt::ControlModifier, "\x01", 'a', command);
    row("Command without text", Qt::Key_A, Qt::ControlModifier, "", 'a', command);
    row("Control", Qt::Key_A, Qt::MetaModifier, "a", 'a', control);
    row("Option", Qt::Key_A, Qt::AltModifier, "a", 'a', option);
    row("all four", Qt::Key_S, Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier, "\x13",
        's', allFour);
    row("Shift and a digit", Qt::Key_Exclam, Qt::ShiftModifier, "!", '!', shift);
    row("Command, Shift and a digit", Qt::Key_Exclam, Qt::ShiftModifier | Qt::ControlModifier, "", '!',
        shift | command);
    row("keypad digit drops its bit", Qt::Key_5, Qt::KeypadModifier, "5", '5', 0);
    row("keypad enter", Qt::Key_Enter, Qt::KeypadModifier, "\r", 3, 0);
    row("keypad clear", Qt::Key_Clear, Qt::KeypadModifier, "", 0xf739, 0);
    row("keypad left", Qt::Key_Left, Qt::KeypadModifier, "", 0xf702, 0);
    row("up", Qt::Key_Up, none, "", 0xf700, 0);
    row("down", Qt::Key_Down, none, "", 0xf701, 0);
    row("right", Qt::Key_Right, Qt::AltModifier, "", 0xf703, option);
    for (int i = 1; i <= 35; ++i)
        QTest::addRow("F%d", i) << int(Qt::Key_F1) + i - 1 << none << QString() << 0xf703 + i << 0u;
    row("return", Qt::Key_Return, none, "\r", 13, 0);
    row("tab", Qt::Key_Tab, none, "\t", 9, 0);
    row("back-tab", Qt::Key_Backtab, Qt::ShiftModifier, "", 25, shift);
    row("escape", Qt::Key_Escape, none, "\x1b", 27, 0);
    row("delete", Qt::Key_Backspace, none, "\b", 127, 0);
    row("forward delete", Qt::Key_Delete, none, "\x7f", 0xf728, 0);
    row("home", Qt::Key_Home, none, "", 0xf729, 0);
    row("end", Qt::Key_End, none, "", 0xf72b, 0);
    row("page up", Qt::Key_PageUp, none, "", 0xf72c, 0);
    row("page down", Qt::Key_PageDown, none, "", 0xf72d, 0);
    row("insert", Qt::Key_Insert, none, "", 0xf727, 0);
    row("help", Qt::Key_Help, none, "", 0xf746, 0);
    row("space", Qt::Key_Space, none, " ", ' ', 0);
    row("Command and space", Qt::Key_Space, Qt::ControlModifier, QString(QChar(0)), ' ', command);
    row("accented letter", Qt::Key_Adiaeresis, Qt::ShiftModifier, "Ä", 0xe4, shift);
    row("Cyrillic", 0x424, none, "ф", 0x444, 0);
    row("Cyrillic with Shift", 0x424, Qt::ShiftModifier, "Ф", 0x444, shift);
    row("Greek", 0x3a3, none, "σ", 0x3c3, 0);
    row("dead circumflex", Qt::Key_Dead_Circumflex, none, "", '^', 0);
    row("dead grave", Qt::Key_Dead_Grave, Qt::ShiftModifier, "", '`', shift);
    row("dead acute", Qt::Key_Dead_Acute, Qt::ControlModifier, "", 0xb4, command);
    row("dead tilde", Qt::Key_Dead_Tilde, Qt::AltModifier, "", '~', option);
    row("dead diaeresis", Qt::Key_Dead_Diaeresis, none, "", 0xa8, 0);
}

void tst_QWShortcutKey::comesFromAnEvent()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, held);
    QFETCH(QString, text);
    const QWShortcutKey result = keyOf(key, held, text);
    QTEST(int(result.character()), "character");
    QTEST(result.modifiers(), "modifiers");
    const auto made = QWShortcutKey::shortcutKeyForEvent(QKeyEvent(QEvent::ShortcutOverride, key, held, text));
    QVERIFY(made && *made == result);
}

void tst_QWShortcutKey::eventWithoutCharactersGivesNoKey()
{
    QWShortcutKey key('a', command);
    const QKeyEvent bareModifier(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier);
    QVERIFY(!QWShortcutKey::shortcutKeyForEvent(bareModifier));
    QVERIFY(!QWShortcutKey::shortcutKeyForEvent(QKeyEvent(QEvent::KeyPress, Qt::Key_VolumeUp, Qt::NoModifier)));
    key.setFromEvent(bareModifier);
    QVERIFY(key.isClear());
    QCOMPARE(key.modifiers(), 0u);
}

void tst_QWShortcutKey::clearKeyStaysClearWithModifiers()
{
    const QWShortcutKey key(0, shift);
    QVERIFY(key.isClear());
    QVERIFY(key.isEqualToShortcutKey(QWShortcutKey(0, shift)));
    QVERIFY(!key.isEqualToShortcutKey(QWShortcutKey()));
    QWShortcutKey cleared('x', command);
    cleared.clear();
    QCOMPARE(cleared, QWShortcutKey());
}

void tst_QWShortcutKey::stateComesBack()
{
    const QWShortcutKey key(0xf704, allFour | keypad);
    QCOMPARE(key.state(), (QVariantMap{{"character", 0xf704LL}, {"modifiers", qlonglong(allFour | keypad)}}));
    QWShortcutKey read('z', 0);
    read.setState(key.state());
    QCOMPARE(read, key);
    QCOMPARE(read.copy(), key);
}

void tst_QWShortcutKey::stateTakesOnlyWhatIsPresent()
{
    QWShortcutKey key('a', command);
    key.setState({{"character", 'b'}});
    QCOMPARE(key, QWShortcutKey('b', command));
    key.setState({{"modifiers", shift}});
    QCOMPARE(key, QWShortcutKey('b', shift));
    key.setState({{"name", "x"}});
    QCOMPARE(key, QWShortcutKey('b', shift));
}

void tst_QWShortcutKey::numbersOfOtherTypesAreRead()
{
    QWShortcutKey key;
    key.setState({{"character", "97"}, {"modifiers", 131072.9}});
    QCOMPARE(key, QWShortcutKey('a', shift));
    key.setState({{"character", true}, {"modifiers", QVariantList{1}}});
    QCOMPARE(key, QWShortcutKey(1, 0));
    key.setState({{"character", 0x10061LL}, {"modifiers", -1}});
    QCOMPARE(key, QWShortcutKey('a', 0xffffffff));
    key.setState({{"character", qQNaN()}, {"modifiers", 1e300}});
    QCOMPARE(key, QWShortcutKey());
}

void tst_QWShortcutKey::menuItemShowsTheKey()
{
    platform::MenuItem item("Save");
    qw::QWShortcutKeyMenuItem::setShortcutKey(item, QWShortcutKey('s', shift | command));
    QCOMPARE(item.keyEquivalent(), QString("s"));
    QCOMPARE(item.keyEquivalentModifierMask(), shift | command);
    qw::QWShortcutKeyMenuItem::clearKeyEquivalent(item);
    QCOMPARE(item.keyEquivalent(), QString());
    QCOMPARE(item.keyEquivalentModifierMask(), shift | command);
    qw::QWShortcutKeyMenuItem::setShortcutKey(item, QWShortcutKey());
    QCOMPARE(item.keyEquivalent(), QString());
}

void tst_QWShortcutKey::flagsOfLoneModifiers_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("held");
    QTest::addColumn<quint32>("down");
    QTest::addColumn<quint32>("up");
    const Qt::KeyboardModifiers none;
    const Qt::KeyboardModifiers alt = Qt::AltModifier;
    QTest::newRow("Shift") << int(Qt::Key_Shift) << none << shift << 0u;
    QTest::newRow("Ctrl") << int(Qt::Key_Control) << none << command << 0u;
    QTest::newRow("Alt") << int(Qt::Key_Alt) << alt << option << 0u;
    QTest::newRow("Meta, Alt held") << int(Qt::Key_Meta) << alt << (control | option) << option;
    QTest::newRow("Super") << int(Qt::Key_Super_L) << none << control << 0u;
    QTest::newRow("AltGr") << int(Qt::Key_AltGr) << none << 0u << 0u;
    QTest::newRow("Caps Lock") << int(Qt::Key_CapsLock) << none << 0u << 0u;
}

void tst_QWShortcutKey::flagsOfLoneModifiers()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, held);
    const KeyEvent down(QKeyEvent(QEvent::KeyPress, key, held));
    const KeyEvent up(QKeyEvent(QEvent::KeyRelease, key, held));
    QCOMPARE(down.type, KeyEvent::FlagsChanged);
    QCOMPARE(up.type, KeyEvent::FlagsChanged);
    QTEST(down.modifierFlags, "down");
    QTEST(up.modifierFlags, "up");
}

void tst_QWShortcutKey::keypadAndArrowsCarryTheirBits()
{
    const auto flags = [](int key, Qt::KeyboardModifiers held, const QString &text) {
        return KeyEvent(QKeyEvent(QEvent::KeyPress, key, held, text)).modifierFlags;
    };
    QCOMPARE(flags(Qt::Key_5, Qt::KeypadModifier, "5"), keypad);
    QCOMPARE(flags(Qt::Key_5, Qt::NoModifier, "5"), 0u);
    QCOMPARE(flags(Qt::Key_Up, Qt::NoModifier, ""), quint32(KeyEvent::NumericPad | KeyEvent::Function));
    QCOMPARE(flags(Qt::Key_F1, Qt::NoModifier, ""), quint32(KeyEvent::Function));
    QCOMPARE(KeyEvent(QEvent(QEvent::MouseMove)).type, KeyEvent::Other);
    QCOMPARE(KeyEvent(QKeyEvent(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier, "a")).type, KeyEvent::KeyUp);
    QVERIFY(KeyEvent(QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a", true)).isRepeat);
}

QW_TEST_MAIN(tst_QWShortcutKey)
#include "tst_QWShortcutKey.moc"
