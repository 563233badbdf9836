#include "SaveRequest.h"

#include "../audio/AudioDocument.h"
#include "HostSettings.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QFileInfo>

namespace demo::SaveRequest
{

namespace
{
constexpr auto formatKey = "Save Format";

platform::UserDefaults &defaults()
{
    return platform::System::current().userDefaults();
}
} // namespace

SoundFile::Format format()
{
    const qlonglong stored = defaults().integer(formatKey);
    const bool known = stored >= 0 && stored <= static_cast<qlonglong>(SoundFile::Format::Aiff16);
    return known ? static_cast<SoundFile::Format>(stored) : SoundFile::Format::WavFloat;
}

void setFormat(qlonglong number)
{
    defaults().setObject(formatKey, number);
}

platform::SavePanelRequest make(const AudioDocument &document)
{
    platform::SavePanelRequest request;
    request.title = platform::localized("Save Sound");
    request.suggestedName = QFileInfo(document.title()).completeBaseName();
    if (document.isModified() && HostSettings::isOn(HostSettings::effectNameKey))
        request.suggestedName += " " + document.steps().back().name;
    request.requiredFileType = SoundFile::extension(format());
    request.otherFileTypes = SoundFile::extensions();
    return request;
}

} // namespace demo::SaveRequest
