#include "AvahiLoader.h"

#include "QWPlatform/linux/desktop/BusProbe.h"
#include "QWPlatform/linux/system/FrameworkFiles.h"
#include "ServiceExchange.h"

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

AvahiModule loadAvahiModule()
{
    const QByteArray path = QFile::encodeName(FrameworkFiles::beside("Modules/libQWPlatformAvahi.so"));
    void *module = ::dlopen(path.constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    const auto function = module ? reinterpret_cast<AvahiFunction>(::dlsym(module, avahiFunctionName)) : nullptr;
    return {function, function ? std::string() : std::string(::dlerror())};
}
} // namespace

void speakToAvahi(ServiceExchange &exchange)
{
    static const AvahiModule module = loadAvahiModule();
    if (!module.function)
        return exchange.publishFailure(module.error);
    if (!busAnswers(systemBus(), patienceWithSystemBus)) // the library would wait for a minute
        return exchange.publishFailure("the system's message bus does not answer");
    module.function(exchange);
}

} // namespace platform
