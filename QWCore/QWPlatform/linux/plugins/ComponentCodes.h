#pragma once

#include "InstalledComponent.h"

#include <QWPlatform/qwplatform_private.h>

#include <QMap>

#include <set>
#include <utility>

namespace platform
{

/// Gives LV2 plug-ins, which are named by URIs, the four-character codes of a component: the manufacturer from the
/// author, the subtype from the URI. Codes that are taken are probed past, so what was assigned once is kept in a
/// property list (URI → eight characters, subtype first) that all processes of the user share.
class QWPLATFORM_TEST_EXPORT ComponentCodes
{
public:
    enum class Keep
    {
        No,
        Yes
    };

    /// @p path is the real path of the property list.
    explicit ComponentCodes(QString path);

    /// Codes of other components, which are not given to plug-ins.
    void reserve(const AudioComponent &component);

    /// Sets the codes of each of @p components. With Keep::Yes new ones are written, under a lock, before this
    /// returns; with Keep::No the same codes result as long as the same plug-ins are installed.
    void assign(const std::vector<InstalledComponent *> &components, Keep keep);

private:
    using Pair = std::pair<quint32, quint32>; ///< Subtype and manufacturer.

    bool _assignMissing(const std::vector<InstalledComponent *> &components);
    Pair _freePair(const InstalledComponent &component) const;
    void _read();
    void _write() const;

    QString m_path;
    QMap<QString, Pair> m_pairs; ///< By URI.
    std::set<Pair> m_taken;
};

} // namespace platform
