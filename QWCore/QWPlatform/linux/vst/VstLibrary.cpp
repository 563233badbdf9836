#include "VstLibrary.h"

#include "QWPlatform/linux/plugins/PluginBinary.h"
#include "VstHost.h"

#include <dlfcn.h>

namespace platform
{

namespace
{
constexpr const char *entryNames[] = {"VSTPluginMain", "main"};
}

VstLibrary::VstLibrary(const QString &path)
{
    void *library = PluginBinary::load(path, &m_error);
    if (!library)
        return;
    for (const char *name : entryNames)
        if (!m_entry)
            m_entry = reinterpret_cast<vst::EntryFunction>(::dlsym(library, name));
    if (!m_entry)
        m_error = QStringLiteral("The library is no VST plug-in.");
}

vst::Effect *VstLibrary::makeEffect() const
{
    vst::Effect *effect = m_entry ? m_entry(VstHost::callback) : nullptr;
    return effect && effect->magic == vst::magic && effect->dispatcher ? effect : nullptr;
}

} // namespace platform
