#pragma once

#include <QString>

#include <system_error>

namespace qw
{

/// A folder for one running instance that nobody else can read; it goes with the object. The kernel's lock on the
/// folder says that its instance lives, so that what a crashed one left can be told and removed. The lock is on the
/// folder itself and not on a file in it, since whoever uses the folder may empty it.
class InstanceFolder
{
public:
    /// Makes "<base>.xxxxxx"; @p base is absolute.
    explicit InstanceFolder(const QString &base);
    ~InstanceFolder();
    InstanceFolder(const InstanceFolder &) = delete;
    InstanceFolder &operator=(const InstanceFolder &) = delete;

    const QString &path() const { return m_path; }               ///< "" when none could be made.
    const std::error_code &failure() const { return m_failure; } ///< Why not.

    /// Removes the folders "<base>.xxxxxx" of this user whose instance lives no more. Any thread.
    static void removeDead(const QString &base);

private:
    bool _make(const QString &base);

    QString m_path;
    std::error_code m_failure;
    int m_lock = -1; ///< Descriptor of the folder.
};

} // namespace qw
