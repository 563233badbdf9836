// Both validators on plug-ins that are really installed here. Those of the packages that scripts/packages names are
// judged; what else a machine happens to have is only told of.
#include "ValidatorArguments.h"
#include "audio-plugins/PluginDisk.h"

#include <QWPlatform/linux/plugins/LinuxComponentRegistry.h>

#include <VstLibraryFinder.h>

#include <QSet>

using platform::fourCharCode;

namespace
{
constexpr std::size_t mostTried = 12;

/// Two libraries that lack a symbol, and a filter whose defaults give samples that are not finite.
const QByteArrayList faulty{"Steve Harris: Multiband EQ", "Steve Harris: Higher Quality Pitch Scaler",
                            "Steve Harris: Single band parametric"};

/// Every n-th of @p all, so that a dozen of different makers is tried.
template <class T>
T handful(const T &all)
{
    T some;
    const std::size_t step = std::max<std::size_t>(1, static_cast<std::size_t>(all.size()) / mostTried);
    for (std::size_t i = 0; i < static_cast<std::size_t>(all.size()); i += step)
        some.push_back(all[static_cast<typename T::size_type>(i)]);
    return some;
}

/// What the packages with plug-ins have installed: files and folders.
QSet<QString> installedByPackages()
{
    QFile list(QW_PACKAGES);
    if (!list.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", QW_PACKAGES);
    QStringList names = QString::fromUtf8(list.readAll()).split('\n', Qt::SkipEmptyParts);
    names = names.mid(names.indexOf("# Real plug-ins for the demo and the tests") + 1);
    QProcess query;
    query.start("dpkg-query", QStringList{"-L"} + names);
    query.waitForFinished(60'000);
    const QStringList paths = QString::fromUtf8(query.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    return {paths.begin(), paths.end()};
}
} // namespace

class tst_InstalledPlugins : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (m_judged.isEmpty())
            QSKIP("The packages with plug-ins are not installed");
    }

    void lv2PluginsPass()
    {
        const PluginDisk disk;
        qunsetenv("LV2_PATH");
        const platform::Locations locations = disk.locations();
        platform::LinuxComponentRegistry registry(locations);
        std::vector<platform::AudioComponent> judged;
        std::vector<platform::AudioComponent> others;
        for (const quint32 type :
             {fourCharCode("aufx"), fourCharCode("aumf"), fourCharCode("aumu"), fourCharCode("augn")}) {
            std::vector<platform::AudioComponent> ours;
            for (const auto &unit : registry.componentsOfType(type))
                (_isJudged(registry.locationOfComponent(unit)->path) ? ours : others).push_back(unit);
            for (const auto &unit : handful(ours))
                judged.push_back(unit);
        }
        QVERIFY(!judged.empty());
        for (const auto &unit : judged) {
            const QByteArray name = registry.nameOfComponent(unit).mid(1);
            const QByteArray fault = _faultOf(disk, unit);
            QVERIFY2(fault.isEmpty() || faulty.contains(name), QByteArray(name + ": " + fault).constData());
        }
        for (const auto &unit : handful(others))
            _tell(registry.nameOfComponent(unit).mid(1), _faultOf(disk, unit));
    }

    void vstPluginsPass()
    {
        const PluginDisk disk;
        QStringList judged;
        QStringList others;
        for (const QString &path : VstLibraryFinder::candidates(VstLibraryFinder::usualFolders(disk.home())))
            if (VstLibraryFinder::isVstLibrary(path))
                (_isJudged(path) ? judged : others).append(path);
        QVERIFY(!judged.isEmpty());
        for (const QString &library : handful(judged))
            QCOMPARE(library.toUtf8() + ": " + _faultOf(disk, library), library.toUtf8() + ": ");
        for (const QString &library : handful(others))
            _tell(library.toUtf8(), _faultOf(disk, library));
    }

private:
    bool _isJudged(const QString &path) const { return m_judged.contains(QDir(path).path()); }

    static void _tell(const QByteArray &name, const QByteArray &fault)
    {
        qInfo("not judged: %s: %s", name.constData(), fault.isEmpty() ? "passes" : fault.constData());
    }

    static QByteArray _faultOf(const PluginDisk &disk, const platform::AudioComponent &unit)
    {
        return _faultOf(disk, QW_AU_VALIDATOR, argumentsFor(unit), disk.auHandOff());
    }

    static QByteArray _faultOf(const PluginDisk &disk, const QString &library)
    {
        return _faultOf(disk, QW_VST_VALIDATOR, {library}, disk.vstHandOff());
    }

    /// "" when the validator passes it, hands over its record and prints nothing to standard output.
    static QByteArray _faultOf(const PluginDisk &disk, const QString &validator, const QStringList &arguments,
                               const QString &record)
    {
        const auto run = disk.run(validator, arguments);
        const bool hasPassed = QFile::remove(record) && run.status == 0;
        return hasPassed && run.output.isEmpty()
                   ? QByteArray()
                   : run.errors + run.output + "\nstatus " + QByteArray::number(run.status);
    }

    const QSet<QString> m_judged = installedByPackages();
};

QTEST_GUILESS_MAIN(tst_InstalledPlugins)
#include "tst_InstalledPlugins.moc"
