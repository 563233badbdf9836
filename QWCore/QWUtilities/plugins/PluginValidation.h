#pragma once

#include <QWUtilities/plugins/PluginFormat.h>
#include <QWUtilities/qwutilities_export.h>

#include <QStringList>
#include <QVariant>

class QWCatalogRecord;

/// What both catalogs do with a new plug-in: ask about known-bad ones, heed the skip key, try it in the validator
/// program and take what that hands off. Main thread; blocks while alerts are open and while the validator runs.
class QWUTILITIES_EXPORT PluginValidation
{
public:
    explicit PluginValidation(const PluginFormat &format);

    /// Paths with the tilde expanded.
    const QString &databasePath() const { return m_databasePath; }
    const QString &validatedInfoPath() const { return m_validatedInfoPath; }

    /// Warns about the graylisted plug-in @p name; true when the user wants it ignored.
    bool userIgnores(const QString &name) const;

    /// Whether validation is being skipped: the skip key is down now, or was at an earlier question.
    bool isSkipped();

    /// Tries the plug-in of @p record with @p arguments. @p shownName stands on the splash screen, @p failureName in
    /// the alert about a failure, which also makes the record an ignored one.
    void validate(QWCatalogRecord &record, const QStringList &arguments, const QString &shownName,
                  const QString &failureName);

    /// Runs a scan's part in which failures are the plug-ins' own: tells the splash screen that plug-ins are being
    /// located and keeps the application from reporting exceptions.
    class QWUTILITIES_EXPORT Scan
    {
    public:
        explicit Scan(const PluginFormat &format);
        ~Scan();
        Scan(const Scan &) = delete;
        Scan &operator=(const Scan &) = delete;
    };

private:
    const QString &_validatorPath();
    bool _takeValidatedInfo(QWCatalogRecord &record) const;

    const PluginFormat &m_format;
    QString m_databasePath;
    QString m_validatedInfoPath;
    QString m_validatorPath;       ///< Found at the first validation.
    bool m_skipValidation = false; ///< Once set, never cleared.
};
