#pragma once

#include <QPainterPath>
#include <QPointer>
#include <QWidget>

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

    /// The view becomes the window's child, to be taken back with takeContentView() when it should outlive it.
    explicit BorderlessWindow(QWidget *contentView);
    ~BorderlessWindow() override;

    void takeContentView(QWidget *newParent);

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

    QWidget *m_contentView;
    QPointer<QPropertyAnimation> m_fade;
};

/// The shape of a panel of this @p size.
QPainterPath roundedPanel(const QSizeF &size);

} // namespace qw
