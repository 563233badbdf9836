#include "BorderlessWindow.h"

#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/appkit/windows/Compositing.h>

#include <QApplication>
#include <QBitmap>
#include <QPainter>
#include <QPropertyAnimation>
#include <QStyle>

namespace qw
{

namespace
{
constexpr int fadeMilliseconds = 200;

QBitmap roundedMask(const QSize &size)
{
    QBitmap mask(size);
    mask.clear();
    QPainter(&mask).fillPath(roundedPanel(size), Qt::color1);
    return mask;
}
} // namespace

QPainterPath roundedPanel(const QSizeF &size)
{
    QPainterPath path;
    path.addRoundedRect(QRectF({}, size), BorderlessWindow::cornerRadius, BorderlessWindow::cornerRadius);
    return path;
}

BorderlessWindow::BorderlessWindow(std::unique_ptr<QWidget> nib, QWidget *contentView)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint)
    , m_nib(std::move(nib))
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    contentView->setParent(this);
    contentView->move(0, 0);
    contentView->show();
    setFixedSize(contentView->size());
    if (m_nib.get() == contentView)
        m_nib.release(); // the window's own now
}

BorderlessWindow::~BorderlessWindow() = default;

void BorderlessWindow::center()
{
    platform::centerWindow(*this, size());
}

void BorderlessWindow::makeKeyAndOrderFront()
{
    // Without compositor a translucent corner is black: it is cut off there, at the price of a hard edge.
    if (platform::isCompositing())
        clearMask();
    else
        setMask(roundedMask(size()));
    platform::makeKeyAndOrderFront(*this);
}

bool BorderlessWindow::supportsAnimator()
{
    const QStyle *style = QApplication::style();
    return style->styleHint(QStyle::SH_Widget_Animation_Duration) > 0;
}

void BorderlessWindow::animateOpacity(double opacity)
{
    delete m_fade;
    m_fade = new QPropertyAnimation(this, "windowOpacity", this);
    m_fade->setDuration(fadeMilliseconds);
    m_fade->setEndValue(opacity);
    connect(m_fade, &QPropertyAnimation::finished, this, [this, fade = m_fade.data()] { _fadeStopped(fade); });
    m_fade->start();
}

void BorderlessWindow::_fadeStopped(QPropertyAnimation *fade)
{
    // Whoever is told may destroy the window, while the animation is still in its own signal.
    fade->setParent(nullptr);
    fade->deleteLater();
    m_fade.clear();
    Q_EMIT animationDidStop();
}

} // namespace qw
