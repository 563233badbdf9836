#pragma once

#include <QString>

#include <vector>

namespace qw
{

/// One folder's entries, read in one go.
class FolderEntries
{
public:
    enum class Kind : unsigned char
    {
        Folder,
        Other,
        Unknown, ///< A link, or a file system that does not tell: the file itself must be asked.
    };

    struct Entry
    {
        QString name;
        Kind kind;
    };

    /// The folder at @p path (a real path); without entries when it cannot be read. Names that no text can hold are
    /// left out: nobody could find their files again.
    explicit FolderEntries(const QString &path);

    /// In the order of QWFile::contentsOfDirectoryAtPath().
    const std::vector<Entry> &entries() const { return m_entries; }

    /// Tells the folder from every other one on this machine while it exists.
    struct Identity
    {
        quint64 device = 0;
        quint64 inode = 0;
        bool operator==(const Identity &) const = default;
    };
    const Identity &identity() const { return m_identity; }

private:
    std::vector<Entry> m_entries;
    Identity m_identity;
};

} // namespace qw
