#pragma once

#include "ChannelPlan.h"
#include "Phrase.h"
#include "Sound.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace demo
{

class WorkProgress;

/// Runs a sound, or a phrase of notes, through a plug-in off line. The plug-in's latency is taken out, and its tail is
/// followed until it has died away. One thread from start to end, any one.
class PluginRenderer
{
public:
    /// Opens one more instance; null, and the reason in the text, when the plug-in refuses.
    using Opener = std::function<std::unique_ptr<platform::AudioPlugin>(QString *error)>;

    static constexpr int blockFrames = 512;
    static constexpr double longestTail = 8; ///< Seconds; a sound that still goes on then is faded out.

    PluginRenderer(Opener opener, WorkProgress &progress);

    /// @p sound through an effect. None, and a sentence in @p error, when the plug-in refuses; cancelled: none, and no
    /// sentence.
    std::optional<Sound> apply(const Sound &sound, QString *error);

    /// The phrase played by an instrument, in @p sampleRate Hz.
    std::optional<Sound> play(double sampleRate, QString *error);

    /// Vendor of the plug-in that was opened last.
    const QString &vendor() const { return m_vendor; }

private:
    struct Pass;

    bool _run(Pass &pass, const Sound &input, const Phrase &phrase, Sound &result);
    bool _runBlocks(Pass &pass, const Sound &input, const Phrase &phrase);
    std::unique_ptr<platform::AudioPlugin> _open(double sampleRate, QString *error);

    Opener m_opener;
    WorkProgress &m_progress;
    QString m_vendor;
};

} // namespace demo
