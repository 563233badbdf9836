#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/ResponderChain.h>

#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

using platform::Panel;
using platform::sendAction;
using platform::targetForAction;

/// Counts what it is sent, and validates.
class Responder : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void editThing(QObject *sender) { senders.append(sender); }
    Q_INVOKABLE bool validateMenuItem(QAction *) { return allows; }

    QObjectList senders;
    bool allows = true;
};

/// Answers an action only.
class ResponderWidget : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
    Q_INVOKABLE void editThing(QObject *) { ++count; }

    int count = 0;
};

/// A window around a widget with a field that takes the focus.
class Window : public ResponderWidget
{
    Q_OBJECT

public:
    Window()
        : inner(this)
        , field(&inner)
    {
    }

    ResponderWidget inner;
    QLineEdit field;
};

class tst_ResponderChain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { platform::setDelegate(qApp, nullptr); }
    void orderIsFocusParentsWindowDelegateApplicationDelegate();
    void nearestResponderTakesTheAction();
    void mainWindowIsAskedBehindAPanel();
    void mainWindowIsAskedBehindAWindowWithoutTitleBar();
    void mainWindowIsNotAskedBehindAnotherWindow();
    void explicitTargetIsAskedAlone();
    void nobodyTakesAnUnknownAction();
    void delegatesThatWentAreForgotten();
    void objectAtAnotherOnesPlaceHasNoDelegate();
    void editingActionsReachTheField();
    void receiverValidates();
    void panelsAndDialogsArePanels();
    void panelFloatsAsTool();
    void escapeClosesAPanel();
};

namespace
{
void showActive(QWidget &window)
{
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}
} // namespace

void tst_ResponderChain::orderIsFocusParentsWindowDelegateApplicationDelegate()
{
    Window window;
    Responder windowDelegate, applicationDelegate;
    platform::setDelegate(&window, &windowDelegate);
    platform::setDelegate(qApp, &applicationDelegate);
    showActive(window);
    window.field.setFocus();
    QCOMPARE(platform::responderChain(),
             (QObjectList{&window.field, &window.inner, &window, &windowDelegate, qApp, &applicationDelegate}));
}

void tst_ResponderChain::nearestResponderTakesTheAction()
{
    Window window;
    showActive(window);
    window.field.setFocus();
    QVERIFY(sendAction("editThing:", nullptr, this));
    QCOMPARE(window.inner.count, 1);
    QCOMPARE(window.count, 0);
    window.setFocus();
    window.field.clearFocus();
    QVERIFY(sendAction("editThing:", nullptr, this));
    QCOMPARE(window.count, 1);
}

void tst_ResponderChain::mainWindowIsAskedBehindAPanel()
{
    Window window;
    showActive(window);
    Panel panel;
    showActive(panel);
    QCOMPARE(platform::keyWindow(), &panel);
    QCOMPARE(platform::mainWindow(), &window);
    QVERIFY(sendAction("editThing:", nullptr, this));
    QCOMPARE(window.inner.count + window.count, 1);
}

void tst_ResponderChain::mainWindowIsAskedBehindAWindowWithoutTitleBar()
{
    Window window;
    showActive(window);
    QWidget about(nullptr, Qt::Window | Qt::FramelessWindowHint);
    showActive(about);
    QCOMPARE(platform::keyWindow(), &about);
    QCOMPARE(platform::mainWindow(), &window);
    QVERIFY(sendAction("editThing:", nullptr, this));
    QCOMPARE(window.inner.count + window.count, 1);
}

void tst_ResponderChain::mainWindowIsNotAskedBehindAnotherWindow()
{
    Window window;
    showActive(window);
    QWidget other;
    showActive(other);
    QVERIFY(!sendAction("editThing:", nullptr, this));
    QCOMPARE(window.inner.count + window.count, 0);
}

void tst_ResponderChain::explicitTargetIsAskedAlone()
{
    Responder target, applicationDelegate;
    platform::setDelegate(qApp, &applicationDelegate);
    QVERIFY(sendAction("editThing:", &target, this));
    QCOMPARE(target.senders, QObjectList{this});
    QObject deaf;
    QVERIFY(!sendAction("editThing:", &deaf, this));
    QVERIFY(applicationDelegate.senders.isEmpty());
}

void tst_ResponderChain::nobodyTakesAnUnknownAction()
{
    QCOMPARE(targetForAction("noSuchThing:"), nullptr);
    QVERIFY(!sendAction("noSuchThing:", nullptr, this));
}

void tst_ResponderChain::delegatesThatWentAreForgotten()
{
    auto delegate = std::make_unique<Responder>();
    platform::setDelegate(qApp, delegate.get());
    QCOMPARE(targetForAction("editThing:"), delegate.get());
    delegate.reset();
    QCOMPARE(platform::delegateOf(qApp), nullptr);
    QCOMPARE(targetForAction("editThing:"), nullptr);
}

void tst_ResponderChain::objectAtAnotherOnesPlaceHasNoDelegate()
{
    Responder delegate;
    alignas(QObject) std::byte place[sizeof(QObject)];
    auto *object = new (place) QObject;
    platform::setDelegate(object, &delegate);
    QCOMPARE(platform::delegateOf(object), &delegate);
    object->~QObject();
    object = new (place) QObject;
    QCOMPARE(platform::delegateOf(object), nullptr);
    object->~QObject();
}

void tst_ResponderChain::editingActionsReachTheField()
{
    Window window;
    window.field.setText("some text");
    showActive(window);
    window.field.setFocus();
    QVERIFY(sendAction("selectAll:", nullptr, this));
    QCOMPARE(window.field.selectedText(), QString("some text"));
}

void tst_ResponderChain::receiverValidates()
{
    Responder validating;
    ResponderWidget silent;
    QAction item;
    QVERIFY(platform::validateMenuItem(&validating, &item));
    validating.allows = false;
    QVERIFY(!platform::validateMenuItem(&validating, &item));
    QVERIFY(platform::validateMenuItem(&silent, &item));
    QVERIFY(!platform::validateMenuItem(nullptr, &item));
}

void tst_ResponderChain::panelsAndDialogsArePanels()
{
    Panel panel;
    QDialog dialog;
    QWidget window;
    QVERIFY(platform::isPanel(&panel));
    QVERIFY(platform::isPanel(&dialog));
    QVERIFY(!platform::isPanel(&window));
    QVERIFY(!platform::isPanel(nullptr));
}

void tst_ResponderChain::panelFloatsAsTool()
{
    Panel panel;
    QVERIFY(!platform::isFloatingPanel(&panel));
    panel.setFloating(true);
    QVERIFY(platform::isFloatingPanel(&panel));
    QCOMPARE(panel.windowType(), Qt::Tool);
    QWidget tool(nullptr, Qt::Tool);
    QVERIFY(!platform::isFloatingPanel(&tool));
}

void tst_ResponderChain::escapeClosesAPanel()
{
    Panel panel;
    int closes = 0;
    connect(&panel, &Panel::willClose, this, [&] { closes += panel.isVisible(); });
    showActive(panel);
    QTest::keyClick(&panel, Qt::Key_Escape);
    QVERIFY(!panel.isVisible());
    QCOMPARE(closes, 1);
}

QTEST_MAIN(tst_ResponderChain)
#include "tst_ResponderChain.moc"
