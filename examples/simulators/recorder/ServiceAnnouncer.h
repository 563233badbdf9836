#pragma once

#include <QHostAddress>
#include <QObject>

#include <memory>
#include <vector>

/// Announces services of type "_http._tcp." in "local." through the machine's Avahi daemon, for as long as it lives. A
/// daemon that comes later, or anew, is told, too. Signals come from a thread of its own.
class ServiceAnnouncer : public QObject
{
    Q_OBJECT

public:
    struct Service
    {
        QString name; ///< At most 63 bytes of UTF-8.
        quint16 port = 0;
        bool resolves = true; ///< False: it is there, and nobody says where.
    };

    static constexpr size_t mostServices = 1000; ///< The daemon's own limit for a program is a little above.

    /// On the interface that has the address @p where; on all where it is QHostAddress::Any.
    explicit ServiceAnnouncer(const QHostAddress &where, QObject *parent = nullptr);
    ~ServiceAnnouncer() override;

    /// Instead of those that were announced; {} withdraws them.
    void announce(const std::vector<Service> &services);

Q_SIGNALS:
    /// @p name differs from the one asked for where that is taken.
    void announced(const QString &name);

    /// The daemon is not there, or does not want to.
    void failed(const QString &reason);

private:
    class Private;
    std::unique_ptr<Private> d;
};
