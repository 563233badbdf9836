#include "fakes/QWTestMain.h"

#include <QWBase/QWMenuSorting.h>
#include <QWBase/menus/SortedMenuBuilder.h>

#include <QWPlatform/appkit/MenuItem.h>

#include <QMenu>
#include <QRandomGenerator>

using platform::MenuItem;

namespace
{
QStringList titlesOf(const QMenu &menu)
{
    QStringList titles;
    for (const QAction *const item : menu.actions())
        titles += platform::titleOf(*item) + (item->menu() ? " >" : "");
    return titles;
}

/// Titles with the number of their addition, which tells equal ones apart.
QStringList numberedTitlesOf(const QMenu &menu)
{
    QStringList titles;
    for (const QAction *const item : menu.actions())
        titles += platform::titleOf(*item) + '#' + item->data().toString();
    return titles;
}

QStringList someTitles(int count, quint32 seed)
{
    static const QStringList parts{"echo", "Echo", "ECHO", "é", "e",    " ", "&", "10",
                                   "9",    "09",   "ß",    "Ω", "日本", "🎹", "-"};
    QRandomGenerator random(seed);
    QStringList titles;
    for (int i = 0; i < count; ++i) {
        QString title;
        for (quint32 part = 0, parts_ = random.bounded(1u, 4u); part < parts_; ++part)
            title += parts.at(random.bounded(int(parts.size())));
        titles += title;
    }
    return titles;
}
} // namespace

class tst_QWMenuSorting : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void titlesCompareAsPeopleExpect_data();
    void titlesCompareAsPeopleExpect();
    void orderFollowsTheUsersLanguage();
    void keysCompareAsTitlesDo();
    void itemsGoToTheirPlace();
    void titlesAreKeptAsGiven();
    void builderGivesTheResultOfRepeatedInsertion_data();
    void builderGivesTheResultOfRepeatedInsertion();
    void builderMergesIntoWhatTheMenuHolds();
    void submenusAreFoundByTheirExactTitle();
    void itemsWithoutSubmenuAreNoFolders();
};

void tst_QWMenuSorting::titlesCompareAsPeopleExpect_data()
{
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::addColumn<int>("sign");
    QTest::newRow("letters") << "a"
                             << "b" << -1;
    QTest::newRow("case does not matter") << "ECHO"
                                          << "echo" << 0;
    QTest::newRow("case does not matter before others") << "Zoom"
                                                        << "apple" << 1;
    QTest::newRow("numbers by value") << "Echo 2"
                                      << "Echo 10" << -1;
    QTest::newRow("accents near their letters") << "Éclair"
                                                << "Flanger" << -1;
    QTest::newRow("shorter first") << "Echo"
                                   << "Echo Pro" << -1;
    QTest::newRow("empty first") << ""
                                 << "a" << -1;
    QTest::newRow("same") << "日本"
                          << "日本" << 0;
}

void tst_QWMenuSorting::titlesCompareAsPeopleExpect()
{
    QFETCH(QString, left);
    QFETCH(QString, right);
    QFETCH(int, sign);
    const auto signOf = [](int order) { return (order > 0) - (order < 0); };
    QCOMPARE(signOf(QWMenuSorting::compareTitles(left, right)), sign);
    QCOMPARE(signOf(QWMenuSorting::compareTitles(right, left)), -sign);
}

void tst_QWMenuSorting::orderFollowsTheUsersLanguage()
{
    QLocale::setDefault(QLocale(QLocale::German));
    QVERIFY(QWMenuSorting::compareTitles("Ähre", "Zoo") < 0);
    QLocale::setDefault(QLocale(QLocale::Swedish));
    QVERIFY(QWMenuSorting::compareTitles("Ähre", "Zoo") > 0);
}

void tst_QWMenuSorting::keysCompareAsTitlesDo()
{
    const QStringList titles = someTitles(200, 1);
    for (const QString &left : titles) {
        const QCollatorSortKey key = QWMenuSorting::sortKey(left);
        for (const QString &right : titles) {
            const int byKey = key.compare(QWMenuSorting::sortKey(right));
            const int byTitle = QWMenuSorting::compareTitles(left, right);
            QVERIFY2((byKey < 0) == (byTitle < 0) && (byKey > 0) == (byTitle > 0), qPrintable(left + " / " + right));
        }
    }
}

void tst_QWMenuSorting::itemsGoToTheirPlace()
{
    QMenu menu;
    for (const char *const title : {"delay", "Echo 10", "Chorus", "echo 2", "Delay", "Zoom", "Ambience"}) {
        const MenuItem *const item = QWMenuSorting::addItemSortedWithTitle(menu, title);
        QCOMPARE(item->title(), QString(title));
        QCOMPARE(item->parent(), &menu);
    }
    QCOMPARE(titlesOf(menu), QStringList({"Ambience", "Chorus", "delay", "Delay", "echo 2", "Echo 10", "Zoom"}));
}

void tst_QWMenuSorting::titlesAreKeptAsGiven()
{
    QMenu menu;
    qw::SortedMenuBuilder builder(menu);
    for (const char *const title : {"R&B", "&Echo", "Tab\tand\nline"})
        builder.addItemSortedWithTitle(title);
    builder.build();
    QCOMPARE(titlesOf(menu), QStringList({"&Echo", "R&B", "Tab\tand\nline"}));
    QCOMPARE(menu.actions().at(1)->text(), QString("R&&B"));
}

void tst_QWMenuSorting::builderGivesTheResultOfRepeatedInsertion_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("before");
    for (quint32 seed = 0; seed < 8; ++seed)
        QTest::addRow("%u", seed) << seed << int(seed % 2 ? 60 : 0);
}

void tst_QWMenuSorting::builderGivesTheResultOfRepeatedInsertion()
{
    QFETCH(quint32, seed);
    QFETCH(int, before);
    const QStringList titles = someTitles(400, seed);
    QMenu oneByOne;
    QMenu atOnce;
    int number = 0;
    for (const QString &title : titles)
        QWMenuSorting::addItemSortedWithTitle(oneByOne, title)->setData(++number);
    number = 0;
    for (const QString &title : titles.first(before))
        QWMenuSorting::addItemSortedWithTitle(atOnce, title)->setData(++number);
    {
        qw::SortedMenuBuilder builder(atOnce);
        for (const QString &title : titles.sliced(before))
            builder.addItemSortedWithTitle(title)->setData(++number);
        QCOMPARE(atOnce.actions().size(), before); // not yet
    }
    QCOMPARE(numberedTitlesOf(atOnce), numberedTitlesOf(oneByOne));
}

void tst_QWMenuSorting::builderMergesIntoWhatTheMenuHolds()
{
    QMenu menu;
    qw::SortedMenuBuilder builder(menu);
    builder.addItemSortedWithTitle("b");
    builder.build();
    builder.build(); // adds nothing twice
    builder.addItemSortedWithTitle("c");
    builder.addItemSortedWithTitle("B");
    builder.addItemSortedWithTitle("a");
    builder.build();
    QCOMPARE(titlesOf(menu), QStringList({"a", "b", "B", "c"}));
}

void tst_QWMenuSorting::submenusAreFoundByTheirExactTitle()
{
    QMenu menu;
    {
        qw::SortedMenuBuilder builder(menu);
        builder.submenuWithTitle("acme").addItemSortedWithTitle("Flanger");
        builder.submenuWithTitle("Acme").addItemSortedWithTitle("Reverb");
        builder.submenuWithTitle("acme").addItemSortedWithTitle("Delay");
        builder.submenuWithTitle("acme").submenuWithTitle("Old").addItemSortedWithTitle("Tape");
        QCOMPARE(&builder.submenuWithTitle("acme"), &builder.submenuWithTitle("acme"));
    }
    QCOMPARE(titlesOf(menu), QStringList({"acme >", "Acme >"}));
    const QMenu *const acme = menu.actions().at(0)->menu();
    QCOMPARE(titlesOf(*acme), QStringList({"Delay", "Flanger", "Old >"}));
    QCOMPARE(titlesOf(*acme->actions().at(2)->menu()), QStringList("Tape"));

    qw::SortedMenuBuilder(menu).submenuWithTitle("acme").addItemSortedWithTitle("Echo"); // there already
    QCOMPARE(titlesOf(menu), QStringList({"acme >", "Acme >"}));
    QCOMPARE(titlesOf(*acme), QStringList({"Delay", "Echo", "Flanger", "Old >"}));
}

void tst_QWMenuSorting::itemsWithoutSubmenuAreNoFolders()
{
    QMenu menu;
    {
        qw::SortedMenuBuilder builder(menu);
        builder.addItemSortedWithTitle("Acme");
        builder.submenuWithTitle("Acme").addItemSortedWithTitle("Echo");
    }
    QCOMPARE(titlesOf(menu), QStringList({"Acme", "Acme >"}));
}

QW_TEST_MAIN(tst_QWMenuSorting)
#include "tst_QWMenuSorting.moc"
