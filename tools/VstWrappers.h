#pragma once

#include <QMap>
#include <QSet>
#include <QStringList>

/// The ".vst" bundles that stand for bare libraries in one folder. Each holds a link to its library and an Info.plist
/// with the library's path and modification time, by which it is known as ours; other bundles are never touched.
class VstWrappers
{
public:
    enum class Mode
    {
        Change,
        DryRun
    };

    struct Summary
    {
        QStringList added;   ///< Paths of bundles, as the next two.
        QStringList updated; ///< The library changed, so the bundle's date did.
        QStringList removed; ///< The library is gone.
        QStringList failed;  ///< Of libraries that could not be wrapped.
        int unchanged = 0;
    };

    /// The wrappers in @p folder (a real path), which need not be there.
    VstWrappers(QString folder, Mode mode);

    /// Wraps @p libraries (candidates; what is no VST library is passed over). Wrappers of libraries that lie elsewhere
    /// are kept up to date, too; only those whose library is gone are removed.
    Summary update(const QStringList &libraries);

private:
    struct Wrapper
    {
        QString bundle;
        qint64 stamp; ///< The library's modification time when it was wrapped.
    };

    QStringList _wrappedElsewhere(const QStringList &libraries) const;
    void _updateOne(const QString &library, Summary &summary);
    bool _make(const QString &library, const QString &bundle) const;
    bool _fill(const QString &library, const QString &bundle) const;
    bool _refresh(const QString &library, const QString &bundle) const;
    QString _freeBundlePath(const QString &library) const;

    QString m_folder;
    Mode m_mode;
    QMap<QString, Wrapper> m_wrappers; ///< By library.
    QSet<QString> m_current;           ///< Bundles that stand for an installed library.
};
