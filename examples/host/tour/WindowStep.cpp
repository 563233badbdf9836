#include "WindowStep.h"

#include "ScreenPicture.h"

#include <QWPlatform/appkit/WebView.h>

#include <QWidget>

namespace demo
{

namespace
{
constexpr int picturesAtRest = 8; // a fifth of a second: longer than a page takes between two frames
} // namespace

WindowStep::WindowStep(const Window &window)
    : m_window(window)
{
}

QImage WindowStep::_look(QWidget &window) const
{
    return m_window.onBackdrop ? ScreenPicture::of(QList<QWidget *>{&window}) : ScreenPicture::of(window);
}

void WindowStep::begin(DemoApplication &application)
{
    if (!m_window.open)
        return;
    if (QWidget *window = m_window.window(application); window && window->isVisible())
        m_before = _look(*window);
    m_window.open(application);
    if (m_window.page)
        QObject::connect(m_window.page(application), &platform::WebView::loadFinished, &m_receiver,
                         [this] { m_pageLoaded = true; });
}

bool WindowStep::_isReady(DemoApplication &application) const
{
    const QWidget *window = m_window.window(application);
    if (!window || !window->isVisible() || window->windowOpacity() < 1)
        return false;
    return !m_window.page ||
           (m_pageLoaded && ScreenPicture::hasContent(ScreenPicture::of(*m_window.page(application)->widget())));
}

std::optional<QImage> WindowStep::picture(DemoApplication &application)
{
    if (!_isReady(application))
        return std::nullopt;
    const QImage now = _look(*m_window.window(application));
    m_alike = now == m_last && now != m_before ? m_alike + 1 : 0;
    m_last = now;
    return m_alike >= picturesAtRest ? std::optional(now) : std::nullopt;
}

void WindowStep::end(DemoApplication &application)
{
    if (m_window.close)
        m_window.close(application);
}

} // namespace demo
