#include "KeyDispatchTest.h"

#include <QWUtilities/shortcuts/editor/ShortcutEditor.h>

#include <QDialog>
#include <QPushButton>

namespace
{
constexpr quint32 command = 0x100000;

/// An editor that captures keys while its sheet is up.
class CapturingEditor : public qw::ShortcutEditor
{
public:
    void open() override {}
    void toggle() override {}
    QWidget *window() const override { return nullptr; }
    void filePanelDidEnd() override {}
    QWidget *setShortcutPanel() const override { return &sheet; }
    void doSetShortcut(const platform::KeyEvent &event) override { captured.push_back(event); }
    QString searchString() const override { return {}; }
    void clearSearchString() override {}
    void displayResultsDidChange() override {}
    QMenu *presetsMenu() const override { return nullptr; }
    QString presetName() const override { return {}; }

    std::vector<platform::KeyEvent> keysDown() const
    {
        std::vector<platform::KeyEvent> keys;
        std::copy_if(captured.begin(), captured.end(), std::back_inserter(keys),
                     [](const auto &event) { return event.type == platform::KeyEvent::KeyDown; });
        return keys;
    }

    mutable QDialog sheet;
    std::vector<platform::KeyEvent> captured;
};
} // namespace

/// Keys while the editor captures them.
class tst_KeyCapture : public KeyDispatchTest
{
    Q_OBJECT

private Q_SLOTS:
    void captureSheetGetsEverything_data() { routes(); }
    void captureSheetGetsEverything();
    void layoutsGiveTheirOwnCharacters_data();
    void layoutsGiveTheirOwnCharacters();
};

void tst_KeyCapture::captureSheetGetsEverything()
{
    QFETCH(Route, route);
    auto made = std::make_unique<CapturingEditor>();
    CapturingEditor &editor = *made;
    qw::ShortcutEditor::setOf(_registry(), std::move(made));
    auto *const button = new QPushButton("OK", &editor.sheet);
    int clicks = 0;
    connect(button, &QPushButton::clicked, this, [&] { ++clicks; });
    editor.sheet.resize(200, 100);
    QVERIFY(activate(editor.sheet));
    button->setFocus();
    type(route, Qt::Key_P);
    type(route, Qt::Key_Space);
    type(route, Qt::Key_X, Qt::ControlModifier);
    QTRY_COMPARE(editor.keysDown().size(), std::size_t(3));
    const auto keys = editor.keysDown();
    QCOMPARE(keys[0].character, u'p');
    QCOMPARE(keys[1].character, u' ');
    QCOMPARE(keys[2].character, u'x');
    QCOMPARE(keys[2].modifierFlags, command);
    QCOMPARE(m_receiver->sent, QStringList());
    QCOMPARE(clicks, 0);
    type(route, Qt::Key_Alt);
    const auto optionWentDown = [&](const platform::KeyEvent &event) {
        return event.type == platform::KeyEvent::FlagsChanged && event.modifierFlags == platform::KeyEvent::Option;
    };
    const auto wentDown = [&] { return std::find_if(editor.captured.begin(), editor.captured.end(), optionWentDown); };
    QTRY_VERIFY(wentDown() != editor.captured.end() && wentDown() + 1 != editor.captured.end());
    QCOMPARE((wentDown() + 1)->type, platform::KeyEvent::FlagsChanged);
    QCOMPARE((wentDown() + 1)->modifierFlags, 0u);
    editor.sheet.hide();
    QVERIFY(activate(*m_window));
    m_window->label.setFocus();
    type(route, Qt::Key_P);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
}

void tst_KeyCapture::layoutsGiveTheirOwnCharacters_data()
{
    if (!onX())
        QSKIP("only a real keyboard has layouts");
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<int>("character");
    QTest::addColumn<quint32>("modifiers");
    const auto row = [](const char *layout, const char *keys, int character, quint32 modifiers) {
        QTest::addRow("%s: %s", layout, keys) << layout << keys << character << modifiers;
    };
    constexpr quint32 shift = 0x20000, control = 0x40000, option = 0x80000;
    // Physical keys by their codes: 38 is A, 39 S, 10 the digit 1, 49 left of it, 21 right of 0, 23 Tab.
    row("us", "38", 'a', 0);
    row("us", "shift+38", 'a', shift);
    row("us", "ctrl+shift+38", 'a', command | shift);
    row("us", "alt+38", 'a', option);
    row("us", "super+38", 'a', control);
    row("us", "ctrl+alt+38", 'a', command | option);
    row("us", "shift+10", '!', shift);
    row("us", "ctrl+shift+10", '!', command | shift);
    row("us", "shift+23", 25, shift);
    row("us", "23", 9, 0);
    row("us", "ctrl+65", ' ', command);
    row("us", "104", 3, 0);
    row("us", "36", 13, 0);
    row("us", "22", 127, 0);
    row("us", "ctrl+22", 127, command);
    row("us", "119", 0xf728, 0);
    row("us", "67", 0xf704, 0);
    row("us", "110", 0xf729, 0);
    row("us", "115", 0xf72b, 0);
    row("us", "112", 0xf72c, 0);
    row("us", "117", 0xf72d, 0);
    row("us", "111", 0xf700, 0);
    row("us", "ctrl+113", 0xf702, command);
    row("us", "83", 0xf702, 0); // keypad, Num Lock off
    row("us", "63", '*', 0);    // keypad
    row("ru", "38", 0x444, 0);
    row("ru", "shift+38", 0x444, shift);
    row("ru", "ctrl+38", 0x444, command);
    row("ru", "ctrl+shift+39", 0x44b, command | shift);
    row("ru", "alt+38", 0x444, option);
    row("gr", "ctrl+38", 0x3b1, command);
    row("de", "49", '^', 0);
    row("de", "ctrl+49", '^', command);
    row("de", "21", 0xb4, 0);
    row("de", "shift+21", '`', shift);
    row("de", "shift+48", 0xe4, shift);
    row("de", "ctrl+48", 0xe4, command);
    row("fr", "10", '&', 0);
    row("fr", "shift+10", '1', shift);
}

/// What a real key of a layout is captured as.
void tst_KeyCapture::layoutsGiveTheirOwnCharacters()
{
    QFETCH(QString, layout);
    QFETCH(QString, keys);
    QVERIFY(XServer::setLayout(layout));
    auto made = std::make_unique<CapturingEditor>();
    CapturingEditor &editor = *made;
    qw::ShortcutEditor::setOf(_registry(), std::move(made));
    QVERIFY(activate(editor.sheet));
    QVERIFY(XServer::act({"key", keys}));
    QTRY_COMPARE(editor.keysDown().size(), std::size_t(1));
    QWShortcutKey key;
    key.setFromEvent(editor.keysDown().front());
    QVERIFY(XServer::setLayout("us"));
    QTEST(int(key.character()), "character");
    QTEST(key.modifiers(), "modifiers");
}

QW_KEY_DISPATCH_MAIN(tst_KeyCapture)
#include "tst_KeyCapture.moc"
