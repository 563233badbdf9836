#include <QWPlatform/appkit/WindowFrame.h>

#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QWidget>

/// Where windows come up.
class tst_WindowFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesAreBroughtOntoAScreen_data();
    void framesAreBroughtOntoAScreen();
    void onlyLostWindowsAreMoved();
    void windowIsCentredForTheSizeToCome();
    void frameIsToldAsText();
    void frontWindowIsNoLongerMinimized();
};

namespace
{
QRect room()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}
} // namespace

void tst_WindowFrame::framesAreBroughtOntoAScreen_data()
{
    QTest::addColumn<QRect>("frame");
    QTest::addColumn<QSize>("size");
    QTest::newRow("inside") << QRect(50, 60, 200, 100) << QSize(200, 100);
    QTest::newRow("far off") << QRect(-4000, 9000, 200, 100) << QSize(200, 100);
    QTest::newRow("title bar above the screen") << QRect(50, -5, 200, 100) << QSize(200, 100);
    QTest::newRow("right edge off") << QRect(room().right() - 20, 40, 200, 100) << QSize(200, 100);
    QTest::newRow("larger than the screen") << room().adjusted(-50, -50, 50, 50) << QSize();
    QTest::newRow("nothing") << QRect() << QSize(0, 0);
}

void tst_WindowFrame::framesAreBroughtOntoAScreen()
{
    QFETCH(const QRect, frame);
    QFETCH(const QSize, size);
    const QRect fitted = platform::constrainedToScreen(frame);
    QVERIFY(frame.isEmpty() || room().contains(fitted));
    if (size.isValid())
        QCOMPARE(fitted.size(), size);
    if (room().contains(frame))
        QCOMPARE(fitted, frame);
    QCOMPARE(platform::constrainedToScreen(fitted), fitted);
}

void tst_WindowFrame::onlyLostWindowsAreMoved()
{
    QWidget window;
    window.setGeometry(31, 42, 200, 100);
    platform::constrainToScreen(window);
    QCOMPARE(window.geometry(), QRect(31, 42, 200, 100));
    window.move(-4000, 9000);
    platform::constrainToScreen(window);
    QVERIFY(room().contains(window.geometry()));
    QCOMPARE(window.size(), QSize(200, 100));
}

void tst_WindowFrame::windowIsCentredForTheSizeToCome()
{
    QWidget window;
    window.resize(200, 100);
    platform::centerWindow(window, {300, 400});
    const QPoint middle = window.pos() + QPoint(150, 200);
    QVERIFY((middle - room().center()).manhattanLength() <= 2);
}

void tst_WindowFrame::frameIsToldAsText()
{
    QWidget window;
    window.setGeometry(31, 42, 200, 100);
    QCOMPARE(platform::stringFromFrame(window), "{{31, 42}, {200, 100}}");
}

void tst_WindowFrame::frontWindowIsNoLongerMinimized()
{
    QWidget window;
    platform::makeKeyAndOrderFront(window);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.setWindowState(Qt::WindowMinimized | Qt::WindowMaximized);
    platform::makeKeyAndOrderFront(window);
    QVERIFY(window.isVisible());
    QVERIFY(!window.isMinimized());
    QVERIFY(window.isMaximized());
}

QTEST_MAIN(tst_WindowFrame)
#include "tst_WindowFrame.moc"
