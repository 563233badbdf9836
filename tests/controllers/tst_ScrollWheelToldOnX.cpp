#include "ScrollWheelFixture.h"
#include "shortcuts/ScreenReader.h"

#include <QWBase/QWApplication.h>

#include <QAccessible>

/// What a screen reader is told of the panel of scroll wheel bindings.
class tst_ScrollWheelToldOnX : public QObject
{
    Q_OBJECT

public:
    explicit tst_ScrollWheelToldOnX(ScreenReader &reader)
        : m_reader(reader)
    {
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_reader.listen()); }
    void init() { ScreenReader::forget(); }
    void panelIsAWindow();
    void cellWithTheFocusSaysItself();
    void changedCellSaysItself();

private:
    ScreenReader &m_reader;
};

void tst_ScrollWheelToldOnX::panelIsAWindow()
{
    const ScrollWheelFixture host;
    host.open({host.record(true, 0, "zoom:")});
    QWidget *const panel = QWScrollWheelManager::defaultManager().panel();
    QCOMPARE(QAccessible::queryAccessibleInterface(panel)->role(), QAccessible::Window);
}

void tst_ScrollWheelToldOnX::cellWithTheFocusSaysItself()
{
    const ScrollWheelFixture host;
    host.open({host.record(true, 0, "zoom:")});
    QTRY_COMPARE(ScreenReader::focused(), QString("Axis: Vertical"));
    QVERIFY(XServer::act({"key", "Right"}));
    QTRY_COMPARE(ScreenReader::focused(), QString("Ctrl: off"));
    QVERIFY(XServer::act({"key", "Tab"}));
    QTRY_COMPARE(ScreenReader::focused(), QString("Alt: off"));
    for (const char *const key : {"shift+Tab", "shift+Tab", "shift+Tab"}) // past the first cell
        QVERIFY(XServer::act({"key", key}));
    QTRY_COMPARE(ScreenReader::focused(), QString("Remove Binding"));
    QVERIFY(XServer::act({"key", "Tab"}));
    QTRY_COMPARE(ScreenReader::focused(), QString("Axis: Vertical"));
}

void tst_ScrollWheelToldOnX::changedCellSaysItself()
{
    const ScrollWheelFixture host;
    host.open({host.record(true, 0, "zoom:")});
    QTRY_COMPARE(ScreenReader::focused(), QString("Axis: Vertical"));
    for (int column = 0; column < 3; ++column)
        QVERIFY(XServer::act({"key", "Right"}));
    QTRY_COMPARE(ScreenReader::focused(), QString("Shift: off"));
    QVERIFY(XServer::act({"key", "space"}));
    QTRY_COMPARE(ScreenReader::renamed(), QString("Shift: on"));
}

int main(int argc, char **argv)
{
    ScreenReader reader;
    QWApplication application(argc, argv);
    tst_ScrollWheelToldOnX test(reader);
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ScrollWheelToldOnX.moc"
