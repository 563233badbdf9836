#include "SystemScope.h"

#include "InnermostSystem.h"

namespace platform
{

SystemScope::SystemScope(System &system)
    : m_outer(innermostSystem)
{
    innermostSystem = &system;
}

SystemScope::~SystemScope()
{
    innermostSystem = m_outer;
}

} // namespace platform
