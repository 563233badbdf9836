#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QString>

namespace platform
{

/// Where the documented places really are. Records, arguments and defaults keep the documented text
/// ("~/Library/…", "/Library/…"); only file access maps it. Any thread may read; set on the main thread before
/// workers start.
class QWPLATFORM_EXPORT Locations
{
public:
    /// @p home is absolute; @p libraryRoot is the folder that stands for "/" in "/Library/…", "" for "/" itself.
    Locations(QString home, QString libraryRoot);

    const QString &home() const { return m_home; }
    const QString &libraryRoot() const { return m_libraryRoot; }

    /// @p path with a leading "~" (alone or before "/") replaced by the home folder; other text as it is.
    QString expandingTilde(const QString &path) const;

    /// The real file behind a documented path: tilde expanded, "/Library" moved below the library root.
    QString mapped(const QString &path) const;

    /// Base address of the company's support site, without a trailing slash.
    const QString &supportSite() const { return m_supportSite; }
    void setSupportSite(const QString &address);

private:
    QString m_home;
    QString m_libraryRoot;
    QString m_supportSite;
};

} // namespace platform
