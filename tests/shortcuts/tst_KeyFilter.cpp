#include "KeyDispatchTest.h"

#include <QWPlatform/appkit/Panel.h>

#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
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
} // namespace

/// Keys that are meant for somebody else.
class tst_KeyFilter : public KeyDispatchTest
{
    Q_OBJECT

private Q_SLOTS:
    void panelsKeepTheirKeys_data();
    void panelsKeepTheirKeys();
    void openMenuKeepsItsKeys_data() { routes(); }
    void openMenuKeepsItsKeys();
    void listsKeepTheirArrows_data();
    void listsKeepTheirArrows();
    void textKeepsItsKeys_data() { routes(); }
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
    auto *const button = new QPushButton("focus", panel.get());
    panel->show();
    button->setFocus();
    QVERIFY(activate(*panel));
    QCOMPARE(QApplication::activeWindow(), panel.get());
    button->setFocus();
    type(Route::Window, Qt::Key_P);
    type(Route::Window, Qt::Key_S);
    QCOMPARE(m_receiver->sent, fires ? (QStringList{"play 0", "stop 0"}) : QStringList());
}

void tst_KeyFilter::openMenuKeepsItsKeys()
{
    QFETCH(Route, route);
    QMenu popup;
    popup.addAction("&Quiet");
    popup.addAction("&Panic");
    QStringList chosen;
    connect(&popup, &QMenu::triggered, this, [&](QAction *action) { chosen.append(action->text()); });
    popup.popup(m_window->geometry().center());
    QTRY_VERIFY(popup.isVisible());
    if (route == Route::Widget || route == Route::Sent)
        QTest::keyClick(&popup, Qt::Key_P);
    else
        type(route, Qt::Key_P);
    QTRY_COMPARE(chosen, QStringList{"&Panic"});
    QTRY_VERIFY(!popup.isVisible());
    QCOMPARE(m_receiver->sent, QStringList());
}

void tst_KeyFilter::listsKeepTheirArrows_data()
{
    QTest::addColumn<Route>("route");
    QTest::addColumn<QString>("list");
    QTest::addColumn<bool>("keepsHorizontal");
    const QList<std::pair<const char *, Route>> all =
        onX() ? QList<std::pair<const char *, Route>>{{"window", Route::Window}, {"X", Route::X}}
              : QList<std::pair<const char *, Route>>{
                    {"window", Route::Window}, {"widget", Route::Widget}, {"sent", Route::Sent}};
    for (const auto &[name, route] : all) {
        QTest::addRow("outline, %s", name) << route << "outline" << true;
        QTest::addRow("table, %s", name) << route << "table" << false;
        QTest::addRow("list, %s", name) << route << "list" << false;
    }
}

void tst_KeyFilter::listsKeepTheirArrows()
{
    QFETCH(Route, route);
    QFETCH(QString, list);
    QFETCH(bool, keepsHorizontal);
    QAbstractItemView *view = nullptr;
    if (list == "outline") {
        auto *const tree = m_window->add<QTreeWidget>();
        for (int i = 0; i < 3; ++i)
            tree->addTopLevelItem(new QTreeWidgetItem({"row"}));
        view = tree;
    } else if (list == "table") {
        auto *const table = m_window->add<QTableWidget>();
        table->setRowCount(3);
        table->setColumnCount(2);
        view = table;
    } else {
        auto *const rows = m_window->add<QListWidget>();
        rows->addItems({"a", "b", "c"});
        view = rows;
    }
    view->setCurrentIndex(view->model()->index(1, 0));
    QTRY_COMPARE(QApplication::focusWidget(), view);
    type(route, Qt::Key_Up);
    QTRY_COMPARE(view->currentIndex().row(), 0);
    QCOMPARE(m_receiver->sent, QStringList());
    type(route, Qt::Key_Left);
    if (!keepsHorizontal)
        QTRY_COMPARE(m_receiver->sent, QStringList{"save 0"});
    type(route, Qt::Key_P); // every other key is a shortcut, even where the list would search by it
    QTRY_VERIFY(m_receiver->sent.contains("play 0"));
    QCOMPARE(m_receiver->sent.count("save 0"), keepsHorizontal ? 0 : 1);
}

void tst_KeyFilter::textKeepsItsKeys()
{
    QFETCH(Route, route);
    const auto *const edit = m_window->add<QLineEdit>();
    QTRY_COMPARE(QApplication::focusWidget(), edit);
    type(route, Qt::Key_P);
    type(route, Qt::Key_S);
    type(route, Qt::Key_Space);
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
    type(Route::Window, Qt::Key_P);
    type(Route::Window, Qt::Key_Shift);
    QVERIFY(m_window->label.presses.contains(Qt::Key_P));
    QVERIFY(m_window->label.presses.contains(Qt::Key_Shift));
    QVERIFY(!other.readFile(other.path("_current.plist")));
}

QW_KEY_DISPATCH_MAIN(tst_KeyFilter)
#include "tst_KeyFilter.moc"
