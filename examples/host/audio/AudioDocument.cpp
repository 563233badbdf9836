#include "AudioDocument.h"

namespace demo
{

AudioDocument::AudioDocument(QObject *parent)
    : QObject(parent)
    , m_history(1)
{
}

ClipPointer AudioDocument::result() const
{
    return steps().empty() ? source() : steps().back().result;
}

ClipPointer AudioDocument::before(size_t index) const
{
    return index == 0 ? source() : steps()[index - 1].result;
}

void AudioDocument::setSource(const QString &title, const QString &origin, ClipPointer source)
{
    State state;
    state.change = title;
    state.title = title;
    state.sourceTitle = title;
    state.origin = origin;
    state.source = std::move(source);
    _push(std::move(state));
}

void AudioDocument::addStep(Step step)
{
    State state = _state();
    state.change = step.name;
    state.steps.push_back(std::move(step));
    state.saved = false;
    _push(std::move(state));
}

void AudioDocument::_push(State state)
{
    m_history.resize(m_current + 1);
    m_history.push_back(std::move(state));
    if (m_history.size() > longestHistory + 1)
        m_history.erase(m_history.begin());
    m_current = m_history.size() - 1;
    Q_EMIT changed();
}

void AudioDocument::undo()
{
    if (!canUndo())
        return;
    --m_current;
    Q_EMIT changed();
}

void AudioDocument::redo()
{
    if (!canRedo())
        return;
    ++m_current;
    Q_EMIT changed();
}

QString AudioDocument::undoName() const
{
    return canUndo() ? _state().change : QString();
}

QString AudioDocument::redoName() const
{
    return canRedo() ? m_history[m_current + 1].change : QString();
}

bool AudioDocument::isModified() const
{
    return !_state().saved;
}

QString AudioDocument::replacedUnsaved() const
{
    for (size_t i = m_current; i > 0; --i) {
        if (m_history[i].steps.empty() && !m_history[i - 1].saved)
            return m_history[i - 1].title;
    }
    return {};
}

/// What is done from here on is done to the file that was written, also where Redo leads to it.
void AudioDocument::setSaved(const QString &title)
{
    m_history[m_current].saved = true;
    if (!title.isEmpty()) {
        m_history[m_current].title = title;
        for (size_t i = m_current + 1; i < m_history.size() && m_history[i].source == source(); ++i) {
            if (!m_history[i].saved)
                m_history[i].title = title;
        }
    }
    Q_EMIT changed();
}

} // namespace demo
