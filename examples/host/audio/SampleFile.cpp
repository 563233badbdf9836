#include "SampleFile.h"

#include <QDir>

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

namespace demo
{

namespace
{
constexpr auto largeFiles = "/var/tmp"; ///< The usual folder for temporary files may lie in memory.

QString folder()
{
    return qEnvironmentVariable("TMPDIR", QLatin1String(largeFiles));
}

qint64 sizeOf(std::span<const float> samples)
{
    return static_cast<qint64>(samples.size_bytes());
}
} // namespace

SampleFile::SampleFile(const std::vector<std::span<const float>> &channels)
    : m_frames(channels.empty() ? 0 : static_cast<qint64>(channels.front().size()))
    , m_file(std::make_unique<QTemporaryFile>(folder() + "/tine-XXXXXX"))
{
    if (_write(channels))
        return;
    m_file.reset();
    for (const auto &samples : channels)
        m_memory.emplace_back(samples.begin(), samples.end());
}

/// The room is taken first: a disk that is full says so here, and not when the pages are written at last.
bool SampleFile::_write(const std::vector<std::span<const float>> &channels)
{
    if (m_frames == 0 || !m_file->open())
        return false;
    const qint64 size = static_cast<qint64>(channels.size()) * sizeOf(channels.front());
    if (::posix_fallocate(m_file->handle(), 0, size) != 0)
        return false;
    const auto isWritten = [this](std::span<const float> samples) {
        return m_file->write(reinterpret_cast<const char *>(samples.data()), sizeOf(samples)) == sizeOf(samples);
    };
    return std::ranges::all_of(channels, isWritten) && m_file->flush();
}

void SampleFile::read(int channel, qint64 first, std::span<float> to) const
{
    if (!m_file) {
        std::ranges::copy_n(m_memory[static_cast<size_t>(channel)].begin() + first,
                            static_cast<std::ptrdiff_t>(to.size()), to.begin());
        return;
    }
    auto bytes = std::as_writable_bytes(to);
    auto place = (channel * m_frames + first) * qint64(sizeof(float));
    while (!bytes.empty()) {
        const ssize_t count = ::pread(m_file->handle(), bytes.data(), bytes.size(), place);
        if (count <= 0)
            break;
        place += count;
        bytes = bytes.subspan(static_cast<size_t>(count));
    }
    std::ranges::fill(bytes, std::byte(0));
}

} // namespace demo
