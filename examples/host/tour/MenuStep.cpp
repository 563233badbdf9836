#include "MenuStep.h"

#include "../app/DemoApplication.h"
#include "../app/HostMenus.h"
#include "../app/MainWindow.h"
#include "ScreenPicture.h"

#include <QMenu>
#include <QMenuBar>

namespace demo
{

namespace
{
constexpr int usualLength = 24; // items; a longer submenu hides the window
} // namespace

MenuStep::MenuStep(QString name)
    : m_name(std::move(name))
{
}

// The longest one that is not too long, else the first.
QAction *MenuStep::_submenuWorthOpening(const QMenu &menu)
{
    QAction *best = nullptr;
    const auto lengthOf = [](const QAction *item) { return item->menu()->actions().size(); };
    for (QAction *item : menu.actions()) {
        if (!item->menu())
            continue;
        const bool fits = lengthOf(item) <= usualLength;
        if (!best || (fits && (lengthOf(best) > usualLength || lengthOf(item) > lengthOf(best))))
            best = item;
    }
    return best;
}

void MenuStep::begin(DemoApplication &application)
{
    QMenu *effects = application.menus().effects();
    application.mainWindow().menuBar()->setActiveAction(effects->menuAction());
    if (QAction *item = _submenuWorthOpening(*effects)) {
        m_submenu = item->menu();
        effects->setActiveAction(item);
    }
}

std::optional<QImage> MenuStep::picture(DemoApplication &application)
{
    QMenu *effects = application.menus().effects();
    if (!effects->isVisible() || (m_submenu && !m_submenu->isVisible()))
        return std::nullopt;
    QList<QWidget *> windows{&application.mainWindow(), effects};
    if (m_submenu)
        windows += m_submenu;
    return ScreenPicture::of(windows);
}

void MenuStep::end(DemoApplication &application)
{
    if (m_submenu)
        m_submenu->close();
    application.menus().effects()->close();
}

} // namespace demo
