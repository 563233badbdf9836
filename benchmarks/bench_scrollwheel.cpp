#include "fakes/FakeSystem.h"

#include <QWBase/QWApplication.h>
#include <QWPlatform/appkit/ScrollEvent.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/controllers/QWScrollWheelManager.h>

#include <benchmark/benchmark.h>

#include <QWheelEvent>

namespace
{
constexpr int many = 100;

class Target : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void zoom(double lines) { benchmark::DoNotOptimize(sum += lines); }

    double sum = 0;
};

QVariantMap binding(int index)
{
    return {{"vertical", index == many - 1}, {"modifiers", 0}, {"action", "zoom:"}, {"reverse", true}};
}

/// The binding that an event finds is the last of all; a miss looks at all of them as well.
void match(benchmark::State &state, double x, double y, quint32 modifiers)
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    QVariantList bindings;
    for (int i = 0; i < many; ++i)
        bindings.append(binding(i));
    system.userDefaults().setObject("Scroll Wheel Actions", bindings);
    QWScrollWheelManager::loadActions();
    Target target;
    platform::ScrollEvent event;
    event.deltaX = x;
    event.deltaY = y;
    event.modifierFlags = modifiers;
    for (auto _ : state)
        benchmark::DoNotOptimize(QWScrollWheelManager::scrollWheelEventTarget(event, &target));
}

/// From the toolkit's event, on a machine whose keyboard answers at once.
void convert(benchmark::State &state)
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    const QWheelEvent wheel({}, {}, {}, {0, 120}, Qt::NoButton, Qt::AltModifier, Qt::NoScrollPhase, false);
    for (auto _ : state)
        benchmark::DoNotOptimize(platform::ScrollEvent(wheel));
}
} // namespace

int main(int argc, char **argv)
{
    using benchmark::RegisterBenchmark;
    const QWApplication application(argc, argv);
    RegisterBenchmark("scroll-hit/ours", match, 0, 1, 0);
    RegisterBenchmark("scroll-miss/ours", match, 0, 1, 0x20000);
    RegisterBenchmark("scroll-event/ours", convert);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}

#include "bench_scrollwheel.moc"
