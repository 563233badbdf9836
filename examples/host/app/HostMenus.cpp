#include "HostMenus.h"

#include "../audio/SoundFile.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <QMainWindow>
#include <QMenuBar>

namespace demo
{

using platform::localized;
using platform::MenuItem;

namespace
{
constexpr QChar f1(0xF704);
constexpr qsizetype longestInline = 20; // items

struct Entry
{
    const char *title;  ///< Null: a separator.
    const char *action; ///< Null: the formats for saving.
    QString key;
    quint32 modifiers = MenuItem::Command;
};

const std::vector<Entry> fileEntries{{"Open…", "openDocument:", "o"},
                                     {"Built-in Test Tone", "openTestTone:", "t"},
                                     {nullptr, nullptr, {}},
                                     {"Save As…", "saveDocumentAs:", "s", MenuItem::Command | MenuItem::Shift},
                                     {"Format for Saving", nullptr, {}}};
const std::vector<Entry> editEntries{{"Undo", "undoChange:", "z"},
                                     {"Redo", "redoChange:", "z", MenuItem::Command | MenuItem::Shift}};
const std::vector<Entry> quitEntries{{nullptr, nullptr, {}}, {"Quit", "terminate:", "q"}};
const std::vector<Entry> helpEntries{{"Manual", "openManual:", f1, 0},
                                     {"Legal", "openLegal:", {}},
                                     {"Acknowledgements", "openAcknowledgements:", {}},
                                     {nullptr, nullptr, {}},
                                     {"About", "openAbout:", {}}};

struct SaveFormat
{
    const char *title;
    SoundFile::Format format;
};
constexpr SaveFormat saveFormats[] = {{"WAV, 32-bit float", SoundFile::Format::WavFloat},
                                      {"WAV, 24-bit", SoundFile::Format::Wav24},
                                      {"AIFF, 32-bit float", SoundFile::Format::AiffFloat},
                                      {"AIFF, 24-bit", SoundFile::Format::Aiff24}};

MenuItem *addItem(QMenu &menu, QObject &target, const Entry &entry)
{
    MenuItem *item = platform::addMenuItem(menu, localized(entry.title), entry.action, entry.key, entry.modifiers);
    item->setTarget(&target);
    return item;
}

void addSaveFormats(QMenu &menu, QObject &target, const QString &title)
{
    QMenu *formats = platform::addSubmenu(menu, title);
    for (const SaveFormat &format : saveFormats) {
        MenuItem *item = addItem(*formats, target, {format.title, "chooseSaveFormat:", {}});
        item->setCheckable(true);
        item->setTag(static_cast<qlonglong>(format.format));
    }
}

void addEntries(QMenu &menu, QObject &target, const std::vector<Entry> &entries)
{
    for (const Entry &entry : entries) {
        if (!entry.title)
            menu.addSeparator();
        else if (!entry.action)
            addSaveFormats(menu, target, localized(entry.title));
        else
            addItem(menu, target, entry);
    }
}
} // namespace

HostMenus::HostMenus(QMainWindow &window, QObject &actions, QObject &application)
    : m_actions(actions)
    , m_application(application)
{
    QMenuBar &bar = *window.menuBar();
    QMenu *file = bar.addMenu(localized("&File"));
    addEntries(*file, actions, fileEntries);
    addEntries(*file, application, quitEntries);
    addEntries(*bar.addMenu(localized("&Edit")), actions, editEntries);
    m_effects = bar.addMenu(localized("Effect&s"));
    m_instruments = bar.addMenu(localized("&Instruments"));
    addEntries(*bar.addMenu(localized("&Help")), application, helpEntries);
}

HostMenus::~HostMenus() = default;

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
    addItem(menu, m_application, {"Look for New Plug-ins", "validatePlugIns:", {}});
}

// A short catalog stands in the menu itself, a long one in a submenu.
void HostMenus::_addCatalog(QMenu &menu, const QString &title, std::unique_ptr<QMenu> catalog)
{
    if (catalog->isEmpty())
        return;
    if (catalog->actions().size() > longestInline) {
        platform::addSubmenu(menu, title)->addActions(catalog->actions());
    } else {
        menu.addSection(title);
        menu.addActions(catalog->actions());
    }
    m_catalogs.push_back(std::move(catalog));
}

} // namespace demo
