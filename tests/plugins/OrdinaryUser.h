#pragma once

#include "fakes/FakeSystem.h"

#include <QFile>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

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
