#pragma once

#include "QWUtilities/recorder/browse/DownloadQueue.h"

namespace qw
{

struct BrowserOutlets;

/// The sheet that covers the window while recordings are saved. Main thread.
class ProgressSheet
{
public:
    /// @p outlets outlive this.
    explicit ProgressSheet(const BrowserOutlets &outlets);

    void begin();
    void end();

    void setText(const QString &text);

    /// 0.0 to 1.0.
    void setProgress(double fraction);
    void setDetails(const DownloadProgress &progress);

    /// A line below, which a screen reader says at once.
    void showFailure(const QString &line);

    /// The list of what failed in place of the rest.
    void showFailures(const std::vector<FailedDownload> &failures);

private:
    void _showProgress();

    const BrowserOutlets &m_outlets;
};

} // namespace qw
