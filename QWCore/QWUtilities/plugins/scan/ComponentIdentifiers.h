#pragma once

#include <QWBase/QWComponentDescription.h>

#include <QMap>
#include <QString>

namespace qw
{

/// Which ".component" bundle, by its identifier, registers which unit in its resource file.
class ComponentIdentifiers
{
public:
    /// Adds the bundles of the folder at @p path (documented text); a later one replaces an earlier one of the same
    /// identifier. A folder that cannot be listed adds nothing.
    void loadFromDirectory(const QString &path);

    /// The first identifier, in ascending order, whose unit is @p description; "" for none.
    QString identifierOf(const QWComponentDescription &description) const;

private:
    QMap<QString, QWComponentDescription> m_descriptions; ///< By identifier.
};

} // namespace qw
