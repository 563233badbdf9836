#pragma once

#include "ListLoads.h"

#include <QWUtilities/qwutilities_private.h>

#include <QString>

#include <memory>

class QWVeskDevice;
class QWVeskRecording;

namespace qw
{

class RecorderBrowser;

/// Leads from a recorder to its browser for as long as that lives: a load may end after it. Main thread, except where
/// ListLoads says otherwise.
struct RecorderBrowserLink
{
    explicit RecorderBrowserLink(RecorderBrowser &itsBrowser)
        : browser(&itsBrowser)
    {
    }

    RecorderBrowser *browser; ///< Null once it has gone.
    ListLoads loads;
};

/// What recorders and their takes tell the browser that lists them. Main thread. May let go of recorders and takes in
/// any of the calls.
class QWUTILITIES_TEST_EXPORT RecorderBrowser
{
public:
    RecorderBrowser();
    virtual ~RecorderBrowser(); ///< Nobody tells it anything from then on.
    RecorderBrowser(const RecorderBrowser &) = delete;
    RecorderBrowser &operator=(const RecorderBrowser &) = delete;

    /// A recorder has its list, or turned out to have none.
    virtual void refreshDevices();

    /// A recorder's address is not to be had; it stays, empty.
    virtual void deviceDidNotResolve(QWVeskDevice &device);

    /// recording:updateProgress: @p fraction is 0.0 to 1.0, or beyond where the server told a wrong length. True: the
    /// download is to stop.
    virtual bool recordingUpdateProgress(QWVeskRecording &recording, float fraction);

    /// The file is whole and in its place.
    virtual void recordingDidFinishDownloading(QWVeskRecording &recording);

    /// The browser wanted it so; no file is left.
    virtual void recordingDidStopDownloading(QWVeskRecording &recording);

    /// No file is left. @p reason is for the user.
    virtual void recordingDidFailDownloading(QWVeskRecording &recording, const QString &reason);

    const std::shared_ptr<RecorderBrowserLink> &link() const { return m_link; }

private:
    std::shared_ptr<RecorderBrowserLink> m_link;
};

} // namespace qw
