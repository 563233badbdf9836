#pragma once

#include "../audio/SoundFile.h"

#include <QWPlatform/appkit/FilePanels.h>

namespace demo
{

class AudioDocument;

/// In which format the user saves, and under what name.
namespace SaveRequest
{

/// As chosen in this run or an earlier one.
SoundFile::Format format();

/// @p number is that of a SoundFile::Format.
void setFormat(qlonglong number);

/// Of the result of @p document: the name of its sound, with the last effect when that is not saved yet.
platform::SavePanelRequest make(const AudioDocument &document);

} // namespace SaveRequest

} // namespace demo
