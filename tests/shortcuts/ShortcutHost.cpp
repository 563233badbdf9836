#include "ShortcutHost.h"

#include <QWBase/QWApplication.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/PropertyList.h>

ShortcutReceiver::ShortcutReceiver()
{
    platform::setDelegate(qApp, this);
}

ShortcutReceiver::~ShortcutReceiver()
{
    platform::setDelegate(qApp, nullptr);
}

bool ShortcutReceiver::validateMenuItem(QAction *action)
{
    const auto &item = static_cast<const platform::MenuItem &>(*action);
    validated.append(QString("%1 %2").arg(item.action().name()).arg(item.tag()));
    return allows;
}

void ShortcutReceiver::_note(const QString &action, QObject *sender)
{
    sent.append(QString("%1 %2").arg(action, sender->property("tag").toString()));
    senders.append(sender);
    representedObjects.append(sender->property("representedObject"));
    if (whileActing)
        whileActing();
}

QVariantMap shortcutState(const QString &name, const QString &action, char16_t character, quint32 modifiers, int tag)
{
    return {{"name", name},
            {"action", action},
            {"tag", tag},
            {"prohibitRepeats", false},
            {"enabled", true},
            {"character", int(character)},
            {"modifiers", modifiers}};
}

QVariantMap groupState(const QString &name, const QVariantList &shortcuts, bool isMenu)
{
    return {{"name", name}, {"isMenu", isMenu}, {"shortcuts", shortcuts}};
}

ShortcutSystem::ShortcutSystem(const QVariantList &groups)
{
    if (!groups.isEmpty())
        setFactory(groups);
}

void ShortcutSystem::setFactory(const QVariantList &groups) const
{
    addHostResource("shortcuts.plist", platform::PropertyList::toXml(groups));
}

void ShortcutSystem::setCurrent(const QVariantList &changes) const
{
    writePropertyList(path("_current.plist"), changes);
}

QVariantList ShortcutSystem::current() const
{
    return readPropertyList(path("_current.plist")).toList();
}

QString ShortcutSystem::path(const QString &name)
{
    return QWApplication::sharedApplication()->supportDirectory() + "/Keyboard Shortcuts/" + name;
}
