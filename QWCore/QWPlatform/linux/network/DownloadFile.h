#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QByteArray>
#include <QString>

#include <system_error>

namespace platform
{

/// A file that has no name until it is whole, and then gets it in one step, so that whoever looks sees all of it or
/// nothing, whatever ends this process. Where the disk knows no files without a name (FAT, NFS), it is a hidden one
/// beside the destination meanwhile. Any thread, one at a time.
class QWPLATFORM_TEST_EXPORT DownloadFile
{
public:
    /// What of the disk's abilities may be used; for tests, since few disks lack any.
    struct Means
    {
        bool nameless = true;        ///< O_TMPFILE.
        bool exclusiveRename = true; ///< RENAME_NOREPLACE.
        bool links = true;
    };

    /// @p destination is an absolute path. With @p overwrite a file there is replaced, else place() takes a free name.
    DownloadFile(QString destination, bool overwrite);
    DownloadFile(QString destination, bool overwrite, Means means);

    /// Removes a file that was not placed.
    ~DownloadFile();

    DownloadFile(const DownloadFile &) = delete;
    DownloadFile &operator=(const DownloadFile &) = delete;

    // All of these give the system's error.
    std::error_code open();
    std::error_code write(const QByteArray &data); ///< Appends all of it.
    std::error_code clear();                       ///< Back to an empty file.
    std::error_code place();                       ///< Gives it its name and closes it.

    int descriptor() const { return m_descriptor; } ///< -1 while it is not open.
    const QString &path() const { return m_path; }  ///< Where it was placed; before, where it is to be.

private:
    std::error_code _openHidden();
    std::error_code _giveName(const QByteArray &path);
    std::error_code _linkNameless(const QByteArray &path);
    std::error_code _renameHidden(const QByteArray &path);
    std::error_code _replaceByLink(const QByteArray &path);
    std::error_code _renameOverReservation(const QByteArray &path);
    QByteArray _candidate(qint64 number) const;
    qint64 _freeNumber(qint64 taken) const;
    bool _isTaken(qint64 number) const;
    void _close();

    const QString m_folder; ///< Of the destination.
    const QString m_name;   ///< As asked for.
    const bool m_overwrite;
    const Means m_means;
    QString m_path;
    QByteArray m_hidden; ///< Path of the hidden file; "" while there is none.
    qsizetype m_longestName = 0;
    int m_descriptor = -1;
};

} // namespace platform
