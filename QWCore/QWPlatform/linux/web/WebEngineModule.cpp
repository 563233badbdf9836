#include "QWPlatform/appkit/web/WebViewModule.h"
#include "WebEngineView.h"

#include <QGuiApplication>
#include <QOpenGLContext>
#include <QPalette>

namespace
{
/// A variable that the engine takes from the environment once, when it starts. It is put back afterwards: child
/// processes of the host are not meant.
class VariableForTheEngine
{
public:
    VariableForTheEngine(const char *name, const QByteArray &value)
        : m_name(name)
        , m_wasSet(qEnvironmentVariableIsSet(name))
        , m_before(qgetenv(name))
    {
        qputenv(m_name, value);
    }

    ~VariableForTheEngine()
    {
        if (m_wasSet)
            qputenv(m_name, m_before);
        else
            qunsetenv(m_name);
    }

    VariableForTheEngine(const VariableForTheEngine &) = delete;
    VariableForTheEngine &operator=(const VariableForTheEngine &) = delete;

private:
    const char *const m_name;
    const bool m_wasSet;
    const QByteArray m_before;
};

constexpr auto flagsVariable = "QTWEBENGINE_CHROMIUM_FLAGS";
constexpr auto sceneVariable = "QT_QUICK_BACKEND";

/// With the theme that pages ask for by "prefers-color-scheme".
QByteArray flags()
{
    const bool dark = QGuiApplication::palette().color(QPalette::Base).lightnessF() < 0.5;
    return qgetenv(flagsVariable) + (dark ? " --blink-settings=preferredColorScheme=0" : "");
}

/// Where there is no OpenGL, as off screen, the software painter at once: the engine would try, fail and complain.
QByteArray sceneBackend()
{
    const QByteArray chosen = qgetenv(sceneVariable);
    const QOpenGLContext *const shared = QOpenGLContext::globalShareContext();
    const bool hasOpenGL = shared && shared->isValid();
    return chosen.isEmpty() && !hasOpenGL ? "software" : chosen;
}
} // namespace

/// What the framework asks the module for; see WebViewModule.h.
extern "C" Q_DECL_EXPORT platform::WebView *qwMakeWebView(QWidget *parent)
{
    const VariableForTheEngine withFlags(flagsVariable, flags());
    const VariableForTheEngine withScene(sceneVariable, sceneBackend());
    return new platform::WebEngineView(parent);
}

static_assert(std::is_same_v<decltype(&qwMakeWebView), platform::MakeWebView>);
