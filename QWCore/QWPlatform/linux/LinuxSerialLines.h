#pragma once

#include "../devices/SerialLines.h"
#include "LineTable.h"

namespace platform
{

/// Serial lines through the terminal interface. Descriptor 0 is refused like any number that names no open line: as a
/// file it would be the user's terminal.
class QWPLATFORM_EXPORT LinuxSerialLines : public SerialLines
{
public:
    Opening open(const QString &path) override;
    std::ptrdiff_t read(int descriptor, std::span<std::uint8_t> bytes) override;
    std::ptrdiff_t write(int descriptor, std::span<const std::uint8_t> bytes) override;
    void drain(int descriptor) override;
    void close(int descriptor) override;

private:
    LineTable m_lines;
};

} // namespace platform
