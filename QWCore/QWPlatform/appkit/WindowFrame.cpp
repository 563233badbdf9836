#include "WindowFrame.h"

#include "QWPlatform/foundation/TextForms.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace platform
{

namespace
{
constexpr QMargins decoration(8, 32, 8, 8); ///< Of a desktop's title bar and borders.

qint64 shownArea(const QScreen &screen, const QRect &frame)
{
    const QRect shown = screen.availableGeometry().intersected(frame);
    return qint64(shown.width()) * shown.height();
}

/// The screen that shows most of @p frame; the first one when none shows any.
const QScreen *screenOf(const QRect &frame)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto most = std::max_element(screens.begin(), screens.end(), [&](const QScreen *a, const QScreen *b) {
        return shownArea(*a, frame) < shownArea(*b, frame);
    });
    return most == screens.end() || shownArea(**most, frame) == 0 ? QGuiApplication::primaryScreen() : *most;
}

QScreen *screenOfUser()
{
    QScreen *const screen = QGuiApplication::screenAt(QCursor::pos());
    return screen ? screen : QGuiApplication::primaryScreen();
}
} // namespace

QRect constrainedToScreen(const QRect &frame)
{
    const QScreen *const screen = screenOf(frame);
    if (!screen || screen->availableGeometry().contains(frame))
        return frame;
    const QRect room = screen->availableGeometry().marginsRemoved(decoration);
    QRect fitted(frame.topLeft(), frame.size().boundedTo(room.size()));
    fitted.moveRight(std::min(fitted.right(), room.right()));
    fitted.moveBottom(std::min(fitted.bottom(), room.bottom()));
    fitted.moveTopLeft({std::max(fitted.left(), room.left()), std::max(fitted.top(), room.top())});
    return fitted;
}

void constrainToScreen(QWidget &window)
{
    const QRect fitted = constrainedToScreen(window.geometry());
    if (fitted != window.geometry())
        window.setGeometry(fitted);
}

void centerWindow(QWidget &window, const QSize &size)
{
    if (const QScreen *const screen = screenOfUser())
        window.move(screen->availableGeometry().center() - QRect({}, size).center());
}

QString stringFromFrame(const QWidget &window)
{
    return TextForms::stringFromRect(window.geometry());
}

void makeKeyAndOrderFront(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace platform
