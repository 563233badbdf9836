#pragma once

#include <QString>
#include <QStringList>

namespace qw
{

/// The folders that a take's title names below the chosen one, as far as they were made for it. Any thread, one at a
/// time.
class TitleFolders
{
public:
    /// A title that names more is none that a person gave.
    static constexpr qsizetype mostLevels = 32;

    /// Makes what is missing of what @p title names below @p folder; false when that cannot be, and none is made then.
    bool make(const QString &folder, const QString &title);

    /// A file lies in them.
    void keep() { m_made.clear(); }

    /// Removes those that were made, as far as nothing lies in them.
    void removeEmpty();

private:
    QStringList m_made; ///< Real paths, outermost first.
};

} // namespace qw
