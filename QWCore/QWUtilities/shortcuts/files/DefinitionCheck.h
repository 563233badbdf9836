#pragma once

#include <QObject>
#include <QStringList>

#include <memory>
#include <vector>

class QWShortcutGroup;

namespace qw
{

/// Looks for names in the factory definition that the host does not know, and tells them once.
class DefinitionCheck : public QObject
{
public:
    /// @p groups outlive this.
    explicit DefinitionCheck(const std::vector<std::shared_ptr<QWShortcutGroup>> &groups);

    /// From the loop, once the launch is over: windows that answer actions may be made after the shortcuts are loaded.
    void checkLater();

private:
    void _check();

    const std::vector<std::shared_ptr<QWShortcutGroup>> &m_groups;
    bool m_isDue = false;
    QStringList m_told;
};

} // namespace qw
