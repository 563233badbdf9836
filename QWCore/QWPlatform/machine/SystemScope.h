#pragma once

#include "QWPlatform/System.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// Makes a System current for the scope's life. Scopes nest; main thread only.
class QWPLATFORM_TEST_EXPORT System::Scope
{
public:
    explicit Scope(System &system);
    ~Scope();
    Scope(const Scope &) = delete;
    Scope &operator=(const Scope &) = delete;

    /// The System of the innermost scope, or null.
    static System *innermost();

private:
    System *m_outer;
};

} // namespace platform
