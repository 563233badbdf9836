#include "KeyReturn.h"

#include <QWPlatform/appkit/ResponderChain.h>

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace qw
{

KeyReturn::KeyReturn(QWidget &window)
    : m_window(window)
{
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &KeyReturn::_focusWindowChanged);
}

KeyReturn::~KeyReturn() = default;

void KeyReturn::takeBack()
{
    const QWidget *const key = platform::keyWindow();
    if (!key || !key->isVisible())
        m_window.activateWindow();
}

/// The keyboard goes from window to window, or for a moment to none.
void KeyReturn::_focusWindowChanged(QWindow *focus)
{
    if (!focus)
        return;
    const bool hasGone = std::exchange(m_wasAbove, _isAbove(focus)) && (!m_above || !m_above->isVisible());
    m_above = m_wasAbove ? focus : nullptr;
    if (hasGone && !m_wasAbove && focus != m_window.windowHandle() && m_window.isVisible())
        m_window.activateWindow();
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
