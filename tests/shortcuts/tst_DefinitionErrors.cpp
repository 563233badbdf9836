#include "SampleShortcuts.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QMainWindow>
#include <QMenuBar>

using namespace sample;

namespace
{
/// What was said of the definition while one lives.
class Told
{
public:
    Told()
    {
        lines().clear();
        m_before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
            const QString start = "Shortcut definition \"shortcuts.plist\": ";
            if (text.startsWith(start))
                lines().append(text.mid(start.size()));
        });
    }
    ~Told() { qInstallMessageHandler(m_before); }
    Told(const Told &) = delete;
    Told &operator=(const Told &) = delete;

    static QStringList &lines()
    {
        static QStringList all;
        return all;
    }

private:
    QtMessageHandler m_before;
};

/// A window whose delegate answers "later:".
class LateWindow : public QMainWindow
{
    Q_OBJECT

public:
    Q_INVOKABLE void later(QObject *) {}
};
} // namespace

/// What is wrong with the host's factory definition is told, as for interface files.
class tst_DefinitionErrors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void goodDefinitionIsSilent();
    void missingFileIsTold();
    void malformedFileIsTold_data();
    void malformedFileIsTold();
    void malformedFileIsToldOnceUntilItChanges();
    void unknownMenusAreTold();
    void unknownActionsAreTold();
    void windowsThatComeLaterAnswerToo();
    void withoutAMenuBarNoMenuIsMissed();

private:
    /// Everything that is told until the loop has come round.
    static QStringList told(const QVariant &definition)
    {
        const ShortcutSystem system;
        system.addHostResource("shortcuts.plist", platform::PropertyList::toXml(definition));
        return toldWhileLoading();
    }

    static QStringList toldWhileLoading()
    {
        const Told told;
        loaded();
        QCoreApplication::processEvents();
        return told.lines();
    }

    ShortcutReceiver m_receiver;
};

void tst_DefinitionErrors::goodDefinitionIsSilent()
{
    QMainWindow window;
    platform::addMenuItem(*window.menuBar()->addMenu("File"), "Save", "save:");
    window.show();
    QCOMPARE(told(factory), QStringList());
}

void tst_DefinitionErrors::missingFileIsTold()
{
    const ShortcutSystem system;
    QCOMPARE(toldWhileLoading(), QStringList("there is no such file in the host's resources"));
}

void tst_DefinitionErrors::malformedFileIsTold_data()
{
    QTest::addColumn<QVariant>("definition");
    QTest::addColumn<QStringList>("told");
    const auto row = [](const char *name, const QVariant &definition, const QStringList &told) {
        QTest::newRow(name) << definition << told;
    };
    const QVariantMap nameless{{"action", "play:"}};
    const QVariantMap idle{{"name", "Play"}};
    row("dictionary", QVariantMap{{"name", "x"}}, {"it is no array of groups"});
    row("no group", QVariantList{1}, {"group 1 is no dictionary"});
    row("group without shortcuts", QVariantList{QVariantMap{{"name", "Edit"}}},
        {"the \"shortcuts\" of group 1 (\"Edit\") are no array"});
    row("group without name", QVariantList{QVariantMap{{"shortcuts", QVariantList()}}}, {"group 1 has no \"name\""});
    row("second of two", QVariantList{groupState("A", {}), groupState("B", {shortcutState("Play", "play:", 'p'), 7})},
        {"shortcut 2 of group 2 (\"B\") is no dictionary"});
    row("shortcut without name or action", QVariantList{groupState("A", {nameless, idle})},
        {"shortcut 1 of group 1 (\"A\") has no \"name\"", "shortcut 2 of group 1 (\"A\") has no \"action\""});
}

void tst_DefinitionErrors::malformedFileIsTold()
{
    QFETCH(QVariant, definition);
    QTEST(told(definition), "told");
}

void tst_DefinitionErrors::malformedFileIsToldOnceUntilItChanges()
{
    const ShortcutSystem system;
    system.addHostResource("shortcuts.plist", "no list");
    const QStringList unreadable{"it cannot be read, or is no property list"};
    QCOMPARE(toldWhileLoading(), unreadable);
    QCOMPARE(toldWhileLoading(), QStringList());
    system.addHostResource("shortcuts.plist", "no list either");
    QCOMPARE(toldWhileLoading(), unreadable);
}

void tst_DefinitionErrors::unknownMenusAreTold()
{
    QMainWindow window;
    platform::addMenuItem(*window.menuBar()->addMenu("File"), "Save", "save:");
    window.show();
    const QVariantList definition{
        groupState("File", {shortcutState("Save", "save:", 's'), shortcutState("Save>As", "save:", 't', 0, 1)}, true),
        groupState("Fiel", {shortcutState("Save", "save:", 'u', 0, 2)}, true),
        groupState("No menu", {shortcutState("Play", "play:", 'p')})};
    QCOMPARE(told(definition), (QStringList{"no menu has an item \"Save>As\" that can have a key",
                                            "the main menu has no menu \"Fiel\""}));
}

void tst_DefinitionErrors::unknownActionsAreTold()
{
    const QVariantList definition{
        groupState("Transport", {shortcutState("Play", "play:", 'p'), shortcutState("Stop", "stopp:", 's')})};
    QCOMPARE(told(definition), QStringList("nobody answers the action \"stopp:\" of \"Stop\""));
}

void tst_DefinitionErrors::windowsThatComeLaterAnswerToo()
{
    const ShortcutSystem system({groupState("Late", {shortcutState("Later", "later:", 'l')})});
    const Told told;
    loaded();
    const LateWindow window; // as in the rest of the launch; not even shown yet
    QCoreApplication::processEvents();
    QCOMPARE(told.lines(), QStringList());
}

void tst_DefinitionErrors::withoutAMenuBarNoMenuIsMissed()
{
    QCOMPARE(told(factory), QStringList());
}

QW_TEST_MAIN(tst_DefinitionErrors)
#include "tst_DefinitionErrors.moc"
