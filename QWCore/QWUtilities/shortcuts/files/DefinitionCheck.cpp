#include "DefinitionCheck.h"

#include "DefinitionErrors.h"

#include <utility>

namespace qw
{

DefinitionCheck::DefinitionCheck(const std::vector<std::shared_ptr<QWShortcutGroup>> &groups)
    : m_groups(groups)
{
}

void DefinitionCheck::checkLater()
{
    if (!std::exchange(m_isDue, true))
        QMetaObject::invokeMethod(
            this, [this] { _check(); }, Qt::QueuedConnection);
}

void DefinitionCheck::_check()
{
    m_isDue = false;
    const QStringList errors = DefinitionErrors::unknownNames(m_groups);
    if (std::exchange(m_told, errors) != errors)
        DefinitionErrors::tell(errors);
}

} // namespace qw
