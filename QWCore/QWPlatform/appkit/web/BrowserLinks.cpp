#include "BrowserLinks.h"

#include "QWPlatform/appkit/Workspace.h"

#include <utility>

namespace platform
{

bool BrowserLinks::take(const WebView::Navigation &navigation)
{
    if (navigation.isMainFrame && navigation.cause != WebView::Navigation::Cause::Page)
        m_pageHasOpened = false;
    if (navigation.url.scheme() != u"http" && navigation.url.scheme() != u"https")
        return false;
    if (_mayOpen(navigation))
        openUrlOrTell(navigation.url);
    return true;
}

bool BrowserLinks::_mayOpen(const WebView::Navigation &navigation)
{
    if (!navigation.isMainFrame)
        return false;
    return navigation.cause != WebView::Navigation::Cause::Page || !std::exchange(m_pageHasOpened, true);
}

} // namespace platform
