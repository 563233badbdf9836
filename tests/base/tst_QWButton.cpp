#include "fakes/QWTestMain.h"

#include <QWBase/QWButton.h>

#include <QAccessible>
#include <QHBoxLayout>
#include <QPainter>
#include <QSignalSpy>

namespace
{
/// A dark panel with one quiet button and something else to focus.
struct Panel : QWidget
{
    Panel()
    {
        setFixedSize(300, 80);
        setAutoFillBackground(true);
        setPalette(QPalette(QColor(30, 30, 30)));
        button.setBezelStyle(QWButton::QuietDark);
        auto *const layout = new QHBoxLayout(this);
        layout->addWidget(&other);
        layout->addWidget(&button);
        show();
        QApplication::setActiveWindow(this);
        other.setFocus();
    }

    QImage picture() { return button.grab().toImage(); }

    QPushButton other{"Other"};
    QWButton button{"Legal Notices"};
};
} // namespace

class tst_QWButton : public QObject
{
    Q_OBJECT

private slots:
    void standardBezelIsTheDesktopsButton();
    void quietBezelFitsItsTitle();
    void statesLookDifferent();
    void pointerMakesItBrighter();
    void keyboardPressesIt();
    void assistiveProgramsSeeAButton();
};

void tst_QWButton::standardBezelIsTheDesktopsButton()
{
    QWButton button("Legal");
    QPushButton plain("Legal");
    QCOMPARE(button.bezelStyle(), int(QWButton::Standard));
    QCOMPARE(button.sizeHint(), plain.sizeHint());
    QCOMPARE(button.grab().toImage(), plain.grab().toImage());
    button.setBezelStyle(1200);
    QCOMPARE(button.bezelStyle(), 1200);
    QVERIFY(button.grab().toImage() != plain.grab().toImage());
}

void tst_QWButton::quietBezelFitsItsTitle()
{
    QWButton button("OK");
    button.setBezelStyle(QWButton::QuietDark);
    const int smallest = button.sizeHint().width();
    button.setText("A title that is a good deal longer than the others");
    QVERIFY(button.sizeHint().width() > smallest);
    QVERIFY(button.sizeHint().width() >= button.fontMetrics().horizontalAdvance(button.text()));
    QCOMPARE(button.minimumSizeHint(), button.sizeHint());
}

void tst_QWButton::statesLookDifferent()
{
    Panel panel;
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    QList<QImage> pictures{panel.picture()};
    panel.button.setFocus();
    pictures += panel.picture();
    panel.button.setDown(true);
    pictures += panel.picture();
    panel.button.setDown(false);
    panel.other.setFocus();
    panel.button.setEnabled(false);
    pictures += panel.picture();
    for (int i = 0; i < pictures.size(); ++i)
        for (int j = 0; j < i; ++j)
            QVERIFY2(pictures[i] != pictures[j], qPrintable(QString("%1 and %2").arg(i).arg(j)));
    panel.button.setEnabled(true);
    QCOMPARE(panel.picture(), pictures[0]);
}

void tst_QWButton::pointerMakesItBrighter()
{
    Panel panel;
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    const QPoint place(panel.button.width() / 2, 5);
    const int before = panel.picture().pixelColor(place).lightness();
    QTest::mouseMove(panel.windowHandle(), panel.button.geometry().center());
    QTRY_VERIFY(panel.button.underMouse());
    QVERIFY(panel.picture().pixelColor(place).lightness() > before);
}

void tst_QWButton::keyboardPressesIt()
{
    Panel panel;
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    QSignalSpy clicked(&panel.button, &QPushButton::clicked);
    QTest::keyClick(&panel.other, Qt::Key_Tab);
    QVERIFY(panel.button.hasFocus());
    QTest::keyClick(&panel.button, Qt::Key_Space);
    QCOMPARE(clicked.size(), 1);
}

void tst_QWButton::assistiveProgramsSeeAButton()
{
    QWButton button("Legal Notices");
    button.setBezelStyle(QWButton::QuietDark);
    QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(&button);
    QVERIFY(interface);
    QCOMPARE(interface->role(), QAccessible::Button);
    QCOMPARE(interface->text(QAccessible::Name), QString("Legal Notices"));
}

QW_TEST_MAIN(tst_QWButton)
#include "tst_QWButton.moc"
