#include "HostWindow.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ScrollEvent.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWUtilities/controllers/QWScrollWheelManager.h>

#include <QCloseEvent>
#include <QCoreApplication>
#include <QMenuBar>
#include <QWheelEvent>

using platform::addMenuItem;
using platform::localized;

HostWindow::HostWindow()
{
    QMenu *edit = menuBar()->addMenu("Edit");
    addMenuItem(*edit, "Louder"); // titles of shortcuts; key, action and tag come from them
    addMenuItem(*edit, "Softer");
    edit->addSeparator();
    addMenuItem(*edit, localized("Keyboard Shortcuts…"), "toggleKeyboardShortcuts:");
    addMenuItem(*edit, localized("Scroll Wheel Actions…"), "toggleScrollWheelActions:");
    addMenuItem(*edit, localized("Preferences…"), "openPreferences:", ","); // Ctrl+,
    m_effects = menuBar()->addMenu(localized("Effects"));
    QMenu *help = menuBar()->addMenu(localized("Help"));
    addMenuItem(*help, localized("Manual"), "openManual:");
    addMenuItem(*help, localized("About"), "openAbout:");
    resize(640, 400);
}

void HostWindow::addEffects(std::unique_ptr<QMenu> catalog)
{
    m_effects->addActions(catalog->actions());
    m_catalogs.push_back(std::move(catalog));
}

void HostWindow::changeGain(QObject *sender)
{
    m_decibels += sender->property("tag").toInt();
}

void HostWindow::togglePlayback(QObject *)
{
    m_isPlaying = !m_isPlaying;
}

void HostWindow::zoom(double) {}

bool HostWindow::validateMenuItem(QAction *action)
{
    const auto *item = qobject_cast<platform::MenuItem *>(action);
    return !item || item->action() != platform::Selector("changeGain:") || m_decibels + item->tag() <= 12;
}

void HostWindow::wheelEvent(QWheelEvent *event)
{
    event->setAccepted(QWScrollWheelManager::scrollWheelEventTarget(*event, this));
}

void HostWindow::closeEvent(QCloseEvent *)
{
    QCoreApplication::quit(); // the application itself stays when its last window closes
}
