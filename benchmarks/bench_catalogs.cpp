#include "fakes/FakeSystem.h"

#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/plugins/QWAUDescription.h>
#include <QWUtilities/plugins/catalog/PluginCatalog.h>

#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <QApplication>
#include <QFile>

#include <chrono>
#include <malloc.h>

namespace
{
constexpr int recordCount = 10'000;
constexpr int newRecordCount = 2'000;

struct PathKey
{
    static const QString &of(const QWVSTDescription &record) { return record.path(); }
};

struct ComponentKey
{
    static const QWComponentDescription &of(const QWAUDescription &record) { return record.componentDescription(); }
};

using VSTCatalog = qw::PluginCatalog<QWVSTDescription, PathKey>;
using AUCatalog = qw::PluginCatalog<QWAUDescription, ComponentKey>;

QVariantMap vstState(int i)
{
    return {{"path", QString("~/Library/Audio/Plug-Ins/VST/Maker %1/Plug-in %2.vst").arg(i / 20).arg(i)},
            {"ignore", i % 50 == 0},
            {"isInstrument", i % 5 == 0},
            {"modificationDate", 1'234'567'890'000'000'000LL + i * 1'000'003LL},
            {"name", QString("Plug-in %1").arg(i)},
            {"vendor", QString("Maker %1").arg(i / 20)},
            {"category", 1LL},
            {"flags", 17LL},
            {"uniqueID", 1'000'000'000LL + i}};
}

QVariantMap auState(int i)
{
    const auto code = static_cast<quint32>(i);
    return {{"componentDescription", QWComponentDescription(0x61756678, 0x41414141 + code, 0x41636D65).state()},
            {"ignore", i % 50 == 0},
            {"name", QString("Plug-in %1").arg(i)},
            {"manufacturer", QString("Maker & Sons %1").arg(i / 20)},
            {"identifier", QString("com.maker.plugin%1").arg(i)}};
}

QByteArray catalogXml(QVariantMap (*stateOf)(int))
{
    QVariantList states;
    for (int i = 0; i < recordCount; ++i)
        states.append(stateOf(i));
    return platform::PropertyList::toXml(states);
}

/// Seconds that @p work takes.
template <class Work>
double seconds(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

QString writtenCatalog(const FakeSystem &disk, const QByteArray &xml)
{
    disk.writeFile("~/db.plist", xml);
    return disk.real("~/db.plist");
}

template <class Catalog>
void load(benchmark::State &state, QVariantMap (*stateOf)(int))
{
    const FakeSystem disk;
    const QString path = writtenCatalog(disk, catalogXml(stateOf));
    for (auto _ : state) {
        std::unique_ptr<Catalog> catalog;
        state.SetIterationTime(seconds([&] { catalog = std::make_unique<Catalog>(path); }));
        if (catalog->records().size() != recordCount)
            state.SkipWithError("records are missing");
    }
}

void parseWithLibplist(benchmark::State &state, QVariantMap (*stateOf)(int))
{
    const QByteArray xml = catalogXml(stateOf);
    for (auto _ : state) {
        plist_t list = nullptr;
        state.SetIterationTime(
            seconds([&] { plist_from_xml(xml.constData(), static_cast<uint32_t>(xml.size()), &list); }));
        plist_free(list);
    }
}

template <class Catalog>
void save(benchmark::State &state, QVariantMap (*stateOf)(int))
{
    const FakeSystem disk;
    const QString path = writtenCatalog(disk, catalogXml(stateOf));
    for (auto _ : state) {
        ::malloc_trim(0);      // a launch reads into a fresh heap, not between the holes of a hundred catalogs
        Catalog catalog(path); // its first save writes everything
        state.SetIterationTime(seconds([&] { catalog.save(); }));
    }
}

void saveWithLibplist(benchmark::State &state, QVariantMap (*stateOf)(int))
{
    const FakeSystem disk;
    const QByteArray xml = catalogXml(stateOf);
    const QByteArray path = writtenCatalog(disk, xml).toUtf8();
    plist_t list = nullptr;
    plist_from_xml(xml.constData(), static_cast<uint32_t>(xml.size()), &list);
    for (auto _ : state)
        state.SetIterationTime(seconds([&] {
            char *text = nullptr;
            uint32_t size = 0;
            plist_to_xml(list, &text, &size);
            std::FILE *file = std::fopen(path.constData(), "w");
            std::fwrite(text, 1, size, file);
            std::fclose(file);
            plist_to_xml_free(text);
        }));
    plist_free(list);
}

/// Two saves for each of many new records, behind @p before older ones.
void scanSaves(benchmark::State &state, int before)
{
    for (auto _ : state) {
        const FakeSystem disk;
        VSTCatalog catalog(disk.real("~/db.plist"));
        for (int i = 0; i < before; ++i)
            catalog.append(QWVSTDescription::descriptionWithState(vstState(i)));
        std::vector<std::shared_ptr<QWVSTDescription>> added;
        for (int i = 0; i < newRecordCount; ++i)
            added.push_back(QWVSTDescription::descriptionWithState({{"path", vstState(before + i)["path"]}}));
        const QVariantMap handOff{{"name", "Plug-in"}, {"vendor", "Maker"}, {"flags", 17LL}};
        state.SetIterationTime(seconds([&] {
            for (const auto &record : added) {
                catalog.append(record);
                catalog.save();
                record->setState(handOff);
                catalog.save();
            }
        }));
    }
}
} // namespace

int main(int argc, char **argv)
{
    using benchmark::RegisterBenchmark;
    const QApplication application(argc, argv);
    const auto add = [](const char *name, auto function, auto argument) {
        RegisterBenchmark(name, function, argument)->UseManualTime()->Unit(benchmark::kMillisecond);
    };
    add("catalog-load-vst/ours", load<VSTCatalog>, vstState);
    add("catalog-load-vst/baseline", parseWithLibplist, vstState);
    add("catalog-load-au/ours", load<AUCatalog>, auState);
    add("catalog-load-au/baseline", parseWithLibplist, auState);
    add("catalog-save-vst/ours", save<VSTCatalog>, vstState);
    add("catalog-save-vst/baseline", saveWithLibplist, vstState);
    add("catalog-save-au/ours", save<AUCatalog>, auState);
    add("catalog-save-au/baseline", saveWithLibplist, auState);
    add("scan-saves/ours", scanSaves, 0);
    add("scan-saves-behind-10000/ours", scanSaves, recordCount);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
