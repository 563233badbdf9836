#pragma once

#include <QTemporaryFile>

#include <memory>
#include <span>
#include <vector>

namespace demo
{

/// Samples on disk, in a file that goes with this object, or with the process however it ends; where the disk takes no
/// file, in memory. Written once and never changed, so any thread may read.
class SampleFile
{
public:
    /// @p channels are of one length.
    explicit SampleFile(const std::vector<std::span<const float>> &channels);

    /// Copies frames from @p first on into @p to; what cannot be read becomes silence.
    void read(int channel, qint64 first, std::span<float> to) const;

    bool isOnDisk() const { return m_file != nullptr; }

private:
    bool _write(const std::vector<std::span<const float>> &channels);

    qint64 m_frames;
    std::unique_ptr<QTemporaryFile> m_file; ///< Channel after channel; null: m_memory is used.
    std::vector<std::vector<float>> m_memory;
};

} // namespace demo
