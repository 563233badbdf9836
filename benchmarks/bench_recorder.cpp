#include "recorder/RecorderTools.h"

#include <QWUtilities/recorder/browse/DisplayedRecordings.h>

#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <QApplication>
#include <QCollator>
#include <QSortFilterProxyModel>
#include <QTableView>

#include <chrono>
#include <ctime>
#include <map>

namespace
{
constexpr int usualCount = 10'000;
constexpr int largeCount = 100'000;

/// A take as recorders tell it, some 800 bytes.
QVariantMap entry(int i)
{
    static const QStringList words{"bird", "dawn", "Straße", "interview", "room tone", "Café", "rain", "traffic"};
    const QDateTime created = QDateTime(QDate(2009, 3, 5), QTime(16, 7), Qt::UTC).addSecs(qint64(i * 7919) % 9'000'000);
    QVariantList formats{"aac", "podcast", "appleLossless", "flac", "vorbis"};
    formats.remove(i % 5);
    return {{"title", QString("Take %1").arg(i * 7919 % 1'000'003)},
            {"filename", QString("rec-%1-%2").arg(i).arg(i * 31 % 977)},
            {"creationDate", created},
            {"modificationDate", created.addSecs(i % 5000)},
            {"fileSize", 1'000'000LL + i * 7919LL % 90'000'000},
            {"length", 0.25 * (i * 31 % 40'000)},
            {"channels", 1LL + i % 2},
            {"quality", qlonglong(i % 3)},
            {"formats", formats},
            {"locked", i % 7 == 0},
            {"keywords", QString("%1 %2 reel %3").arg(words[i % 8], words[i / 8 % 8]).arg(i / 100)}};
}

const QByteArray &listOf(int count)
{
    static std::map<int, QByteArray> lists;
    QByteArray &list = lists[count];
    if (list.isEmpty()) {
        QVariantList entries;
        for (int i = 0; i < count; ++i)
            entries.append(entry(i));
        list = platform::PropertyList::toXml(entries);
    }
    return list;
}

/// Answers at once.
class ReadyLoader : public platform::UrlLoader
{
public:
    explicit ReadyLoader(int count)
        : m_body(listOf(count))
    {
    }

    platform::UrlResponse load(const platform::UrlRequest &) override
    {
        return {.status = 200, .body = m_body, .error = {}};
    }
    void cancelAll() override {}

private:
    QByteArray m_body;
};

qw::RecorderBrowser &nobody()
{
    static qw::RecorderBrowser browser;
    return browser;
}

std::shared_ptr<QWVeskDevice> unloaded()
{
    return QWVeskDevice::deviceWithNetServiceBrowser(std::make_shared<recordertest::TestService>("Vesk on Studio"),
                                                     nobody());
}

std::shared_ptr<QWVeskDevice> loaded(int count)
{
    ReadyLoader loader(count);
    auto device = unloaded();
    device->loadRecordings(loader);
    return device;
}

/// Processor time of this thread.
double threadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

template <class Work>
void measure(benchmark::State &state, Work work)
{
    const double before = threadSeconds();
    work();
    state.SetIterationTime(threadSeconds() - before);
}

void load(benchmark::State &state, int count)
{
    ReadyLoader loader(count);
    for (auto _ : state) {
        const auto device = unloaded();
        measure(state, [&] { device->loadRecordings(loader); });
        if (device->recordings().size() != static_cast<size_t>(count))
            state.SkipWithError("the list did not load");
    }
}

void parseWithLibplist(benchmark::State &state)
{
    const QByteArray &xml = listOf(usualCount);
    for (auto _ : state) {
        plist_t list = nullptr;
        measure(state, [&] { plist_from_xml(xml.constData(), static_cast<uint32_t>(xml.size()), &list); });
        plist_free(list);
    }
}

void show(benchmark::State &state)
{
    qw::DisplayedRecordings rows;
    rows.setSortDescriptor(qw::SortDescriptor{"title"});
    QTableView view;
    view.setModel(&rows);
    view.resize(700, 500);
    view.show();
    const auto device = loaded(usualCount);
    for (auto _ : state) {
        rows.refreshRecordings(nullptr);
        QCoreApplication::processEvents();
        measure(state, [&] {
            rows.refreshRecordings(device);
            view.grab();
        });
    }
}

/// The same by what Qt has for it.
class ProxyRows : public QSortFilterProxyModel
{
public:
    explicit ProxyRows(qw::DisplayedRecordings &rows)
        : m_rows(rows)
    {
        m_collator.setNumericMode(true);
        setSourceModel(&rows);
    }

    void setText(const QString &text)
    {
        m_text = text;
        invalidateFilter();
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex &) const override
    {
        return m_text.isEmpty() || m_rows.recording(row)->keywords().contains(m_text, Qt::CaseInsensitive);
    }

    bool lessThan(const QModelIndex &one, const QModelIndex &other) const override
    {
        return m_collator.compare(one.data().toString(), other.data().toString()) < 0;
    }

private:
    qw::DisplayedRecordings &m_rows;
    QCollator m_collator{QLocale(QLocale::English)};
    QString m_text;
};

/// Loaded once for all that only look at it.
const std::shared_ptr<QWVeskDevice> &largeRecorder()
{
    static const std::shared_ptr<QWVeskDevice> device = loaded(largeCount);
    return device;
}

struct Rows
{
    std::shared_ptr<QWVeskDevice> device = largeRecorder();
    qw::DisplayedRecordings rows;

    Rows() { rows.refreshRecordings(device); }

    /// Without anything made for an earlier sort.
    void forget()
    {
        rows.refreshRecordings(nullptr);
        rows.setSortDescriptor({});
        rows.refreshRecordings(device);
    }
};

const QStringList keystrokes{"r", "re", "ree", "reel", "reel 7", "reel 77"};

void filter(benchmark::State &state)
{
    Rows own;
    own.rows.setSortDescriptor(qw::SortDescriptor{"title"});
    int stroke = 0;
    for (auto _ : state)
        measure(state, [&] { own.rows.setSearchText(keystrokes[stroke++ % keystrokes.size()]); });
}

void filterWithProxy(benchmark::State &state)
{
    Rows own;
    ProxyRows proxy(own.rows);
    proxy.sort(0);
    int stroke = 0;
    for (auto _ : state)
        measure(state, [&] { proxy.setText(keystrokes[stroke++ % keystrokes.size()]); });
}

void sort(benchmark::State &state)
{
    Rows own;
    for (auto _ : state) {
        own.forget();
        measure(state, [&] { own.rows.setSortDescriptor(qw::SortDescriptor{"title"}); });
    }
}

void sortWithProxy(benchmark::State &state)
{
    Rows own;
    ProxyRows proxy(own.rows);
    for (auto _ : state) {
        proxy.sort(-1);
        measure(state, [&] { proxy.sort(0); });
    }
}

void reverse(benchmark::State &state)
{
    Rows own;
    own.rows.setSortDescriptor(qw::SortDescriptor{"title"});
    for (auto _ : state)
        measure(state, [&] { own.rows.setSortDescriptor(own.rows.sortDescriptor()->reversed()); });
}

void reverseWithProxy(benchmark::State &state)
{
    Rows own;
    ProxyRows proxy(own.rows);
    proxy.sort(0);
    Qt::SortOrder order = Qt::AscendingOrder;
    for (auto _ : state) {
        order = order == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
        measure(state, [&] { proxy.sort(0, order); });
    }
}
} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    using benchmark::RegisterBenchmark;
    const auto add = [](const char *name, auto function) {
        return RegisterBenchmark(name, function)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(0.2);
    };
    const auto loadUsual = [](benchmark::State &state) { load(state, usualCount); };
    add("recorder-load/ours", loadUsual);
    add("recorder-load/baseline", parseWithLibplist);
    add("recorder-load-large/ours", [](benchmark::State &state) { load(state, largeCount); });
    add("recorder-load-large/baseline", loadUsual);
    add("recorder-show/ours", show);
    add("recorder-filter/ours", filter);
    add("recorder-filter/baseline", filterWithProxy);
    add("recorder-sort/ours", sort);
    add("recorder-sort/baseline", sortWithProxy);
    add("recorder-reverse/ours", reverse);
    add("recorder-reverse/baseline", reverseWithProxy);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
