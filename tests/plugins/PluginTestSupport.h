#pragma once

#include "fakes/FakeSystem.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QFile>
#include <QMenu>
#include <QObject>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
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

/// While it lives, permissions count for this thread as for anyone; root may otherwise do everything.
class OrdinaryUser
{
public:
    OrdinaryUser()
    {
        m_isKnown = ::syscall(SYS_capget, &m_header, m_before) == 0;
        __user_cap_data_struct less[] = {m_before[0], m_before[1]};
        less[0].effective &= ~(CAP_TO_MASK(CAP_DAC_OVERRIDE) | CAP_TO_MASK(CAP_DAC_READ_SEARCH));
        isReady = m_isKnown && ::syscall(SYS_capset, &m_header, less) == 0;
    }

    ~OrdinaryUser()
    {
        if (m_isKnown && ::syscall(SYS_capset, &m_header, m_before) != 0)
            qFatal("What root may do cannot be restored");
    }

    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

    bool isReady = false;

private:
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_before[2] = {};
    bool m_isKnown = false;
};

/// Takes away or gives back every permission for the file or folder at @p path of @p system.
inline bool setForbidden(const FakeSystem &system, const QString &path, bool forbidden)
{
    return ::chmod(QFile::encodeName(system.real(path)).constData(), forbidden ? 0 : 0755) == 0;
}
