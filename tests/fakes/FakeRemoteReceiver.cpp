#include "FakeRemoteReceiver.h"

using namespace platform;

namespace
{
struct Callout
{
    HidCallback callback = nullptr;
    void *target = nullptr;
    void *refcon = nullptr;

    void operator()(qint32 result) const
    {
        if (callback)
            callback(target, result, refcon, nullptr);
    }
};
} // namespace

class FakeRemoteReceiver::Queue : public HidQueue
{
public:
    explicit Queue(FakeRemoteReceiver &receiver)
        : m_receiver(receiver)
    {
        m_receiver.m_queue = this;
    }

    ~Queue() override
    {
        m_receiver._step("dispose");
        if (m_receiver.m_queue == this)
            m_receiver.m_queue = nullptr;
    }

    bool create(int depth) override { return m_receiver._step("create", QString::number(depth)); }

    bool addElement(quint32 cookie) override
    {
        const bool works = m_added++ != m_receiver.failingElement;
        return m_receiver._step("addElement", QString::number(cookie)) && works;
    }

    bool createAsyncEventSource() override { return m_receiver._step("createAsyncEventSource"); }

    bool setEventCallout(HidCallback callback, void *target, void *refcon) override
    {
        callout = {callback, target, refcon};
        return m_receiver._step("setEventCallout", target ? "with a target" : "");
    }

    void addSourceToRunLoop() override { m_receiver._step("addSourceToRunLoop"); }
    bool start() override { return m_isStarted = m_receiver._step("start"); }

    void stop() override
    {
        m_receiver._step("stop");
        m_isStarted = false;
    }

    bool isStarted() const override { return m_isStarted; }

    std::optional<HidEvent> nextEvent() override
    {
        if (m_receiver.events.empty() || m_receiver.broken.contains("nextEvent"))
            return std::nullopt;
        HidEvent event = std::move(m_receiver.events.front());
        m_receiver.events.pop_front();
        return event;
    }

    Callout callout;

private:
    FakeRemoteReceiver &m_receiver;
    int m_added = 0;
    bool m_isStarted = false;
};

class FakeRemoteReceiver::Interface : public HidInterface
{
public:
    explicit Interface(FakeRemoteReceiver &receiver)
        : m_receiver(receiver)
    {
    }

    ~Interface() override
    {
        m_receiver._step("releaseInterface");
        _giveBack();
    }

    bool openExclusively() override
    {
        if (!m_receiver._step("openExclusively") || m_receiver.m_interface)
            return false; // also while an earlier one holds the receiver
        m_receiver.m_interface = this;
        return true;
    }

    void close() override
    {
        m_receiver._step("close");
        _giveBack();
    }

    std::optional<QVariantList> copyMatchingElements() override
    {
        return m_receiver._step("copyMatchingElements") ? std::optional(m_receiver.elements) : std::nullopt;
    }

    std::unique_ptr<HidQueue> allocateQueue() override
    {
        return m_receiver._step("allocateQueue") ? std::make_unique<Queue>(m_receiver) : nullptr;
    }

    void setRemovalCallback(HidCallback callback, void *target, void *refcon) override
    {
        removal = {callback, target, refcon};
    }

    Callout removal;

private:
    void _giveBack()
    {
        if (m_receiver.m_interface == this)
            m_receiver.m_interface = nullptr;
    }

    FakeRemoteReceiver &m_receiver;
};

class FakeRemoteReceiver::Plugin : public HidPlugin
{
public:
    explicit Plugin(FakeRemoteReceiver &receiver)
        : m_receiver(receiver)
    {
    }

    ~Plugin() override { m_receiver._step("releasePlugin"); }

    std::unique_ptr<HidInterface> queryInterface() override
    {
        return m_receiver._step("queryInterface") ? std::make_unique<Interface>(m_receiver) : nullptr;
    }

private:
    FakeRemoteReceiver &m_receiver;
};

std::optional<QString> FakeRemoteReceiver::firstServiceMatching(const QString &className)
{
    if (real)
        return real->firstServiceMatching(className);
    return _step("firstServiceMatching", className) ? std::optional<QString>("receiver") : std::nullopt;
}

std::unique_ptr<HidPlugin> FakeRemoteReceiver::createPlugin(const QString &service)
{
    if (real)
        return real->createPlugin(service);
    return _step("createPlugin", service) ? std::make_unique<Plugin>(*this) : nullptr;
}

void FakeRemoteReceiver::send(std::deque<HidEvent> more)
{
    if (!m_queue || !m_queue->isStarted())
        return;
    std::move(more.begin(), more.end(), std::back_inserter(events));
    callOut(0);
}

void FakeRemoteReceiver::callOut(qint32 result) const
{
    if (m_queue)
        Callout(m_queue->callout)(result); // a copy: the queue may go meanwhile
}

void FakeRemoteReceiver::remove() const
{
    if (m_interface)
        Callout(m_interface->removal)(0);
}

QVariantList FakeRemoteReceiver::elementsWithCookies(const QVariantList &cookies)
{
    QVariantList children;
    for (const QVariant &cookie : cookies)
        children += QVariantMap{{"ElementCookie", cookie}};
    return {QVariantMap{{"Elements", children}}};
}

bool FakeRemoteReceiver::_step(const QString &name, const QString &argument)
{
    calls += argument.isEmpty() ? name : QString(name + ' ' + argument);
    return !broken.contains(name);
}
