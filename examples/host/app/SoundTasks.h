#pragma once

#include "SoundWork.h"

#include "../audio/PluginRenderer.h"
#include "../audio/SoundEdits.h"
#include "../views/TimeRange.h"

namespace demo
{

/// What workers do with sounds. Any thread.
namespace SoundTasks
{

/// Without a @p sound: @p error, a sentence or "".
WorkResult resultOf(std::optional<Sound> sound, const QString &error, const QString &vendor = {});

WorkResult readFile(const QString &path, WorkProgress &progress);
WorkResult makeTone();

/// The plug-in applied to @p source, or, where that is null, the instrument's short phrase.
WorkResult render(const PluginRenderer::Opener &opener, const ClipPointer &source, WorkProgress &progress);

/// All of it where nothing is selected.
FrameRange partOf(const Sound &sound, const TimeRange &selection);

} // namespace SoundTasks

} // namespace demo
