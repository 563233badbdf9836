#include "BoundedOutput.h"

#include <QStringBuilder>

#include <algorithm>

namespace platform
{

BoundedOutput::BoundedOutput(qsizetype longest)
    : m_headShare(longest / 2)
    , m_tailShare(longest - m_headShare)
{
}

void BoundedOutput::append(const char *bytes, qsizetype count)
{
    const qsizetype toHead = std::min(count, m_headShare - m_head.size());
    m_head.append(bytes, toHead);
    m_tail.append(bytes + toHead, count - toHead);
    if (m_tail.size() / 2 > m_tailShare)
        _cutTail();
}

QByteArray BoundedOutput::text()
{
    if (m_tail.size() > m_tailShare)
        _cutTail();
    if (m_leftOut == 0)
        return m_head + m_tail;
    return m_head + "\n(" + QByteArray::number(m_leftOut) + " bytes left out)\n" + m_tail;
}

void BoundedOutput::_cutTail()
{
    m_leftOut += m_tail.size() - m_tailShare;
    m_tail = m_tail.last(m_tailShare);
}

} // namespace platform
