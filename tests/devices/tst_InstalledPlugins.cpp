// Both validators on plug-ins that are really installed here; without any, the tests are skipped.
#include "PluginDisk.h"

#include <QWPlatform/linux/LinuxComponentRegistry.h>

#include <VstLibraryFinder.h>

using platform::fourCharCode;

namespace {
constexpr std::size_t mostTried = 12;

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
        if (units.empty())
            QSKIP("No LV2 plug-ins are installed.");
        int passed = 0;
        for (const auto &unit : units) {
            QStringList arguments;
            for (const quint32 code : {unit.type, unit.subtype, unit.manufacturer})
                arguments += QString::number(static_cast<qint32>(code));
            const auto run = disk.run(QW_AU_VALIDATOR, arguments);
            passed += run.status == 0 && QFile::remove(disk.support("validated_au.plist")) ? 1 : 0;
            if (run.status != 0)
                qInfo("%s: %s", registry.nameOfComponent(unit).mid(1).constData(), run.errors.trimmed().constData());
            QCOMPARE(run.output, QByteArray());
        }
        QVERIFY2(passed * 10 >= static_cast<int>(units.size()) * 8, qPrintable(QString::number(passed)));
    }

    void vstPluginsPass()
    {
        const PluginDisk disk;
        QStringList libraries;
        for (const QString &path : VstLibraryFinder::candidates(VstLibraryFinder::usualFolders(disk.home())))
            if (VstLibraryFinder::isVstLibrary(path))
                libraries += path;
        if (libraries.isEmpty())
            QSKIP("No VST libraries are installed.");
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
