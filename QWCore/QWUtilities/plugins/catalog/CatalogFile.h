#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QByteArray>

#include <functional>
#include <optional>
#include <sys/stat.h>
#include <vector>

class QString;
class QWCatalogRecord;

namespace qw
{

/// The file of a plug-in catalog, written in place. After each save its content is that of a whole rewrite; only what
/// changed since the last save of this object is written, unless someone else touched the file in between.
class QWUTILITIES_TEST_EXPORT CatalogFile
{
public:
    using RecordAt = std::function<const QWCatalogRecord &(std::size_t index)>;

    /// @p path is the real path.
    explicit CatalogFile(const QString &path);

    /// The file's bytes; none when there is no such file or it cannot be read.
    std::optional<QByteArray> read() const;

    /// Saves @p count records, of which those before @p firstChanged are as they were at the last save. Failures are
    /// not told; the next save then writes everything. Folders above the file are made.
    void save(std::size_t count, std::size_t firstChanged, const RecordAt &recordAt);

private:
    /// What tells whether the file is as it was left here.
    struct Identity
    {
        explicit Identity(const struct stat &status);
        bool operator==(const Identity &other) const;

        dev_t device;
        ino_t inode;
        off_t size;
        timespec modified;
        timespec changed;
    };

    int _open() const;
    bool _save(int file, std::size_t count, std::size_t firstChanged, const RecordAt &recordAt);

    QByteArray m_path;
    std::optional<Identity> m_left; ///< The file after the last save; none: nothing is known about it.
    std::vector<off_t> m_offsets;   ///< Where each saved record begins, and where the last one ends.
};

} // namespace qw
