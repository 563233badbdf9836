#include <QWPlatform/appkit/windows/Sheet.h>

#include <QDialog>
#include <QTest>
#include <QWidget>

using platform::beginSheet;
using platform::endSheet;

class tst_Sheet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sheetIsAttachedWhileItIsOpen();
    void returnCodeArrivesOnce();
    void closingEndsWithZero();
    void dialogsEndWithTheirResult();
    void sheetMayBeginAgainWhenItEnds();
    void sheetMayBeDestroyedWhenItEnds();
    void sheetThatGoesSaysNothing();
};

void tst_Sheet::sheetIsAttachedWhileItIsOpen()
{
    QWidget window;
    window.show();
    auto *const sheet = new QWidget;
    beginSheet(*sheet, &window);
    QCOMPARE(platform::attachedSheet(&window), sheet);
    QCOMPARE(sheet->windowModality(), Qt::WindowModal);
    QVERIFY(sheet->isWindow() && sheet->isVisible());
    endSheet(*sheet);
    QCOMPARE(platform::attachedSheet(&window), nullptr);
    QVERIFY(!sheet->isVisible());
}

void tst_Sheet::returnCodeArrivesOnce()
{
    QWidget window;
    auto *const sheet = new QWidget;
    QList<int> codes;
    beginSheet(*sheet, &window, [&](int code) { codes.append(code); });
    QVERIFY(codes.isEmpty());
    endSheet(*sheet, 5);
    endSheet(*sheet, 6);
    QCOMPARE(codes, QList<int>{5});
}

void tst_Sheet::closingEndsWithZero()
{
    QWidget window;
    auto *const sheet = new QWidget;
    QList<int> codes;
    beginSheet(*sheet, &window, [&](int code) { codes.append(code); });
    sheet->close();
    QCOMPARE(codes, QList<int>{0});
    QVERIFY(!sheet->isVisible());
}

void tst_Sheet::dialogsEndWithTheirResult()
{
    QWidget window;
    auto *const sheet = new QDialog;
    QList<int> codes;
    const auto keep = [&](int code) { codes.append(code); };
    beginSheet(*sheet, &window, keep);
    sheet->accept();
    beginSheet(*sheet, &window, keep);
    QTest::keyClick(sheet, Qt::Key_Escape);
    QCOMPARE(codes, (QList<int>{1, 0}));
}

void tst_Sheet::sheetMayBeginAgainWhenItEnds()
{
    QWidget window;
    auto *const sheet = new QWidget;
    beginSheet(*sheet, &window, [&](int) { beginSheet(*sheet, &window); });
    endSheet(*sheet);
    QVERIFY(sheet->isVisible());
    QCOMPARE(platform::attachedSheet(&window), sheet);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(platform::attachedSheet(&window), sheet);
}

void tst_Sheet::sheetMayBeDestroyedWhenItEnds()
{
    QWidget window;
    auto *const sheet = new QWidget;
    bool ended = false;
    beginSheet(*sheet, &window, [&](int) {
        delete sheet;
        ended = true;
    });
    endSheet(*sheet);
    QVERIFY(ended);
}

void tst_Sheet::sheetThatGoesSaysNothing()
{
    QWidget window;
    auto *const sheet = new QWidget;
    int ends = 0;
    beginSheet(*sheet, &window, [&](int) { ++ends; });
    delete sheet;
    QCOMPARE(ends, 0);
}

QTEST_MAIN(tst_Sheet)
#include "tst_Sheet.moc"
