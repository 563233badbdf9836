#pragma once

#include <QtGlobal>

#include <pthread.h>

/// As long as it lives, no thread can be had: the usual stack of one is larger than any memory.
class NoThreads
{
public:
    NoThreads()
    {
        pthread_attr_t unaffordable;
        if (pthread_getattr_default_np(&m_usual) != 0 || pthread_getattr_default_np(&unaffordable) != 0 ||
            pthread_attr_setstacksize(&unaffordable, std::size_t(1) << 47) != 0 ||
            pthread_setattr_default_np(&unaffordable) != 0)
            qFatal("the usual stack of threads cannot be set");
    }
    ~NoThreads() { pthread_setattr_default_np(&m_usual); }
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;

private:
    pthread_attr_t m_usual;
};
