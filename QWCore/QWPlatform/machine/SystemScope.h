#pragma once

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

class System;

/// Makes a System current for the scope's life. Scopes nest; main thread only.
class QWPLATFORM_TEST_EXPORT SystemScope
{
public:
    explicit SystemScope(System &system);
    ~SystemScope();
    SystemScope(const SystemScope &) = delete;
    SystemScope &operator=(const SystemScope &) = delete;

private:
    System *m_outer;
};

} // namespace platform
