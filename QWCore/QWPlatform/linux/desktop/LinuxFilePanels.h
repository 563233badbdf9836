#pragma once

#include "QWPlatform/appkit/FilePanels.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// The desktop's own file dialogs where Qt knows them, else Qt's. They open in the folder used last, which is kept in
/// user defaults under "NSNavLastRootDirectory".
class QWPLATFORM_TEST_EXPORT LinuxFilePanels : public FilePanels
{
public:
    void beginSavePanel(const SavePanelRequest &request, std::function<void(int, const QString &)> didEnd) override;
    void beginOpenPanel(const OpenPanelRequest &request, std::function<void(int, const QStringList &)> didEnd) override;
};

} // namespace platform
