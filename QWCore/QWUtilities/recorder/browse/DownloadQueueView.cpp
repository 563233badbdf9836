#include "DownloadQueueView.h"

namespace qw
{

DownloadQueueView::~DownloadQueueView() = default;

QWidget *DownloadQueueView::window() const
{
    return nullptr;
}

DownloadQueueView::Recordings DownloadQueueView::selectedRecordings() const
{
    return {};
}

QString DownloadQueueView::selectedFormatTitle() const
{
    return {};
}

bool DownloadQueueView::opensAfterSave() const
{
    return false;
}

void DownloadQueueView::beginProgressSheet() {}

void DownloadQueueView::endProgressSheet() {}

void DownloadQueueView::setWindowCanHide(bool) {}

void DownloadQueueView::setProgressText(const QString &) {}

void DownloadQueueView::setProgress(double) {}

void DownloadQueueView::setProgressDetails(const DownloadProgress &) {}

void DownloadQueueView::showFailure(const QString &) {}

void DownloadQueueView::showFailures(const std::vector<FailedDownload> &) {}

} // namespace qw
