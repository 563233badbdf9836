#include <QWBase/QWApplication.h>
#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/System.h>
#include <QWPlatform/devices/components/ComponentRegistry.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/plugins/QWAUDescription.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>

// A launch on an unchanged machine: `validate` of both managers, catalogs and registry cache read included. Each launch
// is a process of its own (this program with the argument "launch"), so nothing is left in memory from the one before.
namespace
{
constexpr int unitCount = 400;
constexpr int bundleCount = 200;

QByteArray lv2Manifest(int i)
{
    return QString("@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
                   "@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .\n"
                   "<http://bench.example/unit%1> a lv2:Plugin ; lv2:binary <unit.so> ; rdfs:seeAlso <unit.ttl> .\n")
        .arg(i)
        .toUtf8();
}

QByteArray lv2Unit(int i)
{
    return QString(
               "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
               "@prefix doap: <http://usefulinc.com/ns/doap#> .\n"
               "@prefix foaf: <http://xmlns.com/foaf/0.1/> .\n"
               "<http://bench.example/unit%1> a lv2:Plugin ; doap:name \"Unit %1\" ;\n"
               "  doap:maintainer [ foaf:name \"Maker %2\" ] ;\n"
               "  lv2:port [ a lv2:AudioPort , lv2:InputPort ; lv2:index 0 ; lv2:symbol \"in\" ; lv2:name \"In\" ] ,\n"
               "           [ a lv2:AudioPort , lv2:OutputPort ; lv2:index 1 ; lv2:symbol \"out\" ; lv2:name \"Out\" ] "
               ".\n")
        .arg(i)
        .arg(i / 10)
        .toUtf8();
}

void write(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(path.section('/', 0, -2));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        std::abort();
}

void install(const QString &folder)
{
    for (int i = 0; i < unitCount; ++i) {
        const QString bundle = folder + QString("/lv2/unit%1.lv2/").arg(i);
        write(bundle + "manifest.ttl", lv2Manifest(i));
        write(bundle + "unit.ttl", lv2Unit(i));
        write(bundle + "unit.so", "");
    }
    for (int i = 0; i < bundleCount; ++i)
        write(folder + QString("/root/Library/Audio/Plug-Ins/VST/Maker %1/Plug-in %2.vst/Contents/Info.plist")
                           .arg(i / 10)
                           .arg(i),
              platform::PropertyList::toXml(QVariantMap{{"CFBundleIdentifier", "com.bench"}}));
}

QVariantMap validated(QVariantMap state)
{
    state["ignore"] = false;
    return state;
}

/// Catalogs as a first scan leaves them; reading the registry's names also fills its cache.
void recordEverything(const QString &folder)
{
    const QString support = folder + "/home/Library/Application Support/Quorwell/";
    QVariantList units;
    for (const quint32 type : {0x61756678u, 0x61756D66u, 0x61756D75u, 0x6175676Eu})
        for (const QWComponentDescription &unit : QWComponentDescription::componentDescriptionsOfType(type)) {
            const auto record = QWAUDescription::description();
            record->setComponentDescription(unit);
            record->loadInfo();
            units.append(validated(record->state()));
        }
    if (units.size() != unitCount)
        std::abort();
    write(support + "au_db.plist", platform::PropertyList::toXml(units));
    QVariantList bundles;
    for (int i = 0; i < bundleCount; ++i)
        bundles.append(validated(QWVSTDescription::descriptionWithPath(
                                     QString("/Library/Audio/Plug-Ins/VST/Maker %1/Plug-in %2.vst").arg(i / 10).arg(i))
                                     ->state()));
    write(support + "vst_db.plist", platform::PropertyList::toXml(bundles));
}

/// Prints the seconds that the managers take.
int launch()
{
    const auto start = std::chrono::steady_clock::now();
    QWAUManager units;
    units.validate();
    QWVSTManager bundles;
    bundles.validate();
    std::printf("%f\n", std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    return units.database().size() == unitCount && bundles.database().size() == bundleCount ? 0 : 1;
}

void launches(benchmark::State &state)
{
    for (auto _ : state) {
        std::FILE *pipe = popen("/proc/$PPID/exe launch", "r");
        double taken = 0;
        const bool isRead = pipe && std::fscanf(pipe, "%lf", &taken) == 1;
        if (!pipe || pclose(pipe) != 0 || !isRead)
            state.SkipWithError("the launch failed");
        state.SetIterationTime(taken);
    }
}
} // namespace

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], "launch") == 0) {
        const QWApplication application(argc, argv);
        return launch();
    }
    const QTemporaryDir folder;
    install(folder.path());
    qputenv("HOME", QFile::encodeName(folder.path() + "/home"));
    qputenv("QW_LIBRARY_ROOT", QFile::encodeName(folder.path() + "/root"));
    qputenv("LV2_PATH", QFile::encodeName(folder.path() + "/lv2"));
    const QWApplication application(argc, argv);
    recordEverything(folder.path());
    benchmark::RegisterBenchmark("launch-validate/ours", launches)->UseManualTime()->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
