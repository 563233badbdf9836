#include "HostMenus.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>

namespace demo
{

using platform::localized;
using platform::MenuItem;

namespace
{
constexpr qsizetype longestInline = 20; // items
constexpr auto separator = "-";

/// Titles; those of an item in a submenu are divided by ">". They are names of shortcuts, so they are not translated.
struct Menu
{
    const char *title;
    std::vector<const char *> items;
};

const Menu fileMenu{"&File",
                    {"Open…", "Import from Recorder…", "Built-in Test Tone", separator, "Save As…",
                     "Format for Saving>WAV, 32-bit float", "Format for Saving>WAV, 24-bit",
                     "Format for Saving>WAV, 16-bit", "Format for Saving>AIFF, 32-bit float",
                     "Format for Saving>AIFF, 24-bit", "Format for Saving>AIFF, 16-bit", separator, "Quit"}};
const Menu editMenu{"&Edit",
                    {"Undo",
                     "Redo",
                     separator,
                     "Select All",
                     "Select Nothing",
                     separator,
                     "Trim>To Selection",
                     "Trim>Delete Selection",
                     "Trim>Silence at Both Ends",
                     "Level>Louder by 1 dB",
                     "Level>Softer by 1 dB",
                     "Level>Louder by 6 dB",
                     "Level>Softer by 6 dB",
                     "Level>Normalise",
                     "Level>Silence",
                     "Level>Remove Offset",
                     "Fade>In",
                     "Fade>Out",
                     "Channels>Swap",
                     "Channels>Mix to Mono",
                     "Reverse",
                     "Invert",
                     separator,
                     "Keyboard Shortcuts…",
                     "Scroll Wheel Actions…",
                     "Preferences…"}};
const Menu viewMenu{"&View",
                    {"Zoom>In", "Zoom>Out", "Zoom>To Selection", "Zoom>To Fit", "Scroll>Left", "Scroll>Right",
                     separator, "Time Ruler", "Chain", "Full Screen", separator, "Theme>As the Desktop", "Theme>Light",
                     "Theme>Dark"}};

const Menu transportMenu{"&Transport",
                         {"Play or Stop", "Play Selection", separator, "Back", "Forward", "Far Back", "Far Forward",
                          separator, "Go to Start", "Go to End", "Go to Start of Selection", "Go to End of Selection",
                          separator, "Longer Selection", "Shorter Selection", "Select to Start", "Select to End"}};

struct HelpEntry
{
    const char *title;
    const char *action;
};
constexpr HelpEntry helpEntries[] = {{"Manual", "openManual:"},
                                     {"Legal", "openLegal:"},
                                     {"Acknowledgements", "openAcknowledgements:"},
                                     {"About", "openAbout:"}};

QMenu &submenuWithTitle(QMenu &menu, const QString &title)
{
    for (QAction *item : menu.actions()) {
        if (item->menu() && platform::titleOf(*item) == title)
            return *item->menu();
    }
    return *platform::addSubmenu(menu, title);
}

void addItem(QMenu &menu, const QString &path)
{
    const qsizetype end = path.indexOf('>');
    if (path == separator)
        menu.addSeparator();
    else if (end < 0)
        platform::addMenuItem(menu, path);
    else
        addItem(submenuWithTitle(menu, path.left(end)), path.mid(end + 1));
}

QMenu *addMenu(QMenuBar &bar, const Menu &table)
{
    QMenu *menu = bar.addMenu(table.title);
    for (const char *path : table.items)
        addItem(*menu, path);
    return menu;
}

/// "Undo" says what it would undo while the menu is open; its shortcut finds it by its own title.
void restoreTitles(QMenu &menu)
{
    for (QAction *action : menu.actions()) {
        if (auto *item = qobject_cast<MenuItem *>(action))
            QObject::connect(&menu, &QMenu::aboutToHide, item,
                             [item, title = item->title()] { item->setTitle(title); });
    }
}
} // namespace

HostMenus::HostMenus(QMainWindow &window, QObject &actions)
    : m_actions(actions)
{
    QMenuBar &bar = *window.menuBar();
    addMenu(bar, fileMenu);
    restoreTitles(*addMenu(bar, editMenu));
    addMenu(bar, viewMenu);
    addMenu(bar, transportMenu);
    m_effects = bar.addMenu("Effect&s");
    m_instruments = bar.addMenu("&Instruments");
    QMenu *help = bar.addMenu("&Help");
    for (const HelpEntry &entry : helpEntries)
        platform::addMenuItem(*help, entry.title, entry.action);
}

HostMenus::~HostMenus() = default;

void HostMenus::validateOpenMenus()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *menu = qobject_cast<QMenu *>(widget); menu && menu->isVisible())
            platform::validateMenu(*menu);
    }
}

void HostMenus::fill(const QWAUManager &units, const QWVSTManager &vst)
{
    m_effects->clear();
    m_instruments->clear();
    m_catalogs.clear();
    _fill(*m_effects, units.effectsMenuWithTargetAction(&m_actions, "applyEffect:"),
          vst.effectsMenuWithTargetAction(&m_actions, "applyEffect:"));
    _fill(*m_instruments, units.instrumentsMenuWithTargetAction(&m_actions, "playInstrument:"),
          vst.instrumentsMenuWithTargetAction(&m_actions, "playInstrument:"));
}

void HostMenus::_fill(QMenu &menu, std::unique_ptr<QMenu> units, std::unique_ptr<QMenu> vst)
{
    _addCatalog(menu, localized("Audio Units"), std::move(units));
    _addCatalog(menu, localized("VST"), std::move(vst));
    menu.addSeparator();
    platform::addMenuItem(menu, localized("Look for New Plug-ins"), "validatePlugIns:");
}

// A short catalog stands in the menu itself, a long one in a submenu.
void HostMenus::_addCatalog(QMenu &menu, const QString &title, std::unique_ptr<QMenu> catalog)
{
    if (catalog->isEmpty())
        return;
    if (catalog->actions().size() > longestInline) {
        menu.addSeparator(); // else it would seem to belong to the section above
        platform::addSubmenu(menu, title)->addActions(catalog->actions());
    } else {
        menu.addSection(title);
        menu.addActions(catalog->actions());
    }
    m_catalogs.push_back(std::move(catalog));
}

} // namespace demo
