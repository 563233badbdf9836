#include "SystemScope.h"

namespace platform
{

namespace
{
System *innermostSystem = nullptr;
}

System::Scope::Scope(System &system)
    : m_outer(innermostSystem)
{
    innermostSystem = &system;
}

System::Scope::~Scope()
{
    innermostSystem = m_outer;
}

System *System::Scope::innermost()
{
    return innermostSystem;
}

} // namespace platform
