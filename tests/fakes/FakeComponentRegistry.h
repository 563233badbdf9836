#pragma once

#include <QWPlatform/devices/components/ComponentRegistry.h>

#include <vector>

/// Components that the test installs and uninstalls.
class FakeComponentRegistry : public platform::ComponentRegistry
{
public:
    struct Entry
    {
        platform::AudioComponent component;
        QByteArray name; ///< As the registry hands it out: length byte first.
        platform::ComponentLocation location;
    };

    /// Installs a component whose name is @p name ("Acme: Super Delay"); an empty one cannot be read.
    platform::AudioComponent add(const char (&type)[5], const char (&subtype)[5], const char (&manufacturer)[5],
                                 const QString &name);
    void add(const platform::AudioComponent &component, const QString &name);
    void remove(const platform::AudioComponent &component);

    std::vector<platform::AudioComponent> componentsOfType(quint32 type) override;
    QByteArray nameOfComponent(const platform::AudioComponent &component) override;
    std::optional<platform::ComponentLocation> locationOfComponent(const platform::AudioComponent &component) override;

    std::vector<Entry> entries;

private:
    const Entry *_find(const platform::AudioComponent &component) const;
};
