#pragma once

#include "Sounds.h"

#include <app/DemoApplication.h>
#include <app/MainWindow.h>
#include <app/SoundActions.h>
#include <app/ViewActions.h>
#include <fakes/FakeSystem.h>
#include <fakes/QWTestMain.h>
#include <views/Viewport.h>

#include <QWUtilities/shortcuts/QWKeyboardShortcuts.h>

/// The whole host on the fake machine, with the shortcuts and presets of its bundle; launched once for the program.
class HostUnderTest
{
public:
    static constexpr int patience = 30'000; ///< Milliseconds; long for what takes a moment, but machines are slow.

    HostUnderTest(int &argc, char **argv);
    ~HostUnderTest();

    static HostUnderTest &host() { return *s_host; }

    FakeSystem system;

private:
    platform::SystemScope m_scope{system};
    bool m_isFurnished;

public:
    demo::DemoApplication application;

    demo::AudioDocument &document() { return application.document(); }
    demo::MainWindow &window() { return application.mainWindow(); }
    demo::Viewport &viewport() { return window().viewport(); }
    QWKeyboardShortcuts &registry() { return QWKeyboardShortcuts::sharedInstance(); }

    /// The one of that name, or null.
    std::shared_ptr<QWShortcut> shortcut(const QString &name);

    /// Four seconds, both channels different everywhere, silent for half a second at both ends; shown whole.
    void openSound();

    /// Presses the key of the shortcut of that name, or performs it when it has none; false when it was not performed.
    bool press(const QString &name);

    /// The same, and waits until the work that it started is done.
    bool pressAndWait(const QString &name);

private:
    bool _furnish();

    static HostUnderTest *s_host;
};

#define QW_HOST_TEST_MAIN(TestClass)                                                                                   \
    int main(int argc, char **argv)                                                                                    \
    {                                                                                                                  \
        const HostUnderTest host(argc, argv);                                                                          \
        TestClass test;                                                                                                \
        QTEST_SET_MAIN_SOURCE_PATH                                                                                     \
        return qwtest::run(test, argc, argv);                                                                          \
    }
