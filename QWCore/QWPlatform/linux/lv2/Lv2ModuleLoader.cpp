#include "Lv2Access.h"
#include "QWPlatform/linux/system/FrameworkFiles.h"

#include <QDebug>
#include <QFile>

#include <dlfcn.h>

namespace platform
{

namespace
{
Lv2Access *load()
{
    const QByteArray path = QFile::encodeName(FrameworkFiles::beside("Modules/libQWPlatformLV2.so"));
    void *module = ::dlopen(path.constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    const auto function =
        module ? reinterpret_cast<Lv2AccessFunction>(::dlsym(module, lv2AccessFunctionName)) : nullptr;
    if (function)
        return function();
    qWarning("LV2 plug-ins cannot be used: %s", ::dlerror());
    return nullptr;
}
} // namespace

Lv2Access *lv2Access()
{
    static Lv2Access *const access = load();
    return access;
}

} // namespace platform
