#include "ComponentUnit.h"

#include "PluginBinary.h"

#include <dlfcn.h>

namespace platform
{

namespace
{
using FactoryFunction = void *(*)(const AudioComponent *component);

FactoryFunction factoryFunction(const ComponentLocation &location, QString *error)
{
    if (location.factoryFunction.isEmpty()) {
        *error = QStringLiteral("The bundle names no factory function.");
        return nullptr;
    }
    const QString path = PluginBinary::inBundle(location.path);
    if (path.isEmpty()) {
        *error = QStringLiteral("The bundle holds no library for this machine.");
        return nullptr;
    }
    void *library = PluginBinary::load(path, error);
    void *function = library ? ::dlsym(library, location.factoryFunction.toUtf8().constData()) : nullptr;
    if (library && !function)
        *error = "The library has no function \"" + location.factoryFunction + "\".";
    return reinterpret_cast<FactoryFunction>(function);
}
} // namespace

static_assert(sizeof(AudioComponent) == 20, "factory functions are handed the record itself");

std::unique_ptr<ComponentUnit> ComponentUnit::open(const AudioComponent &component, const ComponentLocation &location,
                                                   const QString &name, QString *error)
{
    const FactoryFunction make = factoryFunction(location, error);
    if (!make)
        return nullptr;
    if (make(&component))
        return std::unique_ptr<ComponentUnit>(new ComponentUnit(component, name));
    *error = QStringLiteral("The factory function gave no instance.");
    return nullptr;
}

ComponentUnit::ComponentUnit(const AudioComponent &component, QString name)
    : m_component(component)
    , m_name(std::move(name))
{
}

bool ComponentUnit::isInstrument() const
{
    return m_component.type == fourCharCode("aumu");
}

bool ComponentUnit::start(double, int)
{
    return true;
}

void ComponentUnit::process(std::span<const float *const>, std::span<float *const>, std::span<const MidiEvent>) {}

void ComponentUnit::stop() {}

} // namespace platform
