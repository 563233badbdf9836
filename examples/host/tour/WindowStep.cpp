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

QImage WindowStep::_look(DemoApplication &application) const
{
    QWidget *window = m_window.window(application);
    QWidget *sheet = m_window.sheet ? m_window.sheet(application) : nullptr;
    if (!m_window.onBackdrop)
        return ScreenPicture::of(*window);
    return ScreenPicture::of(sheet ? QList<QWidget *>{window, sheet} : QList<QWidget *>{window});
}

void WindowStep::begin(DemoApplication &application)
{
    if (!m_window.open)
        return;
    if (const QWidget *window = m_window.window(application); window && window->isVisible())
        m_before = _look(application);
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
    const QWidget *sheet = m_window.sheet ? m_window.sheet(application) : nullptr;
    if (m_window.sheet && !(sheet && sheet->isVisible() && sheet->windowOpacity() >= 1))
        return false;
    return !m_window.page ||
           (m_pageLoaded && ScreenPicture::hasContent(ScreenPicture::of(*m_window.page(application)->widget())));
}

std::optional<QImage> WindowStep::picture(DemoApplication &application)
{
    if (!_isReady(application))
        return std::nullopt;
    const QImage now = _look(application);
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
