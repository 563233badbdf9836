#include "SoundTasks.h"

#include "../audio/TestTone.h"

#include <algorithm>
#include <cmath>

namespace demo::SoundTasks
{

namespace
{
constexpr double instrumentRate = 48000;
}

WorkResult resultOf(const std::optional<Sound> &sound, const QString &error, const QString &vendor,
                    const ClipPointer &origin)
{
    WorkResult result;
    result.vendor = vendor;
    result.error = error;
    if (sound)
        result.clip = std::make_shared<const Clip>(*sound, origin.get());
    return result;
}

WorkResult readFile(const QString &path, WorkProgress &progress)
{
    QString error;
    const auto sound = SoundFile::read(path, progress, &error);
    return resultOf(sound, error);
}

WorkResult makeTone()
{
    return resultOf(makeTestTone(), {});
}

WorkResult edit(const ClipPointer &source, FrameRange part, const std::function<void(Sound &, FrameRange)> &edit)
{
    Sound sound = source->store.sound();
    edit(sound, part);
    return sound.isEmpty() ? WorkResult() : resultOf(sound, {}, {}, source);
}

WorkResult apply(const PluginRenderer::Opener &opener, const ClipPointer &source, FrameRange part,
                 WorkProgress &progress)
{
    QString error;
    PluginRenderer renderer(opener, progress);
    Sound whole = source->store.sound();
    const bool isAll = part.isAllOf(whole);
    const auto changed =
        isAll ? renderer.apply(whole, &error) : renderer.apply(SoundEdits::cutOut(whole, part), &error);
    if (isAll || !changed)
        return resultOf(changed, error, renderer.vendor(), source);
    SoundEdits::replace(whole, part, *changed);
    return resultOf(whole, {}, renderer.vendor(), source);
}

WorkResult play(const PluginRenderer::Opener &opener, WorkProgress &progress)
{
    QString error;
    PluginRenderer renderer(opener, progress);
    const auto sound = renderer.play(instrumentRate, &error);
    return resultOf(sound, error, renderer.vendor());
}

WorkResult writeFile(const QString &path, const ClipPointer &clip, SoundFile::Format format, WorkProgress &progress)
{
    WorkResult result;
    if (SoundFile::write(path, clip->store.sound(), format, progress, &result.error))
        result.clip = clip;
    return result;
}

FrameRange partOf(const SampleStore &store, const TimeRange &selection)
{
    const auto frameAt = [&](double seconds) {
        return std::clamp(static_cast<qint64>(std::llround(seconds * store.sampleRate())), qint64(0), store.frames());
    };
    return selection.isEmpty() ? FrameRange{0, store.frames()}
                               : FrameRange{frameAt(selection.begin), frameAt(selection.end)};
}

} // namespace demo::SoundTasks
