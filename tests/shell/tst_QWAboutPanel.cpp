#include "MotionStyle.h"

#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWButton.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWUtilities/shell/QWAboutPanel.h>
#include <QWUtilities/shell/QWManual.h>
#include <QWUtilities/shell/panels/QWAboutPanelContentView.h>

#include <QAbstractAnimation>
#include <QImage>
#include <QLabel>

class tst_QWAboutPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void isOnePerMachine();
    void showsItsTexts();
    void buttonsHaveTheQuietBezel();
    void fadesIn();
    void fadesOutAndStays();
    void comesAndGoesAtOnceWithoutMotion();
    void isShownAndHiddenManyTimes();
    void clickAnywhereCloses_data();
    void clickAnywhereCloses();
    void otherMouseButtonsDoNothing();
    void legalButtonOpensTheLegalTextAndCloses();
    void acknowledgementsButtonOpensThemAndCloses();
    void escapeCloses();
    void tabReachesBothButtons();
    void keysPressTheFocusedButton_data();
    void keysPressTheFocusedButton();
    void lineIsDrawnAboveTheButtons();
    void closingBeforeOpeningDoesNothing();

private:
    static QWidget &window() { return *QWAboutPanel::aboutPanel().window(); }
    static QLabel &label(const char *name) { return *window().findChild<QLabel *>(name); }
    static QWButton &button(const char *name) { return *window().findChild<QWButton *>(name); }
    static void openAndWait();

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
};

void tst_QWAboutPanel::init()
{
    QApplication::setStyle(new MotionStyle(0));
    m_system = std::make_unique<FakeSystem>();
    m_scope = std::make_unique<platform::SystemScope>(*m_system);
}

void tst_QWAboutPanel::cleanup()
{
    m_system->releaseShared();
    m_scope.reset();
    m_system.reset();
}

void tst_QWAboutPanel::openAndWait()
{
    QWAboutPanel::open();
    QTRY_COMPARE(window().windowOpacity(), 1.0);
}

void tst_QWAboutPanel::isOnePerMachine()
{
    QWAboutPanel *const first = &QWAboutPanel::aboutPanel();
    QCOMPARE(&QWAboutPanel::aboutPanel(), first);
    QVERIFY(!first->window());
}

void tst_QWAboutPanel::showsItsTexts()
{
    openAndWait();
    QCOMPARE(label("appNameText").text(), "Test Host");
    QCOMPARE(label("versionText").text(), "2.1 Beta 3");
    QCOMPARE(label("buildText").text(), "1234");
    QCOMPARE(label("additionalText").text(), "");
    QCOMPARE(label("additionalText").textInteractionFlags(), Qt::NoTextInteraction);
    QVERIFY(label("copyrightText").text().startsWith(QChar(0xA9)));
    QVERIFY(label("copyrightText").text().contains("2009"));
    QVERIFY(!window().windowTitle().isEmpty());
}

void tst_QWAboutPanel::buttonsHaveTheQuietBezel()
{
    openAndWait();
    QCOMPARE(button("legalButton").bezelStyle(), 1200);
    QCOMPARE(button("acknowledgementsButton").bezelStyle(), 1200);
}

void tst_QWAboutPanel::fadesIn()
{
    QApplication::setStyle(new MotionStyle(200));
    QWAboutPanel::open();
    QVERIFY(window().isVisible());
    QCOMPARE(window().windowOpacity(), 0.0);
    QTRY_COMPARE(window().windowOpacity(), 1.0);
    QVERIFY(window().isVisible());
}

void tst_QWAboutPanel::fadesOutAndStays()
{
    QApplication::setStyle(new MotionStyle(200));
    openAndWait();
    QWidget *const before = &window();
    QWAboutPanel::aboutPanel().close();
    QVERIFY(before->isVisible());
    QTRY_VERIFY(!before->isVisible());
    QCOMPARE(&window(), before);
}

void tst_QWAboutPanel::comesAndGoesAtOnceWithoutMotion()
{
    QWAboutPanel::open();
    QVERIFY(window().isVisible());
    QCOMPARE(window().windowOpacity(), 1.0);
    QWAboutPanel::aboutPanel().close();
    QVERIFY(!window().isVisible());
    QCOMPARE(window().windowOpacity(), 1.0);
}

void tst_QWAboutPanel::isShownAndHiddenManyTimes()
{
    QApplication::setStyle(new MotionStyle(200));
    for (int i = 0; i < 3; ++i) {
        openAndWait();
        QWAboutPanel::open(); // visible already
        QCOMPARE(window().windowOpacity(), 1.0);
        QWAboutPanel::aboutPanel().close();
        QTRY_VERIFY(!window().isVisible());
    }
}

void tst_QWAboutPanel::clickAnywhereCloses_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::newRow("empty place") << QPoint(240, 150);
    QTest::newRow("on the name") << QPoint(60, 60);
    QTest::newRow("beside the buttons") << QPoint(10, 260);
}

void tst_QWAboutPanel::clickAnywhereCloses()
{
    QFETCH(const QPoint, point);
    openAndWait();
    QTest::mouseClick(window().windowHandle(), Qt::LeftButton, {}, point);
    QTRY_VERIFY(!window().isVisible());
}

void tst_QWAboutPanel::otherMouseButtonsDoNothing()
{
    QApplication::setStyle(new MotionStyle(200)); // a fade would tell
    openAndWait();
    const auto isFading = [] { return window().findChild<QAbstractAnimation *>() != nullptr; };
    QTRY_VERIFY(!isFading());
    for (const Qt::MouseButton mouseButton : {Qt::RightButton, Qt::MiddleButton})
        QTest::mouseClick(window().windowHandle(), mouseButton, {}, QPoint(240, 150));
    QVERIFY(!isFading());
    QVERIFY(window().isVisible());
}

void tst_QWAboutPanel::legalButtonOpensTheLegalTextAndCloses()
{
    openAndWait();
    QTest::mouseClick(&button("legalButton"), Qt::LeftButton);
    QVERIFY(QWManual::manual().window()->isVisible());
    QVERIFY(m_system->webViews.views.back()->html.contains("Test Host"));
    QTRY_VERIFY(!window().isVisible());
}

void tst_QWAboutPanel::acknowledgementsButtonOpensThemAndCloses()
{
    openAndWait();
    QTest::mouseClick(&button("acknowledgementsButton"), Qt::LeftButton);
    QVERIFY(m_system->webViews.views.back()->url().path().endsWith("/acknowledgements.html"));
    QTRY_VERIFY(!window().isVisible());
}

void tst_QWAboutPanel::escapeCloses()
{
    openAndWait();
    QVERIFY(QTest::qWaitForWindowActive(&window()));
    QTest::keyClick(window().windowHandle(), Qt::Key_Escape);
    QTRY_VERIFY(!window().isVisible());
}

void tst_QWAboutPanel::tabReachesBothButtons()
{
    openAndWait();
    QVERIFY(QTest::qWaitForWindowActive(&window()));
    QSet<QString> reached;
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(window().windowHandle(), Qt::Key_Tab);
        reached.insert(QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString());
    }
    QCOMPARE(reached, QSet<QString>({"legalButton", "acknowledgementsButton"}));
}

void tst_QWAboutPanel::keysPressTheFocusedButton_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Space") << Qt::Key_Space;
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
}

void tst_QWAboutPanel::keysPressTheFocusedButton()
{
    QFETCH(const Qt::Key, key);
    openAndWait();
    QVERIFY(QTest::qWaitForWindowActive(&window()));
    QTest::keyClick(window().windowHandle(), key); // none has the focus yet
    QVERIFY(window().isVisible());
    button("legalButton").setFocus();
    QTest::keyClick(window().windowHandle(), key);
    QVERIFY(!window().isVisible());
    QVERIFY(m_system->webViews.views.back()->html.contains("Test Host"));
}

void tst_QWAboutPanel::lineIsDrawnAboveTheButtons()
{
    QWAboutPanelContentView view;
    view.resize(200, 100);
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, {}, {}, QWidget::DrawChildren);
    const int row = 50; // 49.5 from the bottom
    const int line = qGray(image.pixel(100, row));
    QVERIFY(std::abs(line - 85) <= 2);
    for (const int neighbour : {row - 1, row + 1})
        QVERIFY(qGray(image.pixel(100, neighbour)) < line - 20);
    // From 20 to 180, to the pixel.
    QVERIFY(qGray(image.pixel(19, row)) < line - 30);
    QVERIFY(qGray(image.pixel(20, row)) > line - 5);
    QVERIFY(qGray(image.pixel(179, row)) > line - 5);
    QVERIFY(qGray(image.pixel(180, row)) < line - 30);
}

void tst_QWAboutPanel::closingBeforeOpeningDoesNothing()
{
    QWAboutPanel::aboutPanel().close();
    QVERIFY(!QWAboutPanel::aboutPanel().window());
}

QW_TEST_MAIN(tst_QWAboutPanel)
#include "tst_QWAboutPanel.moc"
