#include "SystemScope.h"

namespace platform
{

namespace
{
System *innermostSystem = nullptr;
}

SystemScope::SystemScope(System &system)
    : m_outer(innermostSystem)
{
    innermostSystem = &system;
}

SystemScope::~SystemScope()
{
    innermostSystem = m_outer;
}

System *SystemScope::innermost()
{
    return innermostSystem;
}

} // namespace platform
