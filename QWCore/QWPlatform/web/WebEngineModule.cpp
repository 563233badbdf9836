#include "WebEngineView.h"

#include <QWPlatform/appkit/WebViewModule.h>

/// What the framework asks the module for; see WebViewModule.h.
extern "C" Q_DECL_EXPORT platform::WebView *qwMakeWebView(QWidget *parent)
{
    return new platform::WebEngineView(parent);
}

static_assert(std::is_same_v<decltype(&qwMakeWebView), platform::MakeWebView>);
