#pragma once

#include "ServiceAnnouncer.h"

#include <QTimer>

#include <chrono>

class RecorderSimulator;

/// How a recorder is seen on the network.
struct RecorderPresenceSettings
{
    QString serviceName; ///< "Vesk on Studio".
    QHostAddress where = QHostAddress::LocalHost;
    bool resolves = true;                    ///< False: it is listed, and nobody says where it is.
    int printers = 0;                        ///< Other services of the same type.
    std::chrono::milliseconds leavesAfter{}; ///< 0: never.
    std::chrono::milliseconds flaps{};       ///< Comes and goes after so long each; 0: stays.
};

/// Announces a recorder that listens, until that leaves or this goes.
class RecorderPresence : public QObject
{
    Q_OBJECT

public:
    /// @p recorder is not owned.
    RecorderPresence(RecorderSimulator &recorder, const RecorderPresenceSettings &settings, QObject *parent = nullptr);

Q_SIGNALS:
    void announced(const QString &name);
    void failed(const QString &reason);

private:
    void _begin();
    void _come();
    void _go();
    void _flap();
    void _announcePrinters();

    RecorderSimulator &m_recorder;
    RecorderPresenceSettings m_settings;
    ServiceAnnouncer m_announcer;
    ServiceAnnouncer m_printers;
    QTimer m_flapping;
    bool m_isThere = false;
};
