#include "RecorderBrowser.h"

namespace qw
{

RecorderBrowser::RecorderBrowser()
    : m_link(std::make_shared<RecorderBrowserLink>(*this))
{
}

RecorderBrowser::~RecorderBrowser()
{
    m_link->browser = nullptr;
    m_link->loads.end();
}

void RecorderBrowser::refreshDevices() {}

void RecorderBrowser::deviceDidNotResolve(QWVeskDevice &) {}

bool RecorderBrowser::recordingUpdateProgress(QWVeskRecording &, float)
{
    return false;
}

void RecorderBrowser::recordingDidFinishDownloading(QWVeskRecording &) {}

void RecorderBrowser::recordingDidStopDownloading(QWVeskRecording &) {}

void RecorderBrowser::recordingDidFailDownloading(QWVeskRecording &, const QString &) {}

} // namespace qw
