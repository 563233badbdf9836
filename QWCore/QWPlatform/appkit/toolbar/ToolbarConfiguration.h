#pragma once

#include <QStringList>

#include <optional>

namespace platform
{

/// What user defaults keep of one toolbar, under "NSToolbar Configuration <identifier>".
struct ToolbarConfiguration
{
    std::optional<QStringList> itemIdentifiers; ///< None when nothing usable is stored.
    QStringList defaultItemIdentifiers;
    int displayMode = 0; ///< 0 to 3, as Toolbar::DisplayMode.
    bool isShown = true;

    /// Values that are missing, of a wrong type or out of range are as above.
    static ToolbarConfiguration load(const QString &toolbarIdentifier);

    /// Keys of the stored dictionary that are not ours stay.
    void save(const QString &toolbarIdentifier) const;
};

} // namespace platform
