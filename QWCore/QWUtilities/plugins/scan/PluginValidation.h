#pragma once

#include "PluginFormat.h"

#include <QStringList>
#include <QVariant>

class QWCatalogRecord;

namespace qw
{

/// What both catalogs do with a new plug-in: ask about known-bad ones, heed the skip key, try it in the validator
/// program and take what that hands off. Main thread; blocks while alerts are open and while the validator runs.
class PluginValidation
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
    /// the alert about a failure, which also makes the record an ignored one. False when nothing can be learned of the
    /// plug-in now, since no validator could leave its result: the user was told, and the record is to be dropped.
    [[nodiscard]] bool validate(QWCatalogRecord &record, const QStringList &arguments, const QString &shownName,
                                const QString &failureName);

    /// False once that has happened in this scan: the plug-ins that are still new stay so.
    bool canTry() const { return m_canTry; }

    /// Runs a scan's part in which failures are the plug-ins' own: tells the splash screen that plug-ins are being
    /// located and keeps the application from reporting exceptions.
    class Scan
    {
    public:
        explicit Scan(PluginValidation &validation);
        ~Scan();
        Scan(const Scan &) = delete;
        Scan &operator=(const Scan &) = delete;
    };

private:
    enum class Trial
    {
        Passed,
        Failed,
        Impossible ///< For the reason in m_trouble.
    };

    Trial _try(QWCatalogRecord &record, const QStringList &arguments, const QString &name);
    bool _handOffFits();
    const QString &_validatorPath();
    bool _takeValidatedInfo(QWCatalogRecord &record) const;

    const PluginFormat &m_format;
    QString m_databasePath;
    QString m_validatedInfoPath;
    QString m_validatorPath;       ///< Found at the first validation.
    bool m_skipValidation = false; ///< Once set, never cleared.
    bool m_canTry = true;          ///< In this scan; likewise the next.
    bool m_hasTried = false;
    QString m_trouble; ///< Why nothing can be tried, for the user.
};

} // namespace qw
