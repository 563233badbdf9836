#include "AvahiLoader.h"

#include "QWPlatform/linux/desktop/BusProbe.h"
#include "QWPlatform/linux/system/FrameworkFiles.h"

#include <QFile>

#include <dlfcn.h>

namespace platform
{

namespace
{
constexpr auto patienceWithSystemBus = std::chrono::seconds(2);

QByteArray systemBus()
{
    const QByteArray configured = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    return configured.isEmpty() ? "unix:path=/run/dbus/system_bus_socket" : configured;
}

struct AvahiModule
{
    AvahiFunction function = nullptr;
    std::string error;
};

AvahiModule loadAvahi()
{
    const QByteArray path = QFile::encodeName(FrameworkFiles::beside("Modules/libQWPlatformAvahi.so"));
    void *module = ::dlopen(path.constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    const auto function = module ? reinterpret_cast<AvahiFunction>(::dlsym(module, avahiFunctionName)) : nullptr;
    return {function, function ? std::string() : std::string(::dlerror())};
}

const AvahiModule &avahiModule()
{
    static const AvahiModule module = loadAvahi();
    return module;
}
} // namespace

ServiceSession::Conversation avahiConversation()
{
    const AvahiModule avahi = avahiModule();
    return [avahi, bus = systemBus()](ServiceExchange &exchange) {
        if (!avahi.function)
            return exchange.publishFailure(avahi.error);
        if (!busAnswers(bus, patienceWithSystemBus)) // the library would wait for a minute
            return exchange.publishFailure("the system's message bus does not answer");
        avahi.function(exchange);
    };
}

} // namespace platform
