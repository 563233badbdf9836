#pragma once

#include "QWPlatform/appkit/WebView.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// Of a view's policy, what sends the links of its pages to the user's browser: what the user clicks, and of what a
/// page wants by itself one address until the user or the view's owner goes on, since a page that refreshes itself, or
/// holds fifty frames, would else open a window each time. Main thread.
class QWPLATFORM_SHARED_EXPORT BrowserLinks
{
public:
    /// True when @p navigation was one to the web ("http", "https"), which must not happen in the view then.
    bool take(const WebView::Navigation &navigation);

private:
    bool _mayOpen(const WebView::Navigation &navigation);

    bool m_pageHasOpened = false; ///< One, by itself, since anyone asked for anything.
};

} // namespace platform
