#include "SoundTasks.h"

#include "../audio/SoundFile.h"
#include "../audio/TestTone.h"

#include <algorithm>
#include <cmath>

namespace demo::SoundTasks
{

namespace
{
constexpr double instrumentRate = 48000;
}

WorkResult resultOf(std::optional<Sound> sound, const QString &error, const QString &vendor)
{
    WorkResult result;
    result.vendor = vendor;
    result.error = error;
    if (sound)
        result.clip = std::make_shared<const Clip>(std::move(*sound));
    return result;
}

WorkResult readFile(const QString &path, WorkProgress &progress)
{
    QString error;
    auto sound = SoundFile::read(path, progress, &error);
    return resultOf(std::move(sound), error);
}

WorkResult makeTone()
{
    return resultOf(makeTestTone(), {});
}

WorkResult render(const PluginRenderer::Opener &opener, const ClipPointer &source, WorkProgress &progress)
{
    QString error;
    PluginRenderer renderer(opener, progress);
    auto sound = source ? renderer.apply(source->sound, &error) : renderer.play(instrumentRate, &error);
    return resultOf(std::move(sound), error, renderer.vendor());
}

FrameRange partOf(const Sound &sound, const TimeRange &selection)
{
    const auto frameAt = [&](double seconds) {
        return std::clamp(static_cast<qint64>(std::llround(seconds * sound.sampleRate)), qint64(0), sound.frames());
    };
    return selection.isEmpty() ? FrameRange{0, sound.frames()}
                               : FrameRange{frameAt(selection.begin), frameAt(selection.end)};
}

} // namespace demo::SoundTasks
