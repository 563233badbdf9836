#pragma once

#include <QWPlatform/appkit/FilePanels.h>

#include <utility>
#include <vector>

/// Panels that stay open until the test ends them.
class FakeFilePanels : public platform::FilePanels
{
public:
    using SaveEnd = std::function<void(int, const QString &)>;
    using OpenEnd = std::function<void(int, const QStringList &)>;

    void beginSavePanel(const platform::SavePanelRequest &request, SaveEnd didEnd) override
    {
        saves.push_back(request);
        m_saveEnd = std::move(didEnd);
    }

    void beginOpenPanel(const platform::OpenPanelRequest &request, OpenEnd didEnd) override
    {
        opens.push_back(request);
        m_openEnd = std::move(didEnd);
    }

    void endSave(int code, const QString &path = {}) { std::exchange(m_saveEnd, {})(code, path); }
    void endOpen(int code, const QStringList &paths = {}) { std::exchange(m_openEnd, {})(code, paths); }

    std::vector<platform::SavePanelRequest> saves;
    std::vector<platform::OpenPanelRequest> opens;

private:
    SaveEnd m_saveEnd;
    OpenEnd m_openEnd;
};
