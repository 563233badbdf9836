#include "KeyReturn.h"

#include <QWPlatform/appkit/ResponderChain.h>

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace qw
{

namespace
{
constexpr int untilAgain = 100; ///< Milliseconds.
} // namespace

KeyReturn::KeyReturn(QWidget &window)
    : m_window(window)
{
    m_again.setSingleShot(true);
    m_again.setInterval(untilAgain);
    connect(&m_again, &QTimer::timeout, this, &KeyReturn::_comeBackAgain);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &KeyReturn::_focusWindowChanged);
}

KeyReturn::~KeyReturn() = default;

void KeyReturn::takeBack()
{
    const QWidget *const key = platform::keyWindow();
    if (!key || !key->isVisible())
        comeBack();
}

/// X refuses those whose last event is older than the last change of the focus; a moment later there is a newer one.
void KeyReturn::comeBack()
{
    m_window.activateWindow();
    m_again.start();
}

void KeyReturn::_comeBackAgain()
{
    if (m_window.isVisible() && !m_wasAbove)
        m_window.activateWindow();
}

/// The keyboard goes from window to window, or for a moment to none.
void KeyReturn::_focusWindowChanged(QWindow *focus)
{
    if (!focus)
        return;
    const bool hasGone = std::exchange(m_wasAbove, _isAbove(focus)) && (!m_above || !m_above->isVisible());
    m_above = m_wasAbove ? focus : nullptr;
    if (focus == m_window.windowHandle())
        m_again.stop();
    else if (hasGone && !m_wasAbove && m_window.isVisible())
        comeBack();
}

bool KeyReturn::_isAbove(const QWindow *window) const
{
    const QWindow *const own = m_window.windowHandle();
    do
        window = window->transientParent();
    while (window && window != own);
    return window;
}

} // namespace qw
