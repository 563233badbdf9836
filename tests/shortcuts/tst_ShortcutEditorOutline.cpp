#include "EditorHost.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>

#include <string>

using Column = EditorHost::Column;

namespace
{
QString text(const QModelIndex &index)
{
    return index.data().toString();
}

int checked(const QModelIndex &index)
{
    return index.siblingAtColumn(Column::Enabled).data(Qt::CheckStateRole).toInt();
}

QPoint boxAt(const EditorHost &host, const QModelIndex &index)
{
    return host.outline()->visualRect(index.siblingAtColumn(Column::Enabled)).center() - QPoint(3, 0);
}

/// So many groups of a hundred shortcuts.
QVariantList manyGroups(int count)
{
    QVariantList groups;
    for (int group = 0; group < count; ++group) {
        QVariantList shortcuts;
        for (int i = 0; i < 100; ++i)
            shortcuts.append(
                shortcutState(QString("Clip %1 of %2").arg(i).arg(group), "play:", 'a', 0, group * 100 + i));
        groups.append(groupState(QString("Group %1").arg(group), shortcuts));
    }
    return groups;
}
} // namespace

class tst_ShortcutEditorOutline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_host = std::make_unique<EditorHost>(); }
    void cleanup() { m_host.reset(); }
    void rowsAreGroupsAndTheirShortcuts();
    void modelKeepsItsPromises();
    void cellsSayWhatTheyShow();
    void rowsOfOneSubmenuCanBeToldApart();
    void disabledKeyIsGray_data();
    void disabledKeyIsGray();
    void boxSwitchesOneShortcut();
    void boxOfAGroupSwitchesAll();
    void boxChangesTheMenuItem();
    void spaceSwitchesTheRow();
    void deleteClearsTheRow();
    void assignedKeysFireInsteadOfOperatingTheList();
    void rowSaysItself();
    void searchShowsWhatMatches_data();
    void searchShowsWhatMatches();
    void searchExpandsAndEmptyCollapses();
    void searchSharesTheShortcuts();
    void downGoesFromTheSearchIntoTheList();
    void reloadKeepsTheView();
    void groupThatChangesBehindTheModelHurtsNothing();
    void emptyListSaysWhy();
    void fiveThousandShortcutsStayQuick();

private:
    std::unique_ptr<EditorHost> m_host;
};

void tst_ShortcutEditorOutline::rowsAreGroupsAndTheirShortcuts()
{
    QVERIFY(m_host->open());
    QCOMPARE(m_host->model()->rowCount(), 2);
    QCOMPARE(m_host->model()->rowCount(m_host->group(0)), 3);
    QCOMPARE(m_host->model()->rowCount(m_host->shortcut(0, 0)), 0);
    QVERIFY(!m_host->outline()->isExpanded(m_host->group(0)));
}

void tst_ShortcutEditorOutline::modelKeepsItsPromises()
{
    QVERIFY(m_host->open());
    const QAbstractItemModelTester tester(m_host->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_host->outlet<QLineEdit>("searchText")->setText("e");
    m_host->model()->setData(m_host->shortcut(0, 0, Column::Enabled), Qt::Unchecked, Qt::CheckStateRole);
    m_host->outlet<QLineEdit>("searchText")->clear();
    m_host->registry().loadCurrentShortcuts();
    QCOMPARE(m_host->model()->rowCount(), 2);
    QVERIFY(!m_host->model()->setData(m_host->shortcut(0, 0), "New name", Qt::EditRole));
}

void tst_ShortcutEditorOutline::cellsSayWhatTheyShow()
{
    QVERIFY(m_host->open());
    QCOMPARE(text(m_host->group(0)), QString("Transport"));
    QCOMPARE(text(m_host->group(1)), QString("Edit Menu"));
    QVERIFY(m_host->group(1).data(Qt::FontRole).value<QFont>().bold());
    QCOMPARE(text(m_host->group(1, Column::Shortcut)), QString());
    QCOMPARE(checked(m_host->group(0)), int(Qt::PartiallyChecked));
    QCOMPARE(checked(m_host->group(1)), int(Qt::Checked));
    QCOMPARE(text(m_host->shortcut(1, 1)), QString("Paste Special>Mérge"));
    QCOMPARE(text(m_host->shortcut(1, 1, Column::Shortcut)), QString("⇧⌘M"));
    QCOMPARE(m_host->shortcut(1, 1, Column::Shortcut).data(qw::ShortcutOutlineModel::KeycapsRole).toStringList(),
             (QStringList{"⇧", "⌘", "M"}));
    QCOMPARE(text(m_host->shortcut(0, 2, Column::Shortcut)), QString());
    QCOMPARE(checked(m_host->shortcut(0, 0)), int(Qt::Checked));
    QCOMPARE(checked(m_host->shortcut(0, 1)), int(Qt::Unchecked));
    QVERIFY(!(m_host->model()->flags(m_host->group(0)) & Qt::ItemIsUserCheckable));
    QVERIFY(m_host->model()->flags(m_host->group(0, Column::Enabled)) & Qt::ItemIsUserCheckable);
}

/// Their names begin alike and do not fit.
void tst_ShortcutEditorOutline::rowsOfOneSubmenuCanBeToldApart()
{
    m_host.reset();
    m_host = std::make_unique<EditorHost>(
        QVariantList{groupState("File", {shortcutState("Format for Saving the Whole Result As>Integer", "save:", 'i'),
                                         shortcutState("Format for Saving the Whole Result As>Float", "save:", 'f')})});
    QVERIFY(m_host->open());
    m_host->outline()->expandAll();
    m_host->outline()->setCurrentIndex(m_host->group(0));
    const auto picture = [this](int row) {
        const QRect cell = m_host->outline()->visualRect(m_host->shortcut(0, row));
        return m_host->outline()->viewport()->grab(cell).toImage();
    };
    QVERIFY(picture(0) != picture(1));
}

void tst_ShortcutEditorOutline::disabledKeyIsGray_data()
{
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("disabled");
    QTest::newRow("light") << QColor(Qt::black) << QColor(Qt::lightGray);
    QTest::newRow("dark") << QColor(Qt::white) << QColor(Qt::darkGray);
}

void tst_ShortcutEditorOutline::disabledKeyIsGray()
{
    QFETCH(QColor, text);
    QFETCH(QColor, disabled);
    QPalette palette;
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Disabled, QPalette::Text, disabled);
    QApplication::setPalette(palette);
    QVERIFY(m_host->open());
    QCOMPARE(m_host->shortcut(0, 0, Column::Shortcut).data(Qt::ForegroundRole).value<QBrush>().color(), text);
    QCOMPARE(m_host->shortcut(0, 1, Column::Shortcut).data(Qt::ForegroundRole).value<QBrush>().color(), disabled);
    QVERIFY(!m_host->shortcut(0, 1).data(Qt::ForegroundRole).isValid());
    QApplication::setPalette(QPalette());
}

void tst_ShortcutEditorOutline::boxSwitchesOneShortcut()
{
    QVERIFY(m_host->open());
    m_host->outline()->expandAll();
    const QPoint box = boxAt(*m_host, m_host->shortcut(0, 1));
    QTest::mouseClick(m_host->outline()->viewport(), Qt::LeftButton, {}, box);
    QVERIFY(m_host->at(0, 1)->enabled());
    QVERIFY(!m_host->sheet()->isVisible());
    QTest::mouseClick(m_host->outline()->viewport(), Qt::LeftButton, {}, box);
    QVERIFY(!m_host->at(0, 1)->enabled());
    QVERIFY(m_host->outline()->isExpanded(m_host->group(0)));
}

void tst_ShortcutEditorOutline::boxOfAGroupSwitchesAll()
{
    QVERIFY(m_host->open());
    const QPoint box = boxAt(*m_host, m_host->group(0));
    for (const auto expected : {Qt::Checked, Qt::Unchecked, Qt::Checked}) { // from mixed on
        QTest::mouseClick(m_host->outline()->viewport(), Qt::LeftButton, {}, box);
        QCOMPARE(checked(m_host->group(0)), int(expected));
        for (int row = 0; row < 3; ++row)
            QCOMPARE(m_host->at(0, row)->enabled(), expected == Qt::Checked);
    }
    QVERIFY(m_host->at(1, 0)->enabled());
}

void tst_ShortcutEditorOutline::boxChangesTheMenuItem()
{
    QMainWindow main;
    QMenu *const edit = main.menuBar()->addMenu("Edit");
    const platform::MenuItem *const cut = platform::addMenuItem(*edit, "Cut");
    main.show();
    m_host->registry().loadCurrentShortcuts();
    QVERIFY(m_host->open());
    QCOMPARE(cut->keyEquivalent(), QString("x"));
    m_host->model()->setData(m_host->group(1, Column::Enabled), Qt::Unchecked, Qt::CheckStateRole);
    QCOMPARE(cut->keyEquivalent(), QString());
    m_host->model()->setData(m_host->group(1, Column::Enabled), Qt::Checked, Qt::CheckStateRole);
    QCOMPARE(cut->keyEquivalent(), QString("x"));
}

void tst_ShortcutEditorOutline::spaceSwitchesTheRow()
{
    QVERIFY(m_host->open());
    m_host->outline()->expandAll();
    m_host->outline()->setFocus();
    m_host->outline()->setCurrentIndex(m_host->shortcut(0, 1));
    m_host->type(Qt::Key_Space);
    QVERIFY(m_host->at(0, 1)->enabled());
    m_host->outline()->setCurrentIndex(m_host->group(1));
    m_host->type(Qt::Key_Space);
    QCOMPARE(m_host->registry().groups().at(1)->enabled(), 0);
}

void tst_ShortcutEditorOutline::deleteClearsTheRow()
{
    QVERIFY(m_host->open());
    m_host->outline()->expandAll();
    m_host->outline()->setFocus();
    m_host->outline()->setCurrentIndex(m_host->shortcut(0, 0));
    m_host->type(Qt::Key_Delete);
    QVERIFY(m_host->at(0, 0)->key().isClear());
    QCOMPARE(m_host->system.current().size(), 1);
    QCOMPARE(m_host->outline()->currentIndex(), m_host->shortcut(0, 0));
    m_host->outline()->setCurrentIndex(m_host->group(1));
    m_host->type(Qt::Key_Delete); // groups have no key
    QCOMPARE(m_host->system.current().size(), 1);
}

void tst_ShortcutEditorOutline::assignedKeysFireInsteadOfOperatingTheList()
{
    m_host->at(0, 0)->setKey(QWShortcutKey(' ', 0));
    QVERIFY(m_host->open());
    m_host->outline()->setFocus();
    m_host->outline()->setCurrentIndex(m_host->group(1));
    m_host->type(Qt::Key_Space);
    QCOMPARE(m_host->receiver.sent, QStringList{"play 1"});
    QCOMPARE(m_host->registry().groups().at(1)->enabled(), 1);
    m_host->type(Qt::Key_Up); // arrows stay the list's
    QCOMPARE(m_host->outline()->currentIndex().row(), 0);
}

void tst_ShortcutEditorOutline::rowSaysItself()
{
    QVERIFY(m_host->open());
    const auto spoken = [](const QModelIndex &index) { return index.data(Qt::AccessibleTextRole).toString(); };
    QCOMPARE(spoken(m_host->shortcut(1, 0)), QString("Cut, Ctrl+X, on"));
    QCOMPARE(spoken(m_host->shortcut(0, 1)), QString("Stop, S, off"));
    QCOMPARE(spoken(m_host->shortcut(0, 2)), QString("Record, no shortcut, on"));
    QCOMPARE(spoken(m_host->group(0)), QString("Transport, partly on"));
    QCOMPARE(spoken(m_host->group(0, Column::Enabled)), QString("partly on"));
}

void tst_ShortcutEditorOutline::searchShowsWhatMatches_data()
{
    QTest::addColumn<QString>("search");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("letter case") << "PLAY" << QStringList{"Transport", "Play"};
    QTest::newRow("without accents") << "merge" << QStringList{"Edit Menu", "Paste Special>Mérge"};
    QTest::newRow("with other accents") << "rècörd" << QStringList{"Transport", "Record"};
    QTest::newRow("two groups") << "c" << QStringList{"Transport", "Record", "Edit Menu", "Cut", "Paste Special>Mérge"};
    QTest::newRow("group names are not searched") << "Transport" << QStringList{};
    QTest::newRow("nothing") << "zzz" << QStringList{};
    QTest::newRow("all") << "" << QStringList{"Transport", "Edit Menu"};
}

void tst_ShortcutEditorOutline::searchShowsWhatMatches()
{
    QFETCH(QString, search);
    QVERIFY(m_host->open());
    auto *const field = m_host->outlet<QLineEdit>("searchText");
    field->setFocus();
    field->setText("-");
    field->setText(search); // live: no Return
    QStringList rows;
    for (QModelIndex row = m_host->group(0); row.isValid(); row = m_host->outline()->indexBelow(row))
        rows.append(text(row.siblingAtColumn(Column::Name)));
    QTEST(rows, "rows");
}

void tst_ShortcutEditorOutline::searchExpandsAndEmptyCollapses()
{
    QVERIFY(m_host->open());
    auto *const field = m_host->outlet<QLineEdit>("searchText");
    field->setText("e");
    QVERIFY(m_host->outline()->isExpanded(m_host->group(0)) && m_host->outline()->isExpanded(m_host->group(1)));
    field->clear();
    QVERIFY(!m_host->outline()->isExpanded(m_host->group(0)) && !m_host->outline()->isExpanded(m_host->group(1)));
}

void tst_ShortcutEditorOutline::searchSharesTheShortcuts()
{
    QVERIFY(m_host->open());
    m_host->outlet<QLineEdit>("searchText")->setText("play");
    m_host->model()->setData(m_host->group(0, Column::Enabled), Qt::Unchecked, Qt::CheckStateRole);
    QVERIFY(!m_host->at(0, 0)->enabled());
    QVERIFY(m_host->at(0, 2)->enabled()); // not shown
    QCOMPARE(checked(m_host->group(0)), int(Qt::Unchecked));
}

void tst_ShortcutEditorOutline::downGoesFromTheSearchIntoTheList()
{
    QVERIFY(m_host->open());
    auto *const field = m_host->outlet<QLineEdit>("searchText");
    field->setFocus();
    field->setText("rec");
    m_host->type(Qt::Key_Down);
    QVERIFY(m_host->outline()->hasFocus());
    QCOMPARE(text(m_host->outline()->currentIndex().siblingAtColumn(Column::Name)), QString("Record"));
    field->setFocus();
    m_host->type(Qt::Key_Escape); // first empties the field, then closes
    QCOMPARE(field->text(), QString());
    QVERIFY(m_host->window()->isVisible());
    m_host->type(Qt::Key_Escape);
    QVERIFY(!m_host->window()->isVisible());
}

void tst_ShortcutEditorOutline::reloadKeepsTheView()
{
    QVERIFY(m_host->open());
    m_host->outline()->expand(m_host->group(1));
    m_host->outline()->setCurrentIndex(m_host->shortcut(1, 1));
    m_host->registry().loadCurrentShortcuts();
    QVERIFY(!m_host->outline()->isExpanded(m_host->group(0)));
    QVERIFY(m_host->outline()->isExpanded(m_host->group(1)));
    QCOMPARE(m_host->outline()->currentIndex(), m_host->shortcut(1, 1));
}

void tst_ShortcutEditorOutline::groupThatChangesBehindTheModelHurtsNothing()
{
    QVERIFY(m_host->open());
    m_host->outline()->expandAll();
    m_host->registry().groups().at(0)->setShortcuts({});
    QCOMPARE(text(m_host->shortcut(0, 2)), QString("Record"));
    m_host->outline()->grab();
    m_host->registry().reloadDisplay();
    QCOMPARE(m_host->model()->rowCount(m_host->group(0)), 0);
}

void tst_ShortcutEditorOutline::emptyListSaysWhy()
{
    QVERIFY(m_host->open());
    const QImage full = m_host->outline()->grab().toImage();
    m_host->outlet<QLineEdit>("searchText")->setText("zzz");
    const QImage none = m_host->outline()->grab().toImage();
    QImage blank(none.size(), none.format());
    blank.fill(none.pixelColor(1, 1));
    QVERIFY(none != full && none != blank);
    QCOMPARE(m_host->outline()->accessibleDescription(), QString("No shortcut is named “zzz”."));
}

/// In a few hundredths of a second; anything quadratic would meet the time-out of the test.
void tst_ShortcutEditorOutline::fiveThousandShortcutsStayQuick()
{
    m_host.reset();
    m_host = std::make_unique<EditorHost>(manyGroups(50));
    QVERIFY(m_host->open());
    auto *const search = m_host->outlet<QLineEdit>("searchText");
    for (const char letter : std::string("clip 7 of 4"))
        search->insert(QChar(letter));
    QCOMPARE(m_host->model()->rowCount(), 11); // groups 4 and 40 to 49
    QCOMPARE(m_host->model()->rowCount(m_host->group(0)), 1);
    search->clear();
    m_host->outline()->expandAll();
    m_host->model()->setData(m_host->group(49, Column::Enabled), Qt::Unchecked, Qt::CheckStateRole);
    m_host->outline()->scrollToBottom();
    m_host->outline()->grab();
    QCOMPARE(m_host->model()->rowCount(m_host->group(49)), 100);
    QVERIFY(!m_host->at(49, 99)->enabled());
}

QW_TEST_MAIN(tst_ShortcutEditorOutline)
#include "tst_ShortcutEditorOutline.moc"
