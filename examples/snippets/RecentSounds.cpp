#include "RecentSounds.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QSaveFile>

using platform::System;

RecentSounds::RecentSounds()
{
    System::current().userDefaults().registerDefaults({{"Recent Sounds Count", 10}}); // until the user chooses
}

void RecentSounds::add(const QString &path)
{
    platform::UserDefaults &defaults = System::current().userDefaults();
    QVariantList sounds = all();
    sounds.removeAll(path);
    sounds.prepend(path);
    defaults.setObject("Recent Sounds", sounds.mid(0, defaults.integer("Recent Sounds Count")));
}

QVariantList RecentSounds::all() const
{
    return System::current().userDefaults().object("Recent Sounds").toList();
}

bool RecentSounds::exportTo(const QString &path) const
{
    QSaveFile file(System::current().locations().mapped(path)); // "~/…" is where this machine has it
    const QByteArray list = platform::PropertyList::toXml(all());
    return file.open(QIODevice::WriteOnly) && file.write(list) == list.size() && file.commit();
}

bool RecentSounds::importFrom(const QString &path)
{
    const auto list = platform::PropertyList::fromFile(System::current().locations().mapped(path));
    if (!list || list->typeId() != QMetaType::QVariantList)
        return false; // what is kept stays
    System::current().userDefaults().setObject("Recent Sounds", *list);
    return true;
}
