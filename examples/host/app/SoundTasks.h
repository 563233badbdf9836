#pragma once

#include "SoundWork.h"

#include "../audio/PluginRenderer.h"
#include "../audio/SoundEdits.h"
#include "../audio/SoundFile.h"
#include "../views/TimeRange.h"

namespace demo
{

/// What workers do with sounds. Any thread.
namespace SoundTasks
{

/// Without a @p sound: @p error, a sentence or "". @p origin, which may be null, is what the sound was made from.
WorkResult resultOf(const std::optional<Sound> &sound, const QString &error, const QString &vendor = {},
                    const ClipPointer &origin = nullptr);

WorkResult readFile(const QString &path, WorkProgress &progress);
WorkResult makeTone();

/// What @p edit makes of a part of @p source; neither clip nor error where nothing is left of it.
WorkResult edit(const ClipPointer &source, FrameRange part,
                const std::function<void(Sound &sound, FrameRange part)> &edit);

/// The plug-in applied to a part of @p source.
WorkResult apply(const PluginRenderer::Opener &opener, const ClipPointer &source, FrameRange part,
                 WorkProgress &progress);

/// The instrument's short phrase.
WorkResult play(const PluginRenderer::Opener &opener, WorkProgress &progress);

/// Brings back the clip when it is written.
WorkResult writeFile(const QString &path, const ClipPointer &clip, SoundFile::Format format, WorkProgress &progress);

/// All of it where nothing is selected; empty where the selection lies behind the end.
FrameRange partOf(const SampleStore &store, const TimeRange &selection);

} // namespace SoundTasks

} // namespace demo
