#pragma once

#include "fakes/FakeSystem.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QDirIterator>
#include <QFile>
#include <QMenu>
#include <QObject>

#include <sys/stat.h>
#include <unistd.h>

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

/// While it lives, the program runs as a user who owns the disk of @p system but may not do everything, as root may.
class OrdinaryUser
{
public:
    explicit OrdinaryUser(const FakeSystem &system)
    {
        const QString disk = QFileInfo(system.real("~")).path();
        QDirIterator entries(disk, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        isReady = _hand(disk);
        while (entries.hasNext())
            isReady = _hand(entries.next()) && isReady;
        isReady = ::seteuid(nobody) == 0 && isReady;
    }

    ~OrdinaryUser()
    {
        if (::seteuid(m_before) != 0)
            qFatal("The test's own user cannot be restored");
    }

    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

    bool isReady = false;

private:
    bool _hand(const QString &path) const
    {
        return m_before != 0 || ::lchown(QFile::encodeName(path).constData(), nobody, static_cast<gid_t>(-1)) == 0;
    }

    const uid_t m_before = ::geteuid();
    const uid_t nobody = m_before == 0 ? 65534 : m_before;
};

/// Takes away or gives back every permission for the file or folder at @p path of @p system.
inline bool setForbidden(const FakeSystem &system, const QString &path, bool forbidden)
{
    return ::chmod(QFile::encodeName(system.real(path)).constData(), forbidden ? 0 : 0755) == 0;
}
