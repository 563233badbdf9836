#pragma once

#include "KeyDispatchTest.h"

/// All test functions run once for each way on which keys come here.
class KeyRouteTest : public KeyDispatchTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data() { routes(); }

protected:
    static Route route()
    {
        QFETCH_GLOBAL(Route, route);
        return route;
    }

    /// A key goes down and up.
    static void type(int key, Qt::KeyboardModifiers modifiers = {}) { ::type(route(), key, modifiers); }

    /// Whether all keys so far have come.
    static bool arrived(const KeyLabel &label) { return ::arrived(route(), label); }
    bool arrived() const { return arrived(m_window->label); }
};
