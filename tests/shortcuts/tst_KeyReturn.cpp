#include "fakes/QWTestMain.h"

#include <QWUtilities/shortcuts/editor/KeyReturn.h>

#include <QApplication>
#include <QDialog>
#include <QTest>

/// A floating window among others; the test does what a desktop would do.
class tst_KeyReturn : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void windowThatIsPassedOverTakesTheKeysBack();
    void alertAboveASheetCountsToo();
    void sheetThatExistsNoLongerCountsToo();
    void userWhoLeavesIsNotCalledBack();
    void closedWindowTakesNothing();

private:
    static bool makeKey(QWidget &window)
    {
        window.show();
        window.activateWindow();
        return QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; });
    }

    /// False as soon as the keys went elsewhere.
    static bool staysKey(QWidget &window)
    {
        QCoreApplication::processEvents();
        return QApplication::activeWindow() == &window;
    }

    std::unique_ptr<QWidget> m_main;
    std::unique_ptr<QWidget> m_panel;
    std::unique_ptr<qw::KeyReturn> m_keyReturn;
};

void tst_KeyReturn::init()
{
    m_main = std::make_unique<QWidget>();
    m_panel = std::make_unique<QWidget>(nullptr, Qt::Tool);
    m_keyReturn = std::make_unique<qw::KeyReturn>(*m_panel);
    QVERIFY(makeKey(*m_main));
    QVERIFY(makeKey(*m_panel));
}

void tst_KeyReturn::cleanup()
{
    m_keyReturn.reset();
    m_panel.reset();
    m_main.reset();
}

void tst_KeyReturn::windowThatIsPassedOverTakesTheKeysBack()
{
    QDialog sheet(m_panel.get());
    QVERIFY(makeKey(sheet));
    sheet.hide();
    m_main->activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), m_panel.get());
    QVERIFY(makeKey(*m_main)); // once only
    QVERIFY(staysKey(*m_main));
}

void tst_KeyReturn::alertAboveASheetCountsToo()
{
    QDialog sheet(m_panel.get());
    QVERIFY(makeKey(sheet));
    QDialog alert(&sheet);
    QVERIFY(makeKey(alert));
    sheet.hide();
    alert.hide();
    m_main->activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), m_panel.get());
}

void tst_KeyReturn::sheetThatExistsNoLongerCountsToo()
{
    auto sheet = std::make_unique<QDialog>(m_panel.get());
    QVERIFY(makeKey(*sheet));
    sheet.reset();
    m_main->activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), m_panel.get());
}

void tst_KeyReturn::userWhoLeavesIsNotCalledBack()
{
    QDialog sheet(m_panel.get());
    QVERIFY(makeKey(sheet));
    QVERIFY(makeKey(*m_main)); // the sheet is still up
    QVERIFY(staysKey(*m_main));
    sheet.hide();
    QVERIFY(staysKey(*m_main));
    QVERIFY(makeKey(*m_panel));
    QVERIFY(makeKey(*m_main));
    QVERIFY(staysKey(*m_main));
}

void tst_KeyReturn::closedWindowTakesNothing()
{
    QDialog sheet(m_panel.get());
    QVERIFY(makeKey(sheet));
    m_panel->hide();
    sheet.hide();
    m_main->activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), m_main.get());
    QVERIFY(staysKey(*m_main));
}

QW_TEST_MAIN(tst_KeyReturn)
#include "tst_KeyReturn.moc"
