#include "Lv2Access.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace platform
{

namespace
{
/// "Modules/…" beside the library that holds this code.
QString modulePath()
{
    static const char inThisLibrary = 0;
    Dl_info info{};
    if (!::dladdr(&inThisLibrary, &info))
        return {};
    const QString library = QFileInfo(QFile::decodeName(info.dli_fname)).canonicalFilePath();
    return QFileInfo(library).path() + "/Modules/libQWPlatformLV2.so";
}

Lv2Access *load()
{
    void *module = ::dlopen(QFile::encodeName(modulePath()).constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
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
