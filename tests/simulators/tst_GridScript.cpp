#include <simulators/GridScript.h>
#include <simulators/GridSimulator.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

/// A simulated grid, not plugged in yet, and what happens to it.
struct ScriptedGrid
{
    QTemporaryDir folder;
    GridSimulator grid{folder.path()};
    GridScript script{grid};
    QSignalSpy changed{&grid, &GridSimulator::buttonChanged};
    QSignalSpy failed{&script, &GridScript::failed};
};

/// Commands to a simulated grid that nobody has opened.
class tst_GridScript : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsPressButtons_data();
    void commandsPressButtons();
    void commandsThatMeanNothingAreTold_data();
    void commandsThatMeanNothingAreTold();
    void nothingIsPressedBeforeAGridIsPluggedIn();
};

void tst_GridScript::commandsPressButtons_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QList<QVariantList>>("changes");
    QTest::newRow("press") << "press 3 5" << QList<QVariantList>{{3, 5, true}};
    QTest::newRow("release") << "release 3 5" << QList<QVariantList>{{3, 5, false}};
    QTest::newRow("tap") << "tap 3 5" << QList<QVariantList>{{3, 5, true}, {3, 5, false}};
    QTest::newRow("last button") << "press 15 7" << QList<QVariantList>{{15, 7, true}};
    QTest::newRow("blanks") << "  press   0\t0 " << QList<QVariantList>{{0, 0, true}};
    QTest::newRow("comment") << "# press 3 5" << QList<QVariantList>();
    QTest::newRow("after a rest") << "wait 1" << QList<QVariantList>();
}

void tst_GridScript::commandsPressButtons()
{
    QFETCH(QString, line);
    QFETCH(QList<QVariantList>, changes);
    ScriptedGrid test;
    QVERIFY(test.grid.plug("m128-0012"));
    test.script.add(line);
    test.script.add("tap 1 1"); // tells that all before it was done
    QTRY_COMPARE(test.changed.size(), changes.size() + 2);
    QCOMPARE(QList<QVariantList>(test.changed.mid(0, changes.size())), changes);
    QCOMPARE(test.failed.size(), 0);
}

void tst_GridScript::commandsThatMeanNothingAreTold_data()
{
    QTest::addColumn<QString>("line");
    for (const char *const line : {"nonsense", "press", "press 3", "press x y", "press 16 0", "tap 0 8", "release -1 0",
                                   "wait", "wait soon", "wait -1", "plug", "plug m99-0001"})
        QTest::newRow(line) << line;
}

void tst_GridScript::commandsThatMeanNothingAreTold()
{
    QFETCH(QString, line);
    ScriptedGrid test;
    QVERIFY(test.grid.plug("m128-0012"));
    test.script.add(line);
    QTRY_COMPARE(test.failed.size(), 1);
    QCOMPARE(test.failed.first(), QVariantList{line});
    QCOMPARE(test.changed.size(), 0);
}

void tst_GridScript::nothingIsPressedBeforeAGridIsPluggedIn()
{
    ScriptedGrid test;
    test.script.add("press 0 0");
    QTRY_COMPARE(test.failed.size(), 1);
}

QTEST_GUILESS_MAIN(tst_GridScript)
#include "tst_GridScript.moc"
