#include "KeyRoutes.h"

#include "KeyLabel.h"
#include "XServer.h"

#include <QApplication>
#include <QHash>
#include <QKeyEvent>
#include <QPointer>
#include <QTest>

namespace
{
QString xName(int key, Qt::KeyboardModifiers modifiers)
{
    static const QHash<int, QString> names{{Qt::Key_Left, "Left"}, {Qt::Key_Up, "Up"},         {Qt::Key_Space, "space"},
                                           {Qt::Key_F5, "F5"},     {Qt::Key_Return, "Return"}, {Qt::Key_Shift, "shift"},
                                           {Qt::Key_Alt, "alt"},   {Qt::Key_F6, "F6"}};
    const QString name = names.contains(key) ? names.value(key) : QString(QChar(key).toLower());
    return (modifiers & Qt::ControlModifier ? "ctrl+" : QString()) + (modifiers & Qt::ShiftModifier ? "shift+" : "") +
           (modifiers & Qt::AltModifier ? "alt+" : "") + (modifiers & Qt::MetaModifier ? "super+" : "") + name;
}

QString textOf(int key, Qt::KeyboardModifiers modifiers)
{
    return key < 0x1000000 && !(modifiers & Qt::ControlModifier) ? QString(QChar(key).toLower()) : QString();
}

/// Whatever has the focus gets it, except by Route::Window, whose receiver is a window.
QWidget *receiver()
{
    return QApplication::focusWidget() ? QApplication::focusWidget() : QApplication::activeWindow();
}

} // namespace

bool onX()
{
    return QGuiApplication::platformName() == "xcb";
}

bool activate(QWidget &window)
{
    window.show();
    window.raise();
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window);
}

void type(Route route, int key, Qt::KeyboardModifiers modifiers)
{
    const QString text = textOf(key, modifiers);
    switch (route) {
    case Route::Window:
        QTest::keyClick(QApplication::activeWindow()->windowHandle(), Qt::Key(key), modifiers);
        break;
    case Route::Widget:
        QTest::keyClick(receiver(), Qt::Key(key), modifiers);
        break;
    case Route::Sent: {
        QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
        QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
        const QPointer<QWidget> widget = receiver();
        QCoreApplication::sendEvent(widget, &press);
        if (widget)
            QCoreApplication::sendEvent(widget, &release);
        break;
    }
    case Route::X:
        QVERIFY(XServer::act({"key", xName(key, modifiers)}));
        break;
    }
}

bool arrived(Route route, const KeyLabel &label)
{
    if (route != Route::X)
        return true;
    const auto count = label.releases.count(Qt::Key_Z);
    return XServer::act({"key", "z"}) && QTest::qWaitFor([&] { return label.releases.count(Qt::Key_Z) > count; });
}
