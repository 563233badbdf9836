#include "KeyRouteTest.h"

#include <QWPlatform/appkit/Panel.h>

#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QTableWidget>
#include <QTreeWidget>

namespace
{
enum class WindowKind
{
    Plain,
    Dialog,
    ModalDialog,
    FloatingDialog,
    FloatingPanel,
    OtherPanel,
    FilePanel
};

std::unique_ptr<QWidget> make(WindowKind kind)
{
    switch (kind) {
    case WindowKind::Plain:
        return std::make_unique<QWidget>();
    case WindowKind::FilePanel: {
        auto panel = std::make_unique<QFileDialog>();
        panel->setOption(QFileDialog::DontUseNativeDialog);
        panel->setWindowFlag(Qt::Tool);
        return panel;
    }
    case WindowKind::FloatingPanel:
    case WindowKind::OtherPanel: {
        auto panel = std::make_unique<platform::Panel>();
        panel->setFloating(kind == WindowKind::FloatingPanel);
        return panel;
    }
    default:
        break;
    }
    auto dialog = std::make_unique<QDialog>(nullptr, kind == WindowKind::FloatingDialog ? Qt::Tool : Qt::Dialog);
    dialog->setModal(kind == WindowKind::ModalDialog);
    return dialog;
}

using Make = std::function<QAbstractItemView *()>;

QAbstractItemView *outline()
{
    auto *const tree = new QTreeWidget;
    for (int i = 0; i < 3; ++i)
        tree->addTopLevelItem(new QTreeWidgetItem({"row"}));
    return tree;
}

QAbstractItemView *table()
{
    return new QTableWidget(3, 2);
}

QAbstractItemView *list()
{
    auto *const rows = new QListWidget;
    rows->addItems({"a", "b", "c"});
    return rows;
}
} // namespace

Q_DECLARE_METATYPE(Make)

/// Keys that are meant for somebody else.
class tst_KeyFilter : public KeyRouteTest
{
    Q_OBJECT

private Q_SLOTS:
    void panelsKeepTheirKeys_data();
    void panelsKeepTheirKeys();
    void openMenuKeepsItsKeys();
    void listsKeepTheirArrows_data();
    void listsKeepTheirArrows();
    void textKeepsItsKeys();
    void filterTakesEventsOfNoOtherKind();
    void hostWithoutShortcutsIsLeftAlone();
};

void tst_KeyFilter::panelsKeepTheirKeys_data()
{
    QTest::addColumn<WindowKind>("kind");
    QTest::addColumn<bool>("fires");
    QTest::newRow("plain window") << WindowKind::Plain << true;
    QTest::newRow("dialog") << WindowKind::Dialog << false;
    QTest::newRow("modal dialog") << WindowKind::ModalDialog << false;
    QTest::newRow("floating dialog") << WindowKind::FloatingDialog << true;
    QTest::newRow("floating panel") << WindowKind::FloatingPanel << true;
    QTest::newRow("other panel") << WindowKind::OtherPanel << false;
    QTest::newRow("file panel") << WindowKind::FilePanel << false;
}

void tst_KeyFilter::panelsKeepTheirKeys()
{
    QFETCH(WindowKind, kind);
    QFETCH(bool, fires);
    const auto panel = make(kind);
    panel->resize(300, 200);
    KeyLabel inside;
    inside.setParent(panel.get());
    QVERIFY(activate(*panel));
    QCOMPARE(QApplication::activeWindow(), panel.get());
    inside.setFocus();
    type(Qt::Key_P);
    type(Qt::Key_S);
    QVERIFY(arrived(inside));
    QCOMPARE(inside.presses.count(Qt::Key_P), fires ? 0 : 1);
    QCOMPARE(m_receiver->sent, fires ? (QStringList{"play 0", "stop 0"}) : QStringList());
}

void tst_KeyFilter::openMenuKeepsItsKeys()
{
    QMenu popup;
    popup.addAction("&Quiet");
    popup.addAction("&Panic");
    QStringList chosen;
    connect(&popup, &QMenu::triggered, this, [&](QAction *action) { chosen.append(action->text()); });
    popup.popup(m_window->geometry().center());
    QTRY_VERIFY(popup.isVisible());
    if (route() == Route::Widget || route() == Route::Sent)
        QTest::keyClick(&popup, Qt::Key_P);
    else
        type(Qt::Key_P);
    QTRY_COMPARE(chosen, QStringList{"&Panic"});
    QTRY_VERIFY(!popup.isVisible());
    QCOMPARE(m_receiver->sent, QStringList());
}

void tst_KeyFilter::listsKeepTheirArrows_data()
{
    QTest::addColumn<Make>("make");
    QTest::addColumn<bool>("keepsHorizontal");
    QTest::newRow("outline") << Make(outline) << true;
    QTest::newRow("table") << Make(table) << false;
    QTest::newRow("list") << Make(list) << false;
}

void tst_KeyFilter::listsKeepTheirArrows()
{
    QFETCH(Make, make);
    QFETCH(bool, keepsHorizontal);
    QAbstractItemView *const view = make();
    m_window->add(view);
    view->setCurrentIndex(view->model()->index(1, 0));
    QTRY_COMPARE(QApplication::focusWidget(), view);
    type(Qt::Key_Up);
    QTRY_COMPARE(view->currentIndex().row(), 0);
    QCOMPARE(m_receiver->sent, QStringList());
    type(Qt::Key_Left);
    if (!keepsHorizontal)
        QTRY_COMPARE(m_receiver->sent, QStringList{"save 0"});
    type(Qt::Key_P); // every other key is a shortcut, even where the list would search by it
    QTRY_VERIFY(m_receiver->sent.contains("play 0"));
    QCOMPARE(m_receiver->sent.count("save 0"), keepsHorizontal ? 0 : 1);
}

void tst_KeyFilter::textKeepsItsKeys()
{
    const auto *const edit = m_window->add(new QLineEdit);
    QTRY_COMPARE(QApplication::focusWidget(), edit);
    type(Qt::Key_P);
    type(Qt::Key_S);
    type(Qt::Key_Space);
    QTRY_COMPARE(edit->text(), QString("ps "));
    QCOMPARE(m_receiver->sent, QStringList());
}

void tst_KeyFilter::filterTakesEventsOfNoOtherKind()
{
    QVERIFY(!QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyRelease, Qt::Key_P, Qt::NoModifier, "p")));
    QVERIFY(!QWKeyboardShortcuts::performShortcut(QEvent(QEvent::MouseMove)));
    QVERIFY(QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyPress, Qt::Key_P, Qt::NoModifier, "p")));
    QVERIFY(QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyPress, Qt::Key_Shift, Qt::NoModifier)));
    QVERIFY(QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyRelease, Qt::Key_Shift, Qt::NoModifier)));
    QVERIFY(!QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, "x")));
    QVERIFY(!QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyPress, Qt::Key_VolumeUp, Qt::NoModifier)));
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
}

void tst_KeyFilter::hostWithoutShortcutsIsLeftAlone()
{
    const ShortcutSystem other; // nobody asks for its registry
    type(Qt::Key_P);
    type(Qt::Key_Shift);
    QVERIFY(arrived());
    QVERIFY(m_window->label.presses.contains(Qt::Key_P));
    QVERIFY(m_window->label.presses.contains(Qt::Key_Shift));
    QVERIFY(!other.readFile(other.path("_current.plist")));
}

QW_KEY_DISPATCH_MAIN(tst_KeyFilter)
#include "tst_KeyFilter.moc"
