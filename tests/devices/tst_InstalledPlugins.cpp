// Both validators on plug-ins that are really installed here, as the packages of scripts/packages bring them.
#include "PluginDisk.h"

#include <QWPlatform/linux/LinuxComponentRegistry.h>

#include <VstLibraryFinder.h>

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
} // namespace

class tst_InstalledPlugins : public QObject
{
    Q_OBJECT

private slots:
    void lv2PluginsPass()
    {
        const PluginDisk disk;
        qunsetenv("LV2_PATH");
        const platform::Locations locations = disk.locations();
        platform::LinuxComponentRegistry registry(locations);
        std::vector<platform::AudioComponent> units;
        for (const quint32 type :
             {fourCharCode("aufx"), fourCharCode("aumf"), fourCharCode("aumu"), fourCharCode("augn")})
            for (const auto &unit : handful(registry.componentsOfType(type)))
                units.push_back(unit);
        QVERIFY(!units.empty());
        for (const auto &unit : units) {
            QStringList arguments;
            for (const quint32 code : {unit.type, unit.subtype, unit.manufacturer})
                arguments += QString::number(static_cast<qint32>(code));
            const auto run = disk.run(QW_AU_VALIDATOR, arguments);
            const QByteArray name = registry.nameOfComponent(unit).mid(1);
            const bool hasPassed = run.status == 0 && QFile::remove(disk.support("validated_au.plist"));
            QVERIFY2(hasPassed || faulty.contains(name), QByteArray(name + ": " + run.errors).constData());
            QCOMPARE(run.output, QByteArray());
        }
    }

    void vstPluginsPass()
    {
        const PluginDisk disk;
        QStringList libraries;
        for (const QString &path : VstLibraryFinder::candidates(VstLibraryFinder::usualFolders(disk.home())))
            if (VstLibraryFinder::isVstLibrary(path))
                libraries += path;
        QVERIFY(!libraries.isEmpty());
        for (const QString &library : handful(libraries)) {
            const auto run = disk.run(QW_VST_VALIDATOR, {library});
            QVERIFY2(run.status == 0, qPrintable(QString(library + ": " + QString::fromUtf8(run.errors))));
            QCOMPARE(run.output, QByteArray());
            QVERIFY(QFile::remove(disk.support("validated_vst.plist")));
        }
    }
};

QTEST_GUILESS_MAIN(tst_InstalledPlugins)
#include "tst_InstalledPlugins.moc"
