#pragma once

#include "fakes/FakeSystem.h"

#include <QWPlatform/appkit/toolbar/Toolbar.h>
#include <QWPlatform/appkit/toolbar/ToolbarDelegate.h>
#include <QWPlatform/appkit/toolbar/ToolbarItem.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QMainWindow>
#include <QTest>

/// Where the configuration of the viewer's toolbar stands in the user defaults.
inline constexpr auto toolbarKey = "NSToolbar Configuration manual";

inline const QStringList defaultItems{"back", "forward", "NSToolbarFlexibleSpaceItem", "print"};
inline const QStringList allowedItems{
    "back", "forward", "home", "print", "NSToolbarFlexibleSpaceItem", "NSToolbarSeparatorItem", "NSToolbarSpaceItem"};

/// A viewer with the four items back, forward, home and print, of which print may be disabled.
class Viewer : public QObject, public platform::ToolbarDelegate
{
    Q_OBJECT

public:
    QStringList toolbarAllowedItemIdentifiers(platform::Toolbar &) override { return allowedItems; }
    QStringList toolbarDefaultItemIdentifiers(platform::Toolbar &) override { return defaultItems; }
    QStringList toolbarSelectableItemIdentifiers(platform::Toolbar &) override { return selectable; }

    std::unique_ptr<platform::ToolbarItem> toolbarItemForItemIdentifier(platform::Toolbar &, const QString &identifier,
                                                                        bool) override
    {
        if (!QStringList{"back", "forward", "home", "print"}.contains(identifier))
            return nullptr;
        auto item = std::make_unique<platform::ToolbarItem>(identifier);
        item->setLabel(identifier.left(1).toUpper() + identifier.mid(1));
        item->setAction("choose:");
        item->setTarget(this);
        return item;
    }

    bool validateToolbarItem(platform::ToolbarItem &item) override
    {
        return item.itemIdentifier() != "print" || canPrint;
    }

    Q_INVOKABLE void choose(QObject *sender)
    {
        chosen.append(qobject_cast<platform::ToolbarItem *>(sender)->itemIdentifier());
    }

    QStringList selectable;
    QStringList chosen;
    bool canPrint = true;
};

/// A fake machine, a viewer and its window.
struct ToolbarFixture
{
    FakeSystem system;
    platform::SystemScope scope{system};
    Viewer viewer;
    QMainWindow window;

    /// The window's toolbar, made as its owner makes it.
    platform::Toolbar *make(bool autosaves = true)
    {
        auto *const toolbar = new platform::Toolbar("manual", &window);
        toolbar->setAllowsUserCustomization(true);
        toolbar->setAutosavesConfiguration(autosaves);
        toolbar->setDisplayMode(platform::Toolbar::IconOnly);
        toolbar->setToolbarDelegate(&viewer);
        window.addToolBar(toolbar);
        return toolbar;
    }

    QVariantMap stored() const { return system.userDefaults().object(toolbarKey).toMap(); }
    void store(const QVariant &configuration) const { system.userDefaults().setObject(toolbarKey, configuration); }
};
