#pragma once

#include "LineTable.h"
#include "LineWriter.h"
#include "QWPlatform/devices/serial/SerialLines.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// Serial lines through the terminal interface. Descriptor 0 is refused like any number that names no open line: as a
/// file it would be the user's terminal.
class QWPLATFORM_TEST_EXPORT LinuxSerialLines : public SerialLines
{
public:
    Opening open(const QString &path) override;
    std::ptrdiff_t read(int descriptor, std::span<std::uint8_t> bytes) override;
    std::ptrdiff_t write(int descriptor, std::span<const std::uint8_t> bytes) override;
    void drain(int descriptor) override;
    void close(int descriptor) override;

private:
    LineWriter &_writer(int descriptor) { return m_writers[static_cast<unsigned>(descriptor) % m_writers.size()]; }

    LineTable m_lines;
    std::array<LineWriter, LineTable::capacity> m_writers; ///< That of an open line is its own.
};

} // namespace platform
