#pragma once

#include <QMap>
#include <QSet>
#include <QStringList>

#include <functional>

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
        int left = 0; ///< Libraries that there was no time for.
    };

    /// The name that the plug-in of a library gives itself; "" when it has none.
    using Namer = std::function<QString(const QString &library)>;

    /// The wrappers in @p folder (a real path), which need not be there. Bundles are named as @p namer says, else after
    /// the library's file, which is also what they all are without a namer.
    VstWrappers(QString folder, Mode mode, Namer namer = {});

    /// From now on update() leaves what is new or changed for another time when @p isTimeUp and something was tried.
    void setTimeLimit(std::function<bool()> isTimeUp) { m_isTimeUp = std::move(isTimeUp); }

    /// Wraps @p libraries (candidates; what is no VST library is passed over). Wrappers of libraries that lie elsewhere
    /// are kept up to date, too; only those whose library is gone are removed.
    Summary update(const QStringList &libraries);

private:
    struct Wrapper
    {
        QString bundle;
        qint64 stamp;  ///< The library's modification time when it was wrapped.
        bool wasAsked; ///< The plug-in, for its name.
    };

    QStringList _wrappedElsewhere(const QStringList &libraries) const;
    void _removeUnfinished() const;
    void _updateOne(const QString &library, Summary &summary);
    void _wrap(const QString &library, const Wrapper *wrapper, Summary &summary);
    bool _make(const QString &library, const QString &bundle, const QString &name) const;
    bool _refresh(const QString &library, const QString &before, const QString &bundle, const QString &name) const;
    bool _writeInfo(const QString &library, const QString &bundle, const QString &name) const;
    QString _nameOf(const QString &library) const;
    QString _freeBundlePath(const QString &name) const;

    QString m_folder;
    Mode m_mode;
    Namer m_namer;
    std::function<bool()> m_isTimeUp = [] { return false; };
    QMap<QString, Wrapper> m_wrappers; ///< By library.
    QSet<QString> m_current;           ///< Bundles that stand for an installed library.
};
