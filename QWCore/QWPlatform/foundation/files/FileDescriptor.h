#pragma once

#include <unistd.h>

namespace platform
{

/// Owns an open file; a negative number stands for none.
class FileDescriptor
{
public:
    explicit FileDescriptor(int number)
        : m_number(number)
    {
    }

    ~FileDescriptor()
    {
        if (isOpen())
            ::close(m_number);
    }

    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }

private:
    int m_number;
};

} // namespace platform
