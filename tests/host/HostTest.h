#pragma once

#include "HostUnderTest.h"

/// Tests that press the host's keys: each begins with a sound that nothing has changed, and without an alert.
class HostTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        _host().system.alerts.shown.clear();
        _host().openSound();
    }

    void cleanupTestCase() { _host().document().setSaved(); }

protected:
    static HostUnderTest &_host() { return HostUnderTest::host(); }
    static demo::Viewport &_viewport() { return _host().viewport(); }
};
