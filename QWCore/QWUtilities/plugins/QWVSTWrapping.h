#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <functional>
#include <memory>

/// Makes ".vst" bundles of the bare VST libraries that distributions install, by the program "qw-wrap-vst", so that the
/// next scan finds what was installed meanwhile. Main thread only.
class QWUTILITIES_EXPORT QWVSTWrapping
{
public:
    static QWVSTWrapping &sharedInstance();

    /// The run in progress goes on without it, until it is done or the application ends.
    virtual ~QWVSTWrapping();

    /// Begins in the background; @p done is called when all is over, however it went, but no more once the shared
    /// objects are released. Each new plug-in is asked for its name, which takes a moment. False when it is under way
    /// already, or nothing can be started: @p done is then dropped.
    bool begin(std::function<void()> done);

    bool isUnderWay() const;

protected:
    QWVSTWrapping();

private:
    struct State;
    std::shared_ptr<State> m_state; ///< Shared with the work.
};
