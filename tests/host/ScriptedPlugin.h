#pragma once

#include <QWPlatform/plugins/AudioPlugin.h>

#include <algorithm>
#include <deque>
#include <limits>

/// A plug-in that delays its input and answers as the test says.
class ScriptedPlugin : public platform::AudioPlugin
{
public:
    struct Script
    {
        int inputs = 2;
        int outputs = 2;
        int latency = 0;         ///< Told, and done.
        int framesUntilTold = 0; ///< For how long a latency of 0 is told instead.
        int wrongLatency = 0;    ///< Told instead of what is done, unless 0.
        int echo = 0;            ///< Frames after which the input comes once more, at half its level; 0: never.
        bool refusesToStart = false;
        bool neverEnds = false; ///< Hums on for ever.
        bool givesNoNumbers = false;
        bool instrument = false;
    };

    /// What all instances of one test did.
    struct Report
    {
        int opened = 0;
        int stopped = 0;
        qint64 frames = 0;
        std::vector<std::pair<qint64, platform::AudioPlugin::MidiEvent>> events; ///< With the frame of their block.
        std::vector<std::vector<float>> heard; ///< First sample of each input, one entry an instance.
    };

    ScriptedPlugin(Script script, Report &report)
        : m_script(script)
        , m_report(report)
        , m_lines(static_cast<size_t>(std::max(script.inputs, script.outputs)))
    {
        ++m_report.opened;
    }

    QString name() const override { return "Scripted"; }
    QString vendor() const override { return "Tests"; }
    bool isInstrument() const override { return m_script.instrument; }
    int inputCount() const override { return m_script.inputs; }
    int outputCount() const override { return m_script.outputs; }
    int latency() const override
    {
        return m_script.wrongLatency != 0           ? m_script.wrongLatency
               : m_frame < m_script.framesUntilTold ? 0
                                                    : m_script.latency;
    }
    bool start(double, int blockFrames) override
    {
        m_blockFrames = blockFrames;
        return !m_script.refusesToStart;
    }
    void stop() override { ++m_report.stopped; }

    void process(std::span<const float *const> inputs, std::span<float *const> outputs,
                 std::span<const MidiEvent> events) override
    {
        if (m_frame == 0)
            _noteFirstSamples(inputs);
        for (const MidiEvent &event : events)
            m_report.events.emplace_back(m_frame, event);
        for (size_t channel = 0; channel < outputs.size(); ++channel) {
            for (int frame = 0; frame < m_blockFrames; ++frame)
                outputs[channel][frame] = _next(channel, channel < inputs.size() ? inputs[channel][frame] : 0);
        }
        m_frame += m_blockFrames;
        m_report.frames += m_blockFrames;
    }

private:
    void _noteFirstSamples(std::span<const float *const> inputs)
    {
        auto &heard = m_report.heard.emplace_back();
        for (const float *input : inputs)
            heard.push_back(input[0]);
    }

    float _next(size_t channel, float input)
    {
        if (m_script.givesNoNumbers)
            return std::numeric_limits<float>::quiet_NaN();
        if (m_script.neverEnds)
            return 0.25f;
        auto &line = m_lines[channel];
        line.push_front(input);
        const auto past = [&](int frames) {
            return static_cast<size_t>(frames) < line.size() ? line[static_cast<size_t>(frames)] : 0.0f;
        };
        const float echo = m_script.echo > 0 ? past(m_script.latency + m_script.echo) / 2 : 0;
        return past(m_script.latency) + echo;
    }

    Script m_script;
    Report &m_report;
    int m_blockFrames = 0;
    std::vector<std::deque<float>> m_lines;
    qint64 m_frame = 0;
};
