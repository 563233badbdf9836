#include "WebView.h"

namespace platform
{

WebView::~WebView() = default;
WebViews::~WebViews() = default;

} // namespace platform
