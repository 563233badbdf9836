#pragma once

#include "QWPlatform/appkit/WebView.h"
#include "QWPlatform/appkit/web/WebViewModule.h"

#include <QWPlatform/qwplatform_private.h>

#include <QString>

namespace platform
{

/// Makes views of the browser engine, whose module is loaded with the first one.
class QWPLATFORM_TEST_EXPORT LinuxWebViews : public WebViews
{
public:
    LinuxWebViews();
    explicit LinuxWebViews(QString modulePath);

    std::unique_ptr<WebView> make(QWidget *parent) override;

private:
    void _loadModule();

    QString m_modulePath; ///< "": the module in the framework.
    MakeWebView m_make = nullptr;
    bool m_tried = false;
};

} // namespace platform
