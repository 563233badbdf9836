#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QString>

#include <memory>

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

    ~Locations();
    Locations(const Locations &) = delete;
    Locations &operator=(const Locations &) = delete;

    /// The home folder; absolute, without a trailing slash.
    const QString &home() const;

    /// What stands before "/Library/…", without a trailing slash; "" for nothing.
    const QString &libraryRoot() const;

    /// @p path with a leading "~" (alone or before "/") replaced by the home folder; other text as it is.
    QString expandingTilde(const QString &path) const;

    /// The real file behind a documented path: tilde expanded, "/Library" moved below the library root.
    QString mapped(const QString &path) const;

    /// Base address of the company's support site, without a trailing slash.
    const QString &supportSite() const;

    /// Sets supportSite(); trailing slashes are dropped.
    void setSupportSite(const QString &address);

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace platform
