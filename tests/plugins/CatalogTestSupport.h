#pragma once

#include "PluginTestSupport.h"

#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

inline const QString systemFolder = "/Library/Audio/Plug-Ins/VST";
inline const QString userFolder = "~/Library/Audio/Plug-Ins/VST";

inline QStringList namesOf(const QWAUManager &manager)
{
    QStringList names;
    for (const auto &record : manager.database())
        names.append(record->name());
    return names;
}

inline QStringList pathsOf(const QWVSTManager &manager)
{
    QStringList paths;
    for (const auto &record : manager.database())
        paths.append(record->path());
    return paths;
}

/// The records of @p manager as its file holds them.
template <class Manager>
QVariantList statesOf(const Manager &manager)
{
    QVariantList states;
    for (const auto &record : manager.database())
        states.append(record->state());
    return states;
}

inline QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

/// A catalog file with bundles at these paths.
inline void writeCatalog(const FakeSystem &system, const QStringList &paths, const QVariantMap &more = {})
{
    QVariantList states;
    for (const QString &path : paths) {
        QVariantMap state = more;
        state["path"] = path;
        states.append(state);
    }
    system.writePropertyList(vstDatabase, states);
}
