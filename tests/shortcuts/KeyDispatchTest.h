#pragma once

#include "HostWindow.h"
#include "KeyRoutes.h"
#include "ShortcutHost.h"
#include "XServer.h"

#include <QWBase/QWApplication.h>

#include <QTest>

/// Before each test function: a host with a window, in which P plays, Ctrl+P plays from the menu, S stops, and the
/// arrows and Space and F5 save.
class KeyDispatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

protected:
    /// A row for each way on which keys come here.
    static void routes();

    static QWKeyboardShortcuts &_registry() { return QWKeyboardShortcuts::sharedInstance(); }

    std::unique_ptr<ShortcutSystem> m_system;
    std::unique_ptr<ShortcutReceiver> m_receiver;
    std::unique_ptr<HostWindow> m_window;
};

/// Runs the test, and where it is built for that, on an X server of its own.
int runKeyDispatchTest(int argc, char **argv, bool isOnX, const std::function<std::unique_ptr<QObject>()> &make);

#ifdef QW_TEST_ON_X
#define QW_KEY_DISPATCH_IS_ON_X true
#else
#define QW_KEY_DISPATCH_IS_ON_X false
#endif

#define QW_KEY_DISPATCH_MAIN(TestClass)                                                                                \
    int main(int argc, char **argv)                                                                                    \
    {                                                                                                                  \
        QTEST_SET_MAIN_SOURCE_PATH                                                                                     \
        return runKeyDispatchTest(argc, argv, QW_KEY_DISPATCH_IS_ON_X, [] { return std::make_unique<TestClass>(); });  \
    }
