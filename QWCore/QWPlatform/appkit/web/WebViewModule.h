#pragma once

#include <QWPlatform/qwplatform_export.h>

class QWidget;

namespace platform
{

class WebView;

/// What the module with the browser engine exports: a new view whose widget is a child of @p parent.
using MakeWebView = WebView *(*)(QWidget *parent);
constexpr auto makeWebViewSymbol = "qwMakeWebView";

} // namespace platform
