#include "BrowserHost.h"
#include "shortcuts/ScreenReader.h"

#include <QWBase/QWApplication.h>

#include <QAbstractButton>
#include <QAccessible>

/// What a screen reader is told of the recorder window, whose keys come from an X server.
class tst_RecorderWindowToldOnX : public QObject
{
    Q_OBJECT

public:
    explicit tst_RecorderWindowToldOnX(ScreenReader &reader)
        : m_reader(reader)
    {
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_reader.listen()); }
    void init() { ScreenReader::forget(); }
    void windowAndSheetSayWhatTheyAre();
    void everyControlHasAName();
    void cellsSayWhatTheyShow();
    void headerSaysItsColumnAndTheSort();
    void recordersSayTheirNames();
    void emptyTableSaysWhy();
    void sheetSaysWhatIsSavedAndWhatFailed();

private:
    static bool press(const char *key) { return XServer::act({"key", key}); }

    ScreenReader &m_reader;
};

void tst_RecorderWindowToldOnX::windowAndSheetSayWhatTheyAre()
{
    BrowserHost host;
    QVERIFY(host.openWith(BrowserHost::takes(1)));
    const QAccessibleInterface *const window = QAccessible::queryAccessibleInterface(host.window());
    QCOMPARE(window->role(), QAccessible::Window);
    QCOMPARE(window->text(QAccessible::Name), "Recordings – Studio");
    QCOMPARE(QAccessible::queryAccessibleInterface(&host.sheet())->role(), QAccessible::Dialog);
}

void tst_RecorderWindowToldOnX::everyControlHasAName()
{
    BrowserHost host;
    QVERIFY(host.openWith(BrowserHost::takes(1)));
    QWidgetList controls{&host.table(), &host.outline(), &host.searchField(), &host.formats(),
                         &host.outlet<QProgressBar>("progressBar")};
    for (QAbstractButton *const button : host.window()->findChildren<QAbstractButton *>())
        if (button->focusPolicy() != Qt::NoFocus)
            controls.append(button);
    QVERIFY(controls.size() >= 11);
    for (QWidget *const control : std::as_const(controls))
        QVERIFY2(!QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name).isEmpty(),
                 qPrintable(control->objectName()));
}

void tst_RecorderWindowToldOnX::cellsSayWhatTheyShow()
{
    BrowserHost host;
    QVERIFY(host.openWith({BrowserHost::take(187), BrowserHost::take(2)}));
    QVERIFY(press("Home"));
    QTRY_COMPARE(ScreenReader::focused(), "Take 187");
    QVERIFY(press("Right"));
    QTRY_COMPARE(ScreenReader::focused(), "3:07");
    QVERIFY(press("Down"));
    QTRY_COMPARE(ScreenReader::focused(), "0:02");
}

void tst_RecorderWindowToldOnX::headerSaysItsColumnAndTheSort()
{
    BrowserHost host;
    QVERIFY(host.openWith(BrowserHost::takes(2)));
    QVERIFY(press("Tab"));
    QTRY_COMPARE(ScreenReader::focused(), "Title");
    QVERIFY(press("Right"));
    QTRY_COMPARE(ScreenReader::focused(), "Length");
    QVERIFY(press("space"));
    QTRY_COMPARE(ScreenReader::focused(), "Length, sorted ascending");
    QVERIFY(press("space"));
    QTRY_COMPARE(ScreenReader::focused(), "Length, sorted descending");
    QVERIFY(press("Tab"));
    QTRY_COMPARE(ScreenReader::focused(), "Columns");
}

void tst_RecorderWindowToldOnX::recordersSayTheirNames()
{
    BrowserHost host;
    QVERIFY(host.openWith(BrowserHost::takes(2)));
    host.announce("Vesk on Stage", {}, 8);
    QVERIFY(host.resolve("Vesk on Stage", "Stage"));
    host.outline().setFocus();
    QTRY_COMPARE(ScreenReader::focused(), "Studio");
    QVERIFY(press("Down"));
    QTRY_COMPARE(ScreenReader::focused(), "Stage");
}

void tst_RecorderWindowToldOnX::emptyTableSaysWhy()
{
    BrowserHost host;
    QVERIFY(host.openWith({}));
    QAccessibleInterface *const table = QAccessible::queryAccessibleInterface(&host.table());
    QCOMPARE(table->text(QAccessible::Description), "“Studio” has no recordings.");
}

void tst_RecorderWindowToldOnX::sheetSaysWhatIsSavedAndWhatFailed()
{
    BrowserHost host;
    QVERIFY(host.openWith(BrowserHost::takes(2)));
    host.table().selectRows({0, 1});
    QVERIFY(host.save());
    QTRY_COMPARE(ScreenReader::focused(), "Stop");
    host.finishDownload();
    QVERIFY(ScreenReader::heard("Downloading “Take 2”..."));
    host.system.urlDownloads.fail("The disk is full.");
    QVERIFY(ScreenReader::heard(host.text("failureText")));
    QVERIFY(press("Escape"));
    QTRY_VERIFY(!host.sheet().isVisible());
}

int main(int argc, char **argv)
{
    ScreenReader reader;
    QWApplication application(argc, argv);
    tst_RecorderWindowToldOnX test(reader);
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_RecorderWindowToldOnX.moc"
