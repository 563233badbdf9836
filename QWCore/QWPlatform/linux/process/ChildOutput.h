#pragma once

#include <QByteArray>

#include <array>
#include <sys/types.h>

namespace platform
{

class BoundedOutput;

/// A pipe into which a child writes; both ends close at exec.
class ChildOutput
{
public:
    /// Without a pipe unless one is @p wanted.
    explicit ChildOutput(bool wanted);
    ~ChildOutput();
    ChildOutput(const ChildOutput &) = delete;
    ChildOutput &operator=(const ChildOutput &) = delete;

    /// -1 without a pipe.
    int writeEnd() const { return m_ends[1]; }
    void closeWriteEnd() { _close(1); }

    /// What is written until @p child has ended, or everyone has closed the pipe. Others that hold the pipe open when
    /// the child has ended are not waited for. Of more than @p longest bytes the middle is left out.
    QByteArray read(pid_t child, qsizetype longest) const;

private:
    bool _readSome(BoundedOutput &output) const;
    void _readRest(BoundedOutput &output) const;
    void _close(int end);

    std::array<int, 2> m_ends{-1, -1};
};

} // namespace platform
