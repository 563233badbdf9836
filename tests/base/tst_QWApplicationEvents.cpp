#include "HostMachine.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QMainWindow>
#include <QMenuBar>
#include <QTest>
#include <QThread>

/// Events on their way through the categories, to the widgets and to the menus; exceptions that leave them.
class tst_QWApplicationEvents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { journal() = {}; }
    void categoryTakesAnEventAway();
    void exceptionOfASlotIsLoggedAndTheLoopGoesOn();
    void exceptionInAWorkersEventIsLogged();
    void exceptionHandlingIsOnUntilSwitchedOff();
    void keyThatNoWidgetTakesIsAKeyEquivalentOnce();
};

class EventCounter : public QObject
{
public:
    bool event(QEvent *event) override
    {
        ++counts[event->type()];
        return QObject::event(event);
    }

    QMap<int, int> counts;
};

void tst_QWApplicationEvents::categoryTakesAnEventAway()
{
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    const auto taken = QEvent::Type(QEvent::registerEventType());
    const auto passed = QEvent::Type(QEvent::registerEventType());
    journal().taken = taken;
    EventCounter receiver;
    QEvent first(taken);
    QEvent second(passed);
    QVERIFY(QCoreApplication::sendEvent(&receiver, &first));
    QCoreApplication::sendEvent(&receiver, &second);
    QCOMPARE(receiver.counts, (QMap<int, int>{{passed, 1}}));
}

void tst_QWApplicationEvents::exceptionOfASlotIsLoggedAndTheLoopGoesOn()
{
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    bool wentOn = false;
    QTimer::singleShot(0, &host, [] { throw std::runtime_error("first"); });
    QTimer::singleShot(0, &host, [] { throw 7; });
    QTimer::singleShot(0, &host, [&] { wentOn = true; });
    QTimer::singleShot(0, &host, &quitSoon);
    QCOMPARE(QWApplication::exec(), 0);
    QVERIFY(wentOn);
    QVERIFY(journal().entries.contains("exception: first"));
    QVERIFY(journal().entries.contains("exception: exception of type i"));
    QCOMPARE(machine.log().count("An exception left the handling of an event"), 2);
}

void tst_QWApplicationEvents::exceptionInAWorkersEventIsLogged()
{
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    QThread worker;
    QObject inWorker;
    inWorker.moveToThread(&worker);
    worker.start();
    QMetaObject::invokeMethod(
        &inWorker, [] { throw std::runtime_error("in a worker"); }, Qt::QueuedConnection);
    QMetaObject::invokeMethod(
        &inWorker, [&] { worker.quit(); }, Qt::QueuedConnection);
    QVERIFY(worker.wait());
    QTRY_VERIFY(journal().entries.contains("exception: in a worker"));
}

void tst_QWApplicationEvents::exceptionHandlingIsOnUntilSwitchedOff()
{
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    QVERIFY(host.handlesExceptions());
    host.setHandleExceptions(false);
    QVERIFY(!host.handlesExceptions());
    host.setHandleExceptions(true);
    QVERIFY(host.handlesExceptions());
}

/// Hands unknown keys to another widget, as some composed widgets do, and takes "T".
class KeyForwarder : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_T)
            return;
        QKeyEvent copy(event->type(), event->key(), event->modifiers(), event->text());
        QCoreApplication::sendEvent(&m_other, &copy);
        event->ignore();
    }

private:
    QWidget m_other; // no child: it would hand the key back to its parent
};

class SongKeeper : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void saveSong(QObject *) { ++saved; }

    int saved = 0;
};

void tst_QWApplicationEvents::keyThatNoWidgetTakesIsAKeyEquivalentOnce()
{
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    SongKeeper keeper;
    QMainWindow window;
    QMenu menu;
    window.menuBar()->addMenu(&menu);
    for (const char *const key : {"s", "t"})
        platform::addMenuItem(menu, "Save", "saveSong:", key)->setTarget(&keeper);
    auto *const forwarder = new KeyForwarder(&window);
    window.setCentralWidget(forwarder);
    window.show();
    forwarder->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&window));

    QTest::keyClick(window.windowHandle(), Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(keeper.saved, 1);
    QTest::keyClick(window.windowHandle(), Qt::Key_T, Qt::ControlModifier);
    QCOMPARE(keeper.saved, 1); // the widget took it
    QTest::keyClick(window.windowHandle(), Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(keeper.saved, 2);
}

int main(int argc, char **argv)
{
    registerRecordingCategories();
    tst_QWApplicationEvents test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_QWApplicationEvents.moc"
