#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QString>
#include <QVariant>

#include <memory>

namespace platform
{

/// The user's settings of one host, in the property list "~/Library/Preferences/<bundle identifier>.plist". What was
/// set is seen at once; it is written 500 ms after a change, on a thread of its own, and at the end, under a lock file,
/// applying only the keys that were changed here, so that the last writer of a key wins. A file that does not parse is
/// set aside with the ending ".unreadable", never overwritten. While it cannot be written, as when another program
/// holds the lock, it is tried again every two seconds; the log says so once. Main thread.
class QWPLATFORM_EXPORT UserDefaults
{
public:
    /// @p path is the real path of the file; nothing is read before the first question.
    explicit UserDefaults(QString path);

    /// Writes what is pending.
    ~UserDefaults();

    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;

    /// Values used for keys that are not set; never written. Later registrations win.
    void registerDefaults(const QVariantMap &values);

    /// The value of @p key: set here, stored, or registered; invalid when there is none.
    QVariant object(const QString &key) const;

    /// @{
    /// The value of @p key converted; of the wrong type, or none: false, 0, "".
    bool boolean(const QString &key) const;
    qlonglong integer(const QString &key) const;
    double real(const QString &key) const;
    QString string(const QString &key) const;
    /// @}

    /// True when the key is set here or stored (registered values do not count).
    bool isSet(const QString &key) const;

    /// Sets @p key; a value that a property list cannot hold is refused with a log line.
    void setObject(const QString &key, const QVariant &value);

    /// Removes what was set or stored for @p key; a registered value then counts again.
    void removeObject(const QString &key);

    /// Writes now, waiting at most 0.4 s for another program that holds the lock; false when the file could not be
    /// written, in which case the changes stay pending.
    bool synchronize();

    /// Real path of the file.
    const QString &path() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace platform
