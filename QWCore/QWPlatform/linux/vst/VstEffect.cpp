#include "VstEffect.h"

#include "VstLibrary.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace platform
{

namespace
{
constexpr int mostChannels = 1024;
constexpr std::size_t textSize = 4096; // plug-ins write past the 32 or 64 bytes that were agreed on

bool isCount(std::int32_t count)
{
    return count >= 0 && count <= mostChannels;
}
} // namespace

std::unique_ptr<VstEffect> VstEffect::open(const QString &path, QString *error)
{
    const VstLibrary library(path);
    *error = library.error();
    if (!error->isEmpty())
        return nullptr;
    vst::Effect *effect = library.makeEffect();
    if (!effect) {
        *error = QStringLiteral("The plug-in gave no instance.");
        return nullptr;
    }
    std::unique_ptr<VstEffect> opened(new VstEffect(effect, path));
    if (opened->_isPlausible())
        return opened;
    *error = QStringLiteral("The plug-in describes itself wrongly.");
    return nullptr;
}

VstEffect::VstEffect(vst::Effect *effect, const QString &path)
    : m_effect(effect)
{
    m_effect->host = reinterpret_cast<std::intptr_t>(&m_host);
    _dispatch(vst::opcode::open);
    _dispatch(vst::opcode::setSampleRate, 0, nullptr, static_cast<float>(m_host.sampleRate));
    _dispatch(vst::opcode::setBlockSize, m_host.blockFrames);
    m_category = static_cast<int>(_dispatch(vst::opcode::category));
    m_vendor = _text(vst::opcode::vendor);
    for (const std::int32_t opcode : {vst::opcode::effectName, vst::opcode::product})
        if (m_name.isEmpty())
            m_name = _text(opcode);
    if (m_name.isEmpty())
        m_name = QFileInfo(path).completeBaseName();
    if (m_category == vst::category::shell || !_isPlausible())
        return;
    m_inputCount = m_effect->inputCount;
    m_outputCount = m_effect->outputCount;
}

VstEffect::~VstEffect()
{
    VstEffect::stop();
    _dispatch(vst::opcode::close);
}

bool VstEffect::_isPlausible() const
{
    const bool canProcess = m_effect->processReplacing || m_effect->process || m_category == vst::category::shell;
    return isCount(m_effect->inputCount) && isCount(m_effect->outputCount) && canProcess;
}

bool VstEffect::isInstrument() const
{
    return (m_effect->flags & vst::flag::isSynth) != 0 || m_category == vst::category::synth;
}

int VstEffect::latency() const
{
    return std::max(m_effect->initialDelay, 0);
}

bool VstEffect::start(double sampleRate, int blockFrames)
{
    stop();
    m_host.sampleRate = sampleRate;
    m_host.blockFrames = blockFrames;
    m_host.transport.start(sampleRate);
    _dispatch(vst::opcode::setSampleRate, 0, nullptr, static_cast<float>(sampleRate));
    _dispatch(vst::opcode::setBlockSize, blockFrames);
    _dispatch(vst::opcode::resume, 1);
    m_isRunning = true;
    return true;
}

void VstEffect::process(std::span<const float *const> inputs, std::span<float *const> outputs,
                        std::span<const MidiEvent> events)
{
    if (!events.empty())
        _dispatch(vst::opcode::processEvents, 0, m_events.with(events));
    m_inputs.clear();
    for (const float *input : inputs)
        m_inputs.push_back(const_cast<float *>(input)); // only read from
    m_outputs.assign(outputs.begin(), outputs.end());
    if (m_category == vst::category::shell)
        return;
    const bool replaces =
        m_effect->processReplacing && (m_effect->flags & vst::flag::hasReplacing || !m_effect->process);
    for (float *output : m_outputs)
        if (!replaces)
            std::fill_n(output, m_host.blockFrames, 0.0F);
    const auto function = replaces ? m_effect->processReplacing : m_effect->process;
    function(m_effect, m_inputs.data(), m_outputs.data(), m_host.blockFrames);
    m_host.transport.advance(m_host.blockFrames);
}

void VstEffect::stop()
{
    if (!m_isRunning)
        return;
    m_isRunning = false;
    m_host.transport.stop();
    _dispatch(vst::opcode::resume, 0);
}

std::intptr_t VstEffect::_dispatch(std::int32_t opcode, std::intptr_t value, void *pointer, float option) const
{
    return m_effect->dispatcher(m_effect, opcode, 0, value, pointer, option);
}

QString VstEffect::_text(std::int32_t opcode) const
{
    std::array<char, textSize> buffer{};
    _dispatch(opcode, 0, buffer.data());
    buffer.back() = 0;
    return QString::fromUtf8(buffer.data()).simplified();
}

} // namespace platform
