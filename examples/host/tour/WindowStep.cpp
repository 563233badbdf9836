#include "WindowStep.h"

#include "ScreenPicture.h"

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

void WindowStep::begin(DemoApplication &application)
{
    if (m_window.open)
        m_window.open(application);
}

std::optional<QImage> WindowStep::picture(DemoApplication &application)
{
    QWidget *window = m_window.window(application);
    if (!window || !window->isVisible() || window->windowOpacity() < 1)
        return std::nullopt;
    const QImage now = m_window.onBackdrop ? ScreenPicture::of(QList<QWidget *>{window}) : ScreenPicture::of(*window);
    m_alike = now == m_last ? m_alike + 1 : 0;
    m_last = now;
    return m_alike >= picturesAtRest ? std::optional(now) : std::nullopt;
}

void WindowStep::end(DemoApplication &application)
{
    if (m_window.close)
        m_window.close(application);
}

} // namespace demo
