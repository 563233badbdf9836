#include "EditorHost.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/TextForms.h>

#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTimer>

namespace TextForms = platform::TextForms;

namespace
{
constexpr auto openKey = "Keyboard Shortcuts Open";
constexpr auto frameKey = "Keyboard Shortcuts Frame";

QRect visibleArea()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}

QVariantMap frame(const QVariant &value)
{
    return {{frameKey, value}};
}
} // namespace

/// The window: when it opens, where it stands, what a keyboard reaches.
class tst_ShortcutEditorPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsMadeBeforeItOpens();
    void openComesToTheFront();
    void openStateIsRemembered();
    void opensAtStartWhenLeftOpen_data();
    void opensAtStartWhenLeftOpen();
    void quittingIsNotClosing();
    void toggleClosesOnlyTheKeyWindow();
    void firstFrameIsAtTheLowerRight();
    void storedFrameIsUsed();
    void badFramesHurtNothing_data();
    void badFramesHurtNothing();
    void narrowFrameIsWidened();
    void frameBeyondTheScreensIsMovedThere_data();
    void frameBeyondTheScreensIsMovedThere();
    void onlyMovesStoreTheFrame();
    void registryIsTheWindowsDelegate();
    void everythingIsReachedByTab();
    void rowMenuDoesWhatTheMouseDoes();
    void findGoesToTheSearch();
    void badInterfaceFileOpensNothing();
    void hostsOwnInterfaceFileIsTaken();
};

void tst_ShortcutEditorPanel::nothingIsMadeBeforeItOpens()
{
    const EditorHost host;
    QVERIFY(!host.window());
    QVERIFY(host.open());
    QCOMPARE(host.window()->windowTitle(), QString("Keyboard Shortcuts"));
    QVERIFY(platform::isFloatingPanel(host.window()));
    QVERIFY(!host.sheet()->isVisible());
    QVERIFY(!host.outlet<QWidget>("saveShortcutPanel")->isVisible());
}

void tst_ShortcutEditorPanel::openComesToTheFront()
{
    const EditorHost host;
    QVERIFY(host.open());
    const QWidget *const first = host.window();
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(EditorHost::becomesKey(other));
    QVERIFY(host.open());
    QCOMPARE(host.window(), first);
    host.window()->showMinimized();
    QVERIFY(host.open());
    QVERIFY(!host.window()->isMinimized());
}

void tst_ShortcutEditorPanel::openStateIsRemembered()
{
    const EditorHost host;
    QVERIFY(!host.stored(openKey).isValid());
    QVERIFY(host.open());
    QCOMPARE(host.stored(openKey), QVariant(true));
    host.window()->close();
    QCOMPARE(host.stored(openKey), QVariant(false));
    QVERIFY(host.open());
    QCOMPARE(host.stored(openKey), QVariant(true));
}

void tst_ShortcutEditorPanel::opensAtStartWhenLeftOpen_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("opens");
    QTest::newRow("never") << QVariant() << false;
    QTest::newRow("open") << QVariant(true) << true;
    QTest::newRow("closed") << QVariant(false) << false;
    QTest::newRow("an array") << QVariant(QVariantList{1}) << false;
    QTest::newRow("a dictionary") << QVariant(QVariantMap{{"a", 1}}) << false;
    QTest::newRow("data") << QVariant(QByteArray("x")) << false;
}

void tst_ShortcutEditorPanel::opensAtStartWhenLeftOpen()
{
    QFETCH(QVariant, stored);
    const EditorHost host(EditorHost::sampleGroups(),
                          stored.isValid() ? QVariantMap{{openKey, stored}} : QVariantMap());
    const QWidget *const window = host.window();
    QTEST(window && window->isVisible(), "opens");
}

void tst_ShortcutEditorPanel::quittingIsNotClosing()
{
    const EditorHost host;
    QVERIFY(host.open());
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec();
    QCOMPARE(host.stored(openKey), QVariant(true));
    QVERIFY(host.open());
    host.window()->close();
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec();
    QCOMPARE(host.stored(openKey), QVariant(false));
}

void tst_ShortcutEditorPanel::toggleClosesOnlyTheKeyWindow()
{
    const EditorHost host;
    QWKeyboardShortcuts::togglePanel();
    QVERIFY(EditorHost::becomesKey(*host.window()));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(EditorHost::becomesKey(other));
    QWKeyboardShortcuts::togglePanel(); // comes to the front
    QVERIFY(EditorHost::becomesKey(*host.window()));
    QWKeyboardShortcuts::togglePanel();
    QVERIFY(!host.window()->isVisible());
    QCOMPARE(host.stored(openKey), QVariant(false));
}

void tst_ShortcutEditorPanel::firstFrameIsAtTheLowerRight()
{
    const EditorHost host;
    QVERIFY(host.open());
    const QRect expected(visibleArea().right() + 1 - 392 - 4, visibleArea().bottom() + 1 - 259 - 32, 392, 259);
    QCOMPARE(host.window()->geometry(), expected);
    QVERIFY(!host.system.userDefaults().isSet(frameKey)); // registered only
    QCOMPARE(TextForms::rectFromString(host.stored(frameKey).toString()).toRect(), expected);
}

void tst_ShortcutEditorPanel::storedFrameIsUsed()
{
    const EditorHost host(EditorHost::sampleGroups(), frame("{{120, 90}, {500, 300}}"));
    QVERIFY(host.open());
    QCOMPARE(host.window()->geometry(), QRect(120, 90, 500, 300));
}

void tst_ShortcutEditorPanel::badFramesHurtNothing_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("empty rectangle") << QVariant("{{0, 0}, {0, 0}}");
    QTest::newRow("no rectangle") << QVariant("somewhere");
    QTest::newRow("empty") << QVariant("");
    QTest::newRow("array") << QVariant(QVariantList{1, 2, 3, 4});
    QTest::newRow("dictionary") << QVariant(QVariantMap{{"x", 1}});
    QTest::newRow("data") << QVariant(QByteArray("\x00\xff", 2));
    QTest::newRow("negative size") << QVariant("{{10, 10}, {-400, -300}}");
    QTest::newRow("huge") << QVariant("{{1e300, 1e300}, {1e300, 1e300}}");
    QTest::newRow("not finite") << QVariant("{{nan, inf}, {nan, inf}}");
}

/// The frame of last resort, moved onto the screen.
void tst_ShortcutEditorPanel::badFramesHurtNothing()
{
    QFETCH(QVariant, stored);
    const EditorHost host(EditorHost::sampleGroups(), frame(stored));
    QVERIFY(host.open());
    QCOMPARE(host.window()->size(), QSize(392, 259));
    QCOMPARE(host.window()->geometry().y(), 97);
    QVERIFY(visibleArea().contains(host.window()->geometry()));
}

void tst_ShortcutEditorPanel::narrowFrameIsWidened()
{
    const EditorHost host(EditorHost::sampleGroups(), frame("{{50, 60}, {200, 240}}"));
    QVERIFY(host.open());
    QCOMPARE(host.window()->geometry(), QRect(50, 60, 392, 240));
}

void tst_ShortcutEditorPanel::frameBeyondTheScreensIsMovedThere_data()
{
    QTest::addColumn<QString>("stored");
    QTest::newRow("right") << "{{5000, 100}, {392, 259}}";
    QTest::newRow("left") << "{{-5000, 100}, {392, 259}}";
    QTest::newRow("above") << "{{100, -900}, {392, 259}}";
    QTest::newRow("below") << "{{100, 9000}, {392, 259}}";
    QTest::newRow("half") << "{{700, 500}, {392, 259}}";
    QTest::newRow("larger than any") << "{{0, 0}, {9000, 9000}}";
}

void tst_ShortcutEditorPanel::frameBeyondTheScreensIsMovedThere()
{
    QFETCH(QString, stored);
    const EditorHost host(EditorHost::sampleGroups(), frame(stored));
    QVERIFY(host.open());
    QVERIFY(visibleArea().contains(host.window()->geometry()));
    QCOMPARE(host.stored(frameKey).toString(), stored); // the screen may come back
}

void tst_ShortcutEditorPanel::onlyMovesStoreTheFrame()
{
    const EditorHost host(EditorHost::sampleGroups(), frame("{{50, 60}, {400, 260}}"));
    QVERIFY(host.open());
    host.window()->resize(420, 280);
    QCoreApplication::processEvents();
    QCOMPARE(host.stored(frameKey).toString(), QString("{{50, 60}, {400, 260}}"));
    host.window()->move(70, 80);
    const QRect moved = host.window()->geometry(); // without the desktop's title bar
    QVERIFY(moved.topLeft() != QPoint(50, 60) && moved.size() == QSize(420, 280));
    QTRY_COMPARE(TextForms::rectFromString(host.stored(frameKey).toString()).toRect(), moved);
}

void tst_ShortcutEditorPanel::registryIsTheWindowsDelegate()
{
    const EditorHost host;
    QVERIFY(host.open());
    QCOMPARE(platform::delegateOf(host.window()), &host.registry());
    QCOMPARE(platform::targetForAction("loadPreset:"), &host.registry());
}

void tst_ShortcutEditorPanel::everythingIsReachedByTab()
{
    const EditorHost host;
    QVERIFY(host.open());
    host.outlet<QWidget>("searchText")->setFocus();
    QStringList reached;
    for (int i = 0; i < 3; ++i) {
        const QWidget *const focus = QApplication::focusWidget();
        reached.append(focus->objectName());
        const auto *const button = qobject_cast<const QPushButton *>(focus);
        QVERIFY2(!focus->accessibleName().isEmpty() || (button && !button->text().isEmpty()),
                 qPrintable(reached.last()));
        host.type(Qt::Key_Tab);
    }
    QCOMPARE(reached, (QStringList{"searchText", "presetsPopup", "shortcutsTable"}));
    QCOMPARE(QApplication::focusWidget()->objectName(), QString("searchText"));
}

void tst_ShortcutEditorPanel::rowMenuDoesWhatTheMouseDoes()
{
    const EditorHost host;
    QVERIFY(host.open());
    host.outline()->expandAll();
    host.outline()->setFocus();
    const auto choose = [&](const QModelIndex &index, const QString &title) {
        host.outline()->setCurrentIndex(index);
        QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {}, {});
        QCoreApplication::sendEvent(host.outline()->viewport(), &byKey);
        auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu)
            return false;
        const QList<QAction *> actions = menu->actions();
        const auto found = std::find_if(actions.begin(), actions.end(), [&](auto *a) { return a->text() == title; });
        if (found != actions.end())
            (*found)->trigger();
        menu->close();
        return found != actions.end();
    };
    QVERIFY(choose(host.shortcut(0, 0), "Clear Shortcut"));
    QVERIFY(host.at(0, 0)->key().isClear());
    QVERIFY(choose(host.shortcut(0, 0), "Enabled"));
    QVERIFY(!host.at(0, 0)->enabled());
    QVERIFY(choose(host.group(1), "Enabled"));
    QCOMPARE(host.registry().groups().at(1)->enabled(), 0);
    QVERIFY(!choose(host.group(1), "Change Shortcut…"));
    QVERIFY(choose(host.shortcut(1, 0), "Change Shortcut…"));
    QVERIFY(host.sheet()->isVisible());
}

void tst_ShortcutEditorPanel::findGoesToTheSearch()
{
    const EditorHost host;
    QVERIFY(host.open());
    host.outline()->setFocus();
    host.type(Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(QApplication::focusWidget()->objectName(), QString("searchText"));
}

void tst_ShortcutEditorPanel::badInterfaceFileOpensNothing()
{
    const EditorHost host;
    host.system.addHostResource("QWKeyboardShortcuts.ui",
                                "<ui version=\"4.0\"><widget class=\"QWidget\" name=\"a\"/></ui>");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("there is no outlet \"window\""));
    for (int outlet = 1; outlet < 13; ++outlet)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("there is no outlet"));
    QWKeyboardShortcuts::openPanel();
    QVERIFY(!host.window());
    QVERIFY(!host.stored(openKey).toBool());
    host.registry().loadCurrentShortcuts();
    host.registry().buildPresetsMenu();
    QCOMPARE(host.registry().displayResults().size(), std::size_t(2));
}

void tst_ShortcutEditorPanel::hostsOwnInterfaceFileIsTaken()
{
    const EditorHost other;
    QVERIFY(other.open());
    const QString own = QW_RESOURCES_DIR "/QWKeyboardShortcuts.ui";
    QFile file(own);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const EditorHost host;
    host.system.addHostResource("QWKeyboardShortcuts.ui",
                                file.readAll().replace("Keyboard Shortcuts<", "Keys of this host<"));
    QVERIFY(host.open());
    QCOMPARE(host.window()->windowTitle(), QString("Keys of this host"));
}

QW_TEST_MAIN(tst_ShortcutEditorPanel)
#include "tst_ShortcutEditorPanel.moc"
