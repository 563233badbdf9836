#include "recorder/BrowserHost.h"

#include <QWBase/QWApplication.h>

#include <benchmark/benchmark.h>

#include <chrono>

namespace
{
constexpr int takeCount = 10'000;
constexpr int selectedCount = 1000;

/// Takes whose order by any column differs from that of the list.
QVariantList scatteredTakes()
{
    QVariantList entries;
    for (int i = 0; i < takeCount; ++i)
        entries.append(BrowserHost::take(1 + i * 7919 % takeCount));
    return entries;
}

QList<int> scatteredRows()
{
    QList<int> rows;
    for (int i = 0; i < selectedCount; ++i)
        rows.append(i * takeCount / selectedCount);
    return rows;
}

template <class Act>
void measureOnce(benchmark::State &state, const Act &act)
{
    const auto start = std::chrono::steady_clock::now();
    act();
    state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
}

/// From the click to the painted rows: sorted anew, the same takes selected, their number and formats told.
void headerClick(benchmark::State &state)
{
    BrowserHost host;
    if (!host.openWith(scatteredTakes()))
        return state.SkipWithError("no window");
    host.clickHeader("length");
    host.clickHeader("title"); // what a column's first sort makes is kept
    host.table().selectRows(scatteredRows());
    const char *columns[] = {"length", "title"};
    int click = 0;
    for (auto _ : state)
        measureOnce(state, [&] {
            host.clickHeader(columns[click++ % 2]);
            host.table().viewport()->repaint();
        });
    if (host.table().selectedRows().size() != selectedCount)
        state.SkipWithError("other takes are selected");
}
} // namespace

int main(int argc, char **argv)
{
    QWApplication application(argc, argv);
    benchmark::RegisterBenchmark("recorder-header-click/ours", headerClick)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
