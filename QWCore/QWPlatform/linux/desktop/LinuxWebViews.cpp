#include "LinuxWebViews.h"

#include "QWPlatform/appkit/web/WebViewWithoutEngine.h"
#include "QWPlatform/linux/system/FrameworkFiles.h"

#include <QCoreApplication>
#include <QDebug>
#include <QLibrary>

#include <unistd.h>

namespace platform
{

namespace
{
/// What would make the engine abort the process at its start; "" for nothing.
QString obstacle()
{
    if (!QCoreApplication::testAttribute(Qt::AA_ShareOpenGLContexts))
        return "Qt::AA_ShareOpenGLContexts was not set before the application object was made";
    if (::geteuid() == 0 && qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        return "its sandbox does not work for the user root";
    return {};
}
} // namespace

LinuxWebViews::LinuxWebViews() = default;

LinuxWebViews::LinuxWebViews(QString modulePath)
    : m_modulePath(std::move(modulePath))
{
}

std::unique_ptr<WebView> LinuxWebViews::make(QWidget *parent)
{
    if (!m_tried)
        _loadModule();
    if (m_make)
        return std::unique_ptr<WebView>(m_make(parent));
    return std::make_unique<WebViewWithoutEngine>(parent);
}

void LinuxWebViews::_loadModule()
{
    m_tried = true;
    QString reason = obstacle();
    if (reason.isEmpty()) {
        QLibrary module(m_modulePath.isEmpty() ? FrameworkFiles::beside("Modules/libQWPlatformWeb.so") : m_modulePath);
        m_make = reinterpret_cast<MakeWebView>(module.resolve(makeWebViewSymbol));
        reason = m_make ? QString() : module.errorString();
    }
    if (!m_make)
        qWarning("Pages are shown without the browser engine: %s", qPrintable(reason));
}

} // namespace platform
