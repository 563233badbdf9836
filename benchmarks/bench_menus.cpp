#include "fakes/FakeSystem.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWMenuSorting.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <benchmark/benchmark.h>

#include <QMenu>

#include <algorithm>
#include <chrono>
#include <random>

namespace
{
constexpr int pluginCount = 10'000;
constexpr int makerCount = 500;

struct Plugin
{
    QString maker;
    QString name;
};

/// In no order.
std::vector<Plugin> plugins()
{
    std::vector<Plugin> all;
    for (int i = 0; i < pluginCount; ++i)
        all.push_back(
            {QString("Maker %1").arg(i % makerCount), QString("%1 Plug-in %2").arg(QChar('A' + i % 26)).arg(i)});
    std::shuffle(all.begin(), all.end(), std::mt19937(1));
    return all;
}

template <class Work>
double seconds(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void writeUnits(const FakeSystem &system)
{
    QVariantList states;
    for (const Plugin &plugin : plugins()) {
        const QWComponentDescription unit(0x61756678, static_cast<quint32>(states.size()), 0x41636D65);
        states.append(QVariantMap{{"componentDescription", unit.state()},
                                  {"ignore", false},
                                  {"name", plugin.name},
                                  {"manufacturer", plugin.maker}});
    }
    system.writePropertyList("~/Library/Application Support/Quorwell/au_db.plist", states);
}

void writeBundles(const FakeSystem &system)
{
    QVariantList states;
    for (const Plugin &plugin : plugins())
        states.append(
            QVariantMap{{"path", QString("/Library/Audio/Plug-Ins/VST/" + plugin.name + ".vst")}, {"ignore", false}});
    system.writePropertyList("~/Library/Application Support/Quorwell/vst_db.plist", states);
}

template <class Manager>
void effectsMenu(benchmark::State &state, void (*write)(const FakeSystem &))
{
    FakeSystem system;
    platform::SystemScope current(system);
    write(system);
    const Manager manager;
    QObject target;
    for (auto _ : state) {
        std::unique_ptr<QMenu> menu;
        state.SetIterationTime(seconds([&] { menu = manager.effectsMenuWithTargetAction(&target, "insertPlugin:"); }));
    }
}

/// The same items of @p titles, in the order of sorted menus, at the end of @p menu.
void appendSorted(QMenu &menu, const std::vector<QString> &titles, QObject &target)
{
    std::vector<std::pair<QCollatorSortKey, platform::MenuItem *>> items;
    items.reserve(titles.size());
    for (const QString &title : titles) {
        auto *item = new platform::MenuItem(title, &menu);
        item->setTarget(&target);
        item->setAction("insertPlugin:");
        item->setRepresentedObject(title);
        items.emplace_back(QWMenuSorting::sortKey(title), item);
    }
    std::stable_sort(items.begin(), items.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    for (const auto &[key, item] : items)
        menu.addAction(item);
}

void plainFlatMenu(benchmark::State &state)
{
    std::vector<QString> titles;
    for (const Plugin &plugin : plugins())
        titles.push_back(plugin.name);
    QObject target;
    for (auto _ : state) {
        QMenu menu;
        state.SetIterationTime(seconds([&] { appendSorted(menu, titles, target); }));
    }
}

void plainGroupedMenu(benchmark::State &state)
{
    std::map<QString, std::vector<QString>> groups;
    for (const Plugin &plugin : plugins())
        groups[plugin.maker].push_back(plugin.name);
    QObject target;
    for (auto _ : state) {
        QMenu menu;
        state.SetIterationTime(seconds([&] {
            for (const auto &[maker, titles] : groups)
                appendSorted(*menu.addMenu(maker), titles, target);
        }));
    }
}
} // namespace

int main(int argc, char **argv)
{
    using benchmark::RegisterBenchmark;
    const QWApplication application(argc, argv);
    const auto tune = [](auto *b) { b->UseManualTime()->Unit(benchmark::kMillisecond); };
    tune(RegisterBenchmark("effects-menu-grouped/ours", effectsMenu<QWAUManager>, writeUnits));
    tune(RegisterBenchmark("effects-menu-grouped/baseline", plainGroupedMenu));
    tune(RegisterBenchmark("effects-menu-one-folder/ours", effectsMenu<QWVSTManager>, writeBundles));
    tune(RegisterBenchmark("effects-menu-one-folder/baseline", plainFlatMenu));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
