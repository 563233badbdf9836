#include "WebEngineView.h"

#include <QWPlatform/appkit/WebViewModule.h>

#include <QGuiApplication>
#include <QPalette>

namespace {
/// Tells the engine the theme that pages ask for with "prefers-color-scheme". It takes that once, when it starts, from
/// the environment, which is put back afterwards: child processes of the host are not meant.
class ThemeSwitch
{
public:
    ThemeSwitch()
    {
        const bool dark = QGuiApplication::palette().color(QPalette::Base).lightnessF() < 0.5;
        if (dark)
            qputenv(variable, m_before + " --blink-settings=preferredColorScheme=0");
    }

    ~ThemeSwitch()
    {
        if (m_wasSet)
            qputenv(variable, m_before);
        else
            qunsetenv(variable);
    }

private:
    static constexpr auto variable = "QTWEBENGINE_CHROMIUM_FLAGS";
    const bool m_wasSet = qEnvironmentVariableIsSet(variable);
    const QByteArray m_before = qgetenv(variable);
};
} // namespace

/// What the framework asks the module for; see WebViewModule.h.
extern "C" Q_DECL_EXPORT platform::WebView *qwMakeWebView(QWidget *parent)
{
    const ThemeSwitch forTheFirstView;
    return new platform::WebEngineView(parent);
}

static_assert(std::is_same_v<decltype(&qwMakeWebView), platform::MakeWebView>);
