#pragma once

#include <QCoreApplication>
#include <QTimer>

#include <csignal>

inline volatile std::sig_atomic_t isEndingOnSignal = 0;

/// A signal that asks to end ends the event loop, so that what was put up is taken away.
inline void endOnSignals(QCoreApplication &application)
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        std::signal(signal, [](int) { isEndingOnSignal = 1; });
    auto *const look = new QTimer(&application);
    QObject::connect(look, &QTimer::timeout, &application, [] {
        if (isEndingOnSignal)
            QCoreApplication::quit();
    });
    look->start(50);
}
