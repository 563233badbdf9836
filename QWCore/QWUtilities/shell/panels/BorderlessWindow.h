#pragma once

#include <QPainterPath>
#include <QPointer>
#include <QWidget>

#include <memory>

class QPropertyAnimation;

namespace qw
{

/// A window without title bar around one view: as large as the view, centred, with corners of 6 pixels. Fades its
/// opacity where the desktop wants motion.
class BorderlessWindow : public QWidget
{
    Q_OBJECT

public:
    static constexpr double cornerRadius = 6;

    /// @p contentView, which is @p nib or lies in it, becomes the window's child; @p nib lives as long as the window.
    BorderlessWindow(std::unique_ptr<QWidget> nib, QWidget *contentView);
    ~BorderlessWindow() override;

    /// In the middle of the screen on which the user works.
    void center();

    void makeKeyAndOrderFront();

    /// False where the desktop asks for no motion.
    static bool supportsAnimator();

    /// Fades from the present opacity, in the event loop, and then emits animationDidStop(). A running fade is dropped.
    void animateOpacity(double opacity);

Q_SIGNALS:
    /// A fade reached its end. The window may be destroyed in response.
    void animationDidStop();

private:
    void _fadeStopped(QPropertyAnimation *fade);

    std::unique_ptr<QWidget> m_nib; ///< What is left of it.
    QPointer<QPropertyAnimation> m_fade;
};

/// The shape of a panel of this @p size.
QPainterPath roundedPanel(const QSizeF &size);

} // namespace qw
