#pragma once

#include <QWPlatform/plugins/AudioPlugin.h>
#include <QWPlatform/plugins/PluginLoader.h>

#include <functional>

/// Opens what the test provides; nothing by default.
class FakePluginLoader : public platform::PluginLoader
{
public:
    std::unique_ptr<platform::AudioPlugin> openComponent(const platform::AudioComponent &component,
                                                         QString *error) override
    {
        return opened(makeComponent ? makeComponent(component) : nullptr, error);
    }

    std::unique_ptr<platform::AudioPlugin> openVST(const QString &path, QString *error) override
    {
        return opened(makeVST ? makeVST(path) : nullptr, error);
    }

    std::function<std::unique_ptr<platform::AudioPlugin>(const platform::AudioComponent &)> makeComponent;
    std::function<std::unique_ptr<platform::AudioPlugin>(const QString &)> makeVST;

private:
    static std::unique_ptr<platform::AudioPlugin> opened(std::unique_ptr<platform::AudioPlugin> plugin, QString *error)
    {
        if (!plugin && error)
            *error = QStringLiteral("The plug-in refused.");
        return plugin;
    }
};
