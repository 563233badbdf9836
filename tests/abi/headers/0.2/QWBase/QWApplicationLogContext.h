#pragma once

#include <QString>

/// Where a log entry comes from. A value that hosts fill in, so it stays open.
struct QWApplicationLogContext
{
    QString domain;                 ///< Subject that rules go by, such as the name of a class; "" for none.
    const char *file = nullptr;     ///< Literals; null when unknown.
    int line = 0;                   ///< 0 when unknown.
    const char *function = nullptr; ///< A literal; null when unknown.
    const void *sender = nullptr;   ///< The object that reports, only to tell several apart; never looked into.
};

/// The context of this line, reported by the object in which it stands.
#define QW_LOG_CONTEXT(domain)                                                                                         \
    QWApplicationLogContext                                                                                            \
    {                                                                                                                  \
        domain, __FILE__, __LINE__, __func__, this                                                                     \
    }
