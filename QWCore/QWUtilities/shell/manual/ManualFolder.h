#pragma once

#include <QString>
#include <QUrl>

class QWError;

namespace qw
{

/// The folder below the user's support folder that holds the pages of the host's manual. Main thread.
class ManualFolder
{
public:
    /// Makes sure that there is one, with the host's own manual when it holds none; false, after an alert, when that
    /// cannot be.
    bool prepare();

    /// Of the first page, as documented; "" as long as prepare() has found no place for it.
    const QString &indexPath() const { return m_manualIndexPath; }

    QUrl indexUrl() const;
    QUrl acknowledgementsUrl() const;

    /// Removes all pages, whatever their permissions; false, with the reason in @p error, when one stays.
    bool empty(QWError *error) const;

    /// Adds what the zip file @p archive holds, and waits for it; a failure is not detected.
    void unzip(const QString &archive) const;

private:
    QString m_manualPath;
    QString m_manualIndexPath;
};

} // namespace qw
