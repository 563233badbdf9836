#pragma once

#include "fakes/FakeSystem.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QMenu>
#include <QObject>

inline const QString auDatabase = "~/Library/Application Support/Quorwell/au_db.plist";
inline const QString auHandOff = "~/Library/Application Support/Quorwell/validated_au.plist";
inline const QString vstDatabase = "~/Library/Application Support/Quorwell/vst_db.plist";
inline const QString vstHandOff = "~/Library/Application Support/Quorwell/validated_vst.plist";

inline QStringList titlesOf(const QMenu &menu)
{
    QStringList titles;
    for (const QAction *item : menu.actions())
        titles.append(platform::titleOf(*item));
    return titles;
}

/// The submenu of the first item titled @p title, or null.
inline QMenu *submenuOf(const QMenu &menu, const QString &title)
{
    for (const QAction *item : menu.actions())
        if (platform::titleOf(*item) == title)
            return item->menu();
    return nullptr;
}

inline platform::MenuItem *itemOf(const QMenu &menu, const QString &title)
{
    for (QAction *item : menu.actions())
        if (platform::titleOf(*item) == title)
            return qobject_cast<platform::MenuItem *>(item);
    return nullptr;
}

/// Receives what menu items send.
class Receiver : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void insertPlugin(QObject *sender)
    {
        chosen.append(qobject_cast<platform::MenuItem *>(sender)->representedObject());
    }

    QVariantList chosen;
};

/// A validator that accepts every plug-in and leaves @p state at @p path.
inline auto acceptingValidator(const FakeSystem &system, const QString &path, const QVariantMap &state = {})
{
    return [&system, path, state](const platform::ChildProcessRequest &) {
        system.writePropertyList(path, state);
        return platform::ChildProcessResult{.started = true, .exited = true, .status = 0, .output = {}};
    };
}
