#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <functional>
#include <memory>

/// Makes ".vst" bundles of the bare VST libraries that distributions install, by the program "qw-wrap-vst", so that the
/// next scan finds what was installed meanwhile. Main thread only.
class QWUTILITIES_EXPORT QWVSTWrapping
{
public:
    /// The one object of the current System, made on first use.
    static QWVSTWrapping &sharedInstance();

    /// The run in progress goes on without it, until it is done or the application ends.
    virtual ~QWVSTWrapping();

    /// Begins in the background; @p done is called when all is over, however it went, but no more once the shared
    /// objects are released. Each new plug-in is asked for its name, which takes a moment. False when it is under way
    /// already, or nothing can be started: @p done is then dropped.
    bool begin(std::function<void()> done);

    /// From begin() until its @p done has been, or would have been, called.
    bool isUnderWay() const;

protected:
    /// For sharedInstance(), which makes the one there is.
    QWVSTWrapping();

private:
    class Private;
    std::shared_ptr<Private> d; ///< Shared with the work, which may outlive this.
};
