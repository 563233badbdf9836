#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QString>
#include <QVariant>

#include <memory>
#include <typeinfo>

namespace platform
{

/// A folder with an Info.plist and resources: an application ("X.app"), a framework ("X.framework") or a plug-in
/// ("X.vst", "X.component"). A value; what it reads is read on first use and shared by its copies. Main thread.
class QWPLATFORM_EXPORT Bundle
{
public:
    /// The bundle at @p path (a real path). Nothing need be there: such a bundle has no keys and no resources.
    explicit Bundle(QString path);

    Bundle(const Bundle &other);            ///< Shares what was read.
    Bundle &operator=(const Bundle &other); ///< Shares what was read.
    ~Bundle();

    /// The bundle of the running program: the "X.app" around the executable, else the executable's own folder.
    static Bundle forExecutable();

    /// The framework or application whose code holds the class of @p object; for classes whose first virtual is
    /// defined in a source file of their own (their vtable then lies in their library).
    template <class T>
    static Bundle forClassOf(const T &object)
    {
        return forAddress(*reinterpret_cast<const void *const *>(&object)); // its vtable
    }

    /// The framework or application whose code holds @p address.
    static Bundle forAddress(const void *address);

    /// Real path, without a trailing slash.
    const QString &path() const;

    /// "CFBundleIdentifier", or "".
    QString identifier() const;

    /// The value of @p key in Info.plist, or an invalid one.
    QVariant objectForInfoDictionaryKey(const QString &key) const;

    /// All of Info.plist; empty when there is none.
    const QVariantMap &infoDictionary() const;

    /// Full path of the resource @p name of type (extension) @p type, "" for none; the user's best language folder
    /// ("de.lproj") is looked at first, then the resources folder, then "en.lproj"; "" when there is no such resource.
    QString pathForResource(const QString &name, const QString &type) const;

    /// Full path of the resources folder, whether or not it is there.
    QString resourcesPath() const;

    /// Full path of the program or library. Of a framework it is the link at its top ("…/X.framework/X"); replacing
    /// its last component gives paths inside the framework.
    QString executablePath() const;

    /// The default table's text for @p key in the user's best language, or @p key itself.
    QString localizedString(const QString &key) const;

private:
    class Private;
    std::shared_ptr<Private> d;
};

} // namespace platform
