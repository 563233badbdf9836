#include "RecorderTools.h"

#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWUtilities/recorder/browse/RecorderList.h>

#include <QTest>

using namespace recordertest;
using State = qw::RecorderList::State;
using Coming = FakeNetServices::Coming;

namespace
{
/// A browser that wires the list as the window does, and notes what its view is told.
class WiredBrowser : public qw::RecorderBrowser, private qw::RecorderListView
{
public:
    void refreshDevices() override { list.refreshDevices(); }
    void deviceDidNotResolve(QWVeskDevice &device) override { list.deviceDidNotResolve(device); }

    QStringList names() const
    {
        QStringList names;
        for (const auto &device : list.devices())
            names.append(device->name());
        return names;
    }

    QString selectedName() const
    {
        const auto device = list.selectedDevice();
        return device ? device->name() : "none";
    }

    qw::RecorderList list{*this, *this};
    QStringList shown;  ///< By the outline.
    QStringList afresh; ///< What was put into another's place.
    int reloads = 0;
    int selections = 0;
    bool wasRefreshing = false;

private:
    void reloadDevices() override
    {
        ++reloads;
        shown = names();
        wasRefreshing = list.isRefreshingDevices();
    }

    void selectedDeviceDidChange() override { ++selections; }

    void deviceWasMadeAfresh(const QWVeskDevice &former, const std::shared_ptr<QWVeskDevice> &device) override
    {
        afresh.append(former.name() + (device->recordings().empty() ? " without takes" : " with takes"));
    }
};

QByteArray listOf(int takes)
{
    return platform::PropertyList::toXml(QVariantList(takes, QVariantMap{{"title", "Take"}}));
}
} // namespace

class tst_RecorderList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_system = std::make_unique<FakeSystem>();
        m_scope = std::make_unique<platform::SystemScope>(*m_system);
        m_browser = std::make_unique<WiredBrowser>();
    }

    void cleanup()
    {
        m_browser.reset();
        m_scope.reset();
        m_system.reset();
    }

    void searchesForWebServersOfTheLocalNetwork()
    {
        list().search();
        QCOMPARE(net().searches.size(), size_t(1));
        QCOMPARE(net().searches.front().type, "_http._tcp.");
        QCOMPARE(net().searches.front().domain, "local.");
        QCOMPARE(net().searching(), 1);
        list().search();
        QCOMPARE(net().searching(), 1);
        list().stop();
        QCOMPARE(net().searching(), 0);
        QCOMPARE(list().state(), State::Stopped);
    }

    void aRecorderIsShownWhenItsListIsThere()
    {
        list().search();
        net().announce("Vesk on Studio");
        QCOMPARE(m_browser->names(), QStringList{"Studio"});
        QCOMPARE(m_browser->reloads, 0);
        load("Studio", "192.0.2.7");
        QCOMPARE(m_browser->shown, QStringList{"Studio"});
        QVERIFY(m_browser->wasRefreshing);
        QVERIFY(!list().isRefreshingDevices());
        QCOMPARE(m_browser->selectedName(), "Studio");
    }

    void theSameServiceTwiceIsOneRecorderAndIsNotResolvedAgain()
    {
        list().search();
        net().announce("Vesk on Studio");
        net().announce("Vesk on Studio", {"192.0.2.9"}, 80);
        list().search(); // finds it once more, as an object of its own
        QCoreApplication::processEvents();
        QCOMPARE(m_browser->names(), QStringList{"Studio"});
        QCOMPARE(net().resolutions.size(), size_t(1));
    }

    void whatIsNoRecorderIsNeitherListedNorResolved()
    {
        list().search();
        for (int i = 0; i < 1000; ++i)
            net().announce(QStringLiteral("Printer %1").arg(i));
        QVERIFY(list().devices().empty());
        QVERIFY(net().resolutions.empty());
    }

    void aRecorderWithoutAListDisappears()
    {
        list().search();
        announceLoaded({"A", "B"});
        net().announce("Vesk on C", {"192.0.2.99"});
        QVERIFY(net().resolve("Vesk on C"));
        QTRY_COMPARE(m_browser->names(), QStringList({"A", "B"}));
        QCOMPARE(m_browser->shown, QStringList({"A", "B"}));
    }

    void aRemovedRecorderGoesAtOnceUnlessMoreIsComing()
    {
        list().search();
        announceLoaded({"A", "B", "C"});
        const int reloads = m_browser->reloads;
        net().withdraw("Vesk on A", Coming::More);
        QCOMPARE(m_browser->reloads, reloads);
        net().withdraw("Vesk on B");
        QCOMPARE(m_browser->reloads, reloads + 1);
        QCOMPARE(m_browser->shown, QStringList{"C"});
    }

    void theSelectionStaysAtItsIndex()
    {
        list().search();
        announceLoaded({"A", "B", "C"});
        list().setSelectedDevice(list().devices()[1]);
        net().withdraw("Vesk on B");
        QCOMPARE(m_browser->selectedName(), "C");
        net().withdraw("Vesk on C");
        QCOMPARE(m_browser->selectedName(), "A");
        net().withdraw("Vesk on A");
        QCOMPARE(m_browser->selectedName(), "none");
        QCOMPARE(list().selectedDeviceIndex(), 0x7FFFFFFFU);
    }

    void aRecorderBeforeTheSelectedOneThatGoesShiftsTheSelection()
    {
        list().search();
        announceLoaded({"A", "B", "C"});
        list().setSelectedDevice(list().devices()[1]);
        net().withdraw("Vesk on A");
        QCOMPARE(m_browser->selectedName(), "C");
    }

    void everyRefreshDeselectsTheTakes()
    {
        list().search();
        announceLoaded({"A"});
        const int selections = m_browser->selections;
        net().announce("Printer");
        net().withdraw("Printer");
        QCOMPARE(m_browser->selections, selections + 1);
    }

    void whatIsNotListedSelectsNone()
    {
        list().search();
        announceLoaded({"A"});
        const auto device = list().devices().front();
        net().withdraw("Vesk on A");
        list().setSelectedDevice(device);
        QCOMPARE(m_browser->selectedName(), "none");
    }

    void aRecorderThatDoesNotResolveStaysUntilItGoes()
    {
        list().search();
        net().announce("Vesk on A");
        QVERIFY(net().failToResolve("Vesk on A"));
        list().refreshDevices();
        QCOMPARE(m_browser->shown, QStringList{"A"});
        QVERIFY(list().selectedDevice()->recordings().empty());
        net().withdraw("Vesk on A");
        QCOMPARE(m_browser->shown, QStringList{});
    }

    void aRecorderLeavesWhileItResolvesOrLoads()
    {
        list().search();
        net().announce("Vesk on A");
        net().withdraw("Vesk on A");
        QVERIFY(!net().resolve("Vesk on A"));
        net().announce("Vesk on B");
        QVERIFY(net().resolve("Vesk on B"));
        const int reloads = m_browser->reloads;
        net().withdraw("Vesk on B");
        QTRY_COMPARE(m_browser->reloads, reloads + 2); // its load tells, too
        QVERIFY(m_browser->shown.isEmpty());
    }

    void tellsWhetherItLooksOrThereIsNone()
    {
        QCOMPARE(list().state(), State::Stopped);
        list().setPatience(std::chrono::milliseconds(0));
        list().search();
        QCOMPARE(list().state(), State::Looking);
        QTRY_COMPARE(list().state(), State::NoneFound);
        net().announce("Vesk on A");
        QCOMPARE(list().state(), State::Looking);
        QVERIFY(net().failToResolve("Vesk on A"));
        QCOMPARE(list().state(), State::NoneFound);
        net().failSearch();
        QCOMPARE(list().state(), State::NoNetService);
        QCOMPARE(net().searching(), 0);
        QCOMPARE(m_browser->names(), QStringList{"A"});
        list().search();
        QCOMPARE(list().state(), State::Looking);
    }

    void aReloadMakesRecordersAfreshInTheirPlaces()
    {
        list().search();
        announceLoaded({"A", "B"});
        list().setSelectedDevice(list().devices()[1]);
        const auto before = list().devices();
        m_system->urlLoader.answer("http://192.0.2.8:9000/list.plist", listOf(5));
        list().reload();
        net().announce("Vesk on B", {"192.0.2.8"}, 9000);
        QCoreApplication::processEvents();
        QCOMPARE(m_browser->names(), QStringList({"A", "B"}));
        QCOMPARE(m_browser->afresh, QStringList({"B without takes", "A without takes"}));
        QVERIFY(list().devices()[0] != before[0] && list().devices()[1] != before[1]);
        QVERIFY(net().resolve("Vesk on B"));
        QTRY_COMPARE(list().selectedDevice()->recordings().size(), size_t(5));
        QCOMPARE(list().selectedDevice()->address(), "http://192.0.2.8:9000");
        QCOMPARE(m_browser->selectedName(), "B");
    }

    void aReloadDropsWhatIsNotAnnouncedAnyMore()
    {
        list().search();
        announceLoaded({"A", "B"});
        list().stop();
        net().withdraw("Vesk on A");
        list().setPatience(std::chrono::milliseconds(0));
        list().reload();
        QTRY_COMPARE(m_browser->shown, QStringList{"B"});
        QCOMPARE(list().state(), State::Looking);
    }

    void aRecorderMadeAfreshThatDoesNotResolveShowsNoTakes()
    {
        list().search();
        announceLoaded({"A"});
        list().reload();
        QTRY_COMPARE(net().resolving(), QStringList{"Vesk on A"});
        const int reloads = m_browser->reloads;
        QVERIFY(net().failToResolve("Vesk on A"));
        QCOMPARE(m_browser->reloads, reloads + 1);
        QVERIFY(list().selectedDevice()->recordings().empty());
    }

    void moreRecordersThanAnybodyHasAreNotListed()
    {
        list().search();
        for (size_t i = 0; i < qw::RecorderList::mostDevices + 10; ++i)
            net().announce(QStringLiteral("Vesk on %1").arg(i));
        QCOMPARE(list().devices().size(), qw::RecorderList::mostDevices);
        net().withdraw("Vesk on 0");
        net().announce("Vesk on Studio");
        QCOMPARE(m_browser->names().back(), "Studio");
    }

    void aServiceThatFlapsIsListedOnce()
    {
        list().search();
        for (int i = 0; i < 100; ++i) {
            net().announce("Vesk on A");
            if (i % 2)
                net().resolve("Vesk on A");
            if (i % 5 == 0)
                list().reload();
            net().withdraw("Vesk on A", i % 3 ? Coming::Last : Coming::More);
        }
        announceLoaded({"A"});
        QCOMPARE(m_browser->names(), QStringList{"A"});
    }

    void theListEndsWhileRecordersLoad()
    {
        list().search();
        net().announce("Vesk on A");
        net().resolve("Vesk on A");
        m_browser.reset();
        QTRY_COMPARE(platform::System::current().backgroundWork().running(), 0);
        QCOMPARE(net().searching(), 0);
    }

private:
    qw::RecorderList &list() { return m_browser->list; }
    FakeNetServices &net() { return m_system->netServices; }

    /// Resolves the recorder and waits for its list of two takes.
    void load(const QString &name, const QString &address)
    {
        m_system->urlLoader.answer("http://" + address + ":8123/list.plist", listOf(2));
        const int reloads = m_browser->reloads;
        QVERIFY(net().resolve("Vesk on " + name));
        QTRY_VERIFY(m_browser->reloads > reloads);
    }

    void announceLoaded(const QStringList &names)
    {
        for (const QString &name : names) {
            net().announce("Vesk on " + name);
            load(name, "192.0.2.7");
        }
    }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
    std::unique_ptr<WiredBrowser> m_browser;
};

QTEST_GUILESS_MAIN(tst_RecorderList)
#include "tst_RecorderList.moc"
