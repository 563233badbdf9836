#include "TrialReport.h"

#include <QWPlatform/foundation/PropertyList.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <sys/mman.h>

TrialReport::Pointer TrialReport::make()
{
    void *const memory =
        ::mmap(nullptr, sizeof(TrialReport), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return Pointer(memory == MAP_FAILED ? nullptr : new (memory) TrialReport);
}

void TrialReport::Unmap::operator()(TrialReport *report) const
{
    ::munmap(report, sizeof *report);
}

void TrialReport::tell(const TrialOutcome &outcome)
{
    if (!outcome.error.isEmpty())
        return _tell(outcome.isFinal ? Verdict::Failed : Verdict::Premature, outcome.error.toUtf8());
    const QByteArray list = platform::PropertyList::toXml(outcome.state);
    if (list.isEmpty() || static_cast<std::size_t>(list.size()) > longestText)
        _tell(Verdict::Failed, "What the plug-in says of itself cannot be written down.");
    else
        _tell(Verdict::Passed, list);
}

QByteArray TrialReport::text() const
{
    return {m_text, static_cast<qsizetype>(std::min(m_size.load(), longestText))};
}

void TrialReport::_tell(Verdict verdict, const QByteArray &text)
{
    m_size = std::min(static_cast<std::size_t>(text.size()), longestText);
    std::memcpy(m_text, text.constData(), m_size);
    m_verdict = verdict;
}
