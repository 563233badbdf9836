#include "FakeComponentRegistry.h"

#include <algorithm>

using platform::AudioComponent;

namespace
{
QByteArray pascalString(const QString &name)
{
    const QByteArray text = name.toUtf8();
    if (text.isEmpty())
        return {};
    return QByteArray(1, static_cast<char>(std::min<qsizetype>(text.size(), 255))) + text;
}
} // namespace

AudioComponent FakeComponentRegistry::add(const char (&type)[5], const char (&subtype)[5],
                                          const char (&manufacturer)[5], const QString &name)
{
    using platform::fourCharCode;
    const AudioComponent component{fourCharCode(type), fourCharCode(subtype), fourCharCode(manufacturer), 0, 0};
    add(component, name);
    return component;
}

void FakeComponentRegistry::add(const AudioComponent &component, const QString &name)
{
    entries.push_back({component, pascalString(name), {}});
}

void FakeComponentRegistry::remove(const AudioComponent &component)
{
    std::erase_if(entries, [&](const Entry &entry) { return entry.component == component; });
}

std::vector<AudioComponent> FakeComponentRegistry::componentsOfType(quint32 type)
{
    std::vector<AudioComponent> components;
    for (const Entry &entry : entries)
        if (entry.component.type == type)
            components.push_back(entry.component);
    return components;
}

QByteArray FakeComponentRegistry::nameOfComponent(const AudioComponent &component)
{
    const Entry *entry = _find(component);
    return entry ? entry->name : QByteArray();
}

std::optional<platform::ComponentLocation> FakeComponentRegistry::locationOfComponent(const AudioComponent &component)
{
    const Entry *entry = _find(component);
    return entry ? std::optional(entry->location) : std::nullopt;
}

const FakeComponentRegistry::Entry *FakeComponentRegistry::_find(const AudioComponent &component) const
{
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const Entry &entry) { return entry.component == component; });
    return found == entries.end() ? nullptr : &*found;
}
