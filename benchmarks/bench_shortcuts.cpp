#include "fakes/FakeSystem.h"

#include <QWBase/QWApplication.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/shortcuts/QWKeyboardShortcuts.h>

#include <benchmark/benchmark.h>

#include <QAction>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenuBar>
#include <QMouseEvent>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <deque>
#include <vector>

namespace
{
constexpr int many = 5'000;
constexpr int changed = 2'000;
constexpr int largestGroup = 500;           // ten menus
constexpr char16_t firstCharacter = 0x4e00; // letters without case, enough of them

/// Takes every action, at once.
class Receiver : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void act(QObject *) { benchmark::DoNotOptimize(++count); }
    Q_INVOKABLE bool validateMenuItem(QAction *) { return true; }

    int count = 0;
};

QVariantMap state(int index, int keyOffset = 0)
{
    return {{"name", QString("Shortcut %1").arg(index)},
            {"action", "act:"},
            {"tag", index},
            {"prohibitRepeats", false},
            {"enabled", true},
            {"character", firstCharacter + index + keyOffset},
            {"modifiers", 0}};
}

QVariantList factory(int count, bool menus)
{
    QVariantList groups;
    for (int first = 0; first < count; first += largestGroup) {
        QVariantList members;
        for (int i = first; i < std::min(first + largestGroup, count); ++i)
            members.append(state(i));
        groups.append(QVariantMap{{"name", QString("Group %1").arg(first)}, {"isMenu", menus}, {"shortcuts", members}});
    }
    return groups;
}

/// A host in front of the user, with so many shortcuts and, for menu groups, an item for each.
class Host
{
public:
    explicit Host(int count, bool menus = false)
    {
        m_system.addHostResource("shortcuts.plist", platform::PropertyList::toXml(factory(count, menus)));
        platform::setDelegate(qApp, &m_receiver);
        for (int first = 0; menus && first < count; first += largestGroup)
            _addMenu(first, count);
        m_window.menuBar();
        auto *const content = new QWidget;
        content->setFocusPolicy(Qt::StrongFocus);
        m_window.setCentralWidget(content);
        m_window.show();
        content->setFocus();
        (void)QTest::qWaitForWindowActive(&m_window);
        QWKeyboardShortcuts::loadShortcuts();
    }

    ~Host() { platform::setDelegate(qApp, nullptr); }
    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;

    FakeSystem &system() { return m_system; }
    QMainWindow &window() { return m_window; }

private:
    void _addMenu(int first, int count)
    {
        QMenu *const menu = m_window.menuBar()->addMenu(QString("Group %1").arg(first));
        for (int i = first; i < std::min(first + largestGroup, count); ++i)
            platform::addMenuItem(*menu, QString("Shortcut %1").arg(i));
    }

    FakeSystem m_system;
    platform::SystemScope m_scope{m_system};
    Receiver m_receiver;
    QMainWindow m_window;
};

/// Keys spread over the whole set, so that no cache is warmer than in use.
std::deque<QKeyEvent> presses(int count, bool hits)
{
    std::deque<QKeyEvent> events;
    for (int i = 0; i < 256; ++i) {
        const int index = static_cast<int>(qint64(i) * 7919 % count);
        const auto character = static_cast<char16_t>(hits ? firstCharacter + index : 0x3100 + i);
        events.emplace_back(QEvent::KeyPress, character, Qt::NoModifier, QString(QChar(character)));
    }
    return events;
}

void perform(benchmark::State &state, int count, bool hits, bool menus)
{
    const Host host(count, menus);
    const auto events = presses(count, hits);
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(QWKeyboardShortcuts::performShortcut(events[++i % events.size()]));
    QCoreApplication::processEvents();
}

/// Qt's own way: an action with a key sequence for each, asked as its events are.
void performWithQt(benchmark::State &state, int count, bool hits)
{
    FakeSystem system;
    const platform::SystemScope scope(system); // in which no shortcuts of ours were loaded
    QMainWindow window;
    int triggered = 0;
    for (int i = 0; i < count; ++i) {
        auto *const action = new QAction(&window);
        action->setShortcut(QKeySequence(firstCharacter + i));
        QObject::connect(action, &QAction::triggered, [&] { benchmark::DoNotOptimize(++triggered); });
        window.addAction(action);
    }
    auto *const content = new QWidget;
    content->setFocusPolicy(Qt::StrongFocus);
    window.setCentralWidget(content);
    window.show();
    content->setFocus();
    (void)QTest::qWaitForWindowActive(&window);
    const auto events = presses(count, hits);
    std::size_t i = 0;
    for (auto _ : state) {
        const QKeyEvent &event = events[++i % events.size()];
        benchmark::DoNotOptimize(
            qt_sendShortcutOverrideEvent(content, 0, event.key(), event.modifiers(), event.text()));
    }
}

class StillWidget : public QWidget
{
protected:
    void mouseMoveEvent(QMouseEvent *event) override { event->accept(); }
};

/// @p hooked: as the host's application object delivers it; else as Qt's own would.
/// Nanoseconds for one of @p count events, with the hooks or without.
double deliveryTime(QWidget &widget, QEvent &event, bool hooked, int count)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < count; ++i) {
        if (hooked)
            qApp->notify(&widget, &event);
        else
            static_cast<QApplication *>(qApp)->QApplication::notify(&widget, &event);
    }
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count() / count;
}

/// What the hooks add: the median of the differences of short runs side by side, since the delivery itself varies by
/// many times that over a longer time.
void mouseMove(benchmark::State &state)
{
    constexpr int pairs = 401;
    constexpr int count = 2'000;
    StillWidget widget;
    QMouseEvent event(QEvent::MouseMove, {1, 1}, {1, 1}, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    std::vector<double> differences(pairs);
    for (auto _ : state)
        for (double &difference : differences) {
            const double without = deliveryTime(widget, event, false, count);
            const double with = deliveryTime(widget, event, true, count);
            const double withoutAgain = deliveryTime(widget, event, false, count);
            difference = with - (without + withoutAgain) / 2;
        }
    std::nth_element(differences.begin(), differences.begin() + pairs / 2, differences.end());
    state.counters["value"] = differences[pairs / 2];
}

void reload(benchmark::State &state, bool menus)
{
    Host host(many, menus);
    QVariantList changes;
    for (int i = 0; i < changed; ++i)
        changes.append(::state(i, many));
    auto &registry = QWKeyboardShortcuts::sharedInstance();
    host.system().writePropertyList(registry.currentShortcutsPath(), changes);
    for (auto _ : state)
        registry.loadCurrentShortcuts();
}

/// The two lists read and written into records, without menus, look-ups and conflicts.
void readLists(benchmark::State &state)
{
    const QByteArray definition = platform::PropertyList::toXml(factory(many, false));
    QVariantList changes;
    for (int i = 0; i < changed; ++i)
        changes.append(::state(i, many));
    const QByteArray current = platform::PropertyList::toXml(changes);
    for (auto _ : state) {
        benchmark::DoNotOptimize(platform::PropertyList::fromData(definition));
        benchmark::DoNotOptimize(platform::PropertyList::fromData(current));
    }
}
} // namespace

int main(int argc, char **argv)
{
    using benchmark::RegisterBenchmark;
    const QWApplication application(argc, argv);
    RegisterBenchmark("shortcut-miss/ours", perform, many, false, false);
    RegisterBenchmark("shortcut-miss/baseline", performWithQt, many, false);
    RegisterBenchmark("shortcut-hit/ours", perform, many, true, false);
    RegisterBenchmark("shortcut-hit/baseline", performWithQt, many, true);
    RegisterBenchmark("shortcut-miss-growth/ours", perform, many, false, false);
    RegisterBenchmark("shortcut-miss-growth/baseline", perform, 100, false, false);
    RegisterBenchmark("shortcut-hit-growth/ours", perform, many, true, false);
    RegisterBenchmark("shortcut-hit-growth/baseline", perform, 100, true, false);
    RegisterBenchmark("shortcut-hit-in-menu/ours", perform, many, true, true);
    RegisterBenchmark("mouse-move/ours", mouseMove)->Iterations(1);
    RegisterBenchmark("shortcuts-reload/ours", reload, false)->Unit(benchmark::kMillisecond);
    RegisterBenchmark("shortcuts-reload/baseline", readLists)->Unit(benchmark::kMillisecond);
    RegisterBenchmark("shortcuts-reload-menus/ours", reload, true)->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}

#include "bench_shortcuts.moc"
