#pragma once

#include <QByteArray>

namespace platform
{

/// Bytes of which, when they become too many, only the beginning and the end are kept, half each.
class BoundedOutput
{
public:
    explicit BoundedOutput(qsizetype longest);

    void append(const char *bytes, qsizetype count);

    /// What is kept, with a line that says how much was left out where that was.
    QByteArray text();

private:
    void _cutTail();

    const qsizetype m_headShare;
    const qsizetype m_tailShare;
    qsizetype m_leftOut = 0;
    QByteArray m_head;
    QByteArray m_tail; ///< Grows to twice its share before it is cut, so that not each append moves it.
};

} // namespace platform
