#pragma once

#include "GridDevice.h"
#include "PseudoTerminal.h"

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>

/// A grid that can be plugged in and out, on a pseudo-terminal in a folder of serial devices.
class GridSimulator : public QObject
{
    Q_OBJECT

public:
    /// @p folder: where hosts look for devices, see QW_SERIAL_DEVICES.
    explicit GridSimulator(QString folder, QObject *parent = nullptr);
    ~GridSimulator() override;

    /// Notes each byte received in the file @p path, a line for each piece: milliseconds, then the bytes. False when it
    /// cannot be written.
    bool logTo(const QString &path);

    /// Plugs in the grid of this serial number ("m64-0123"); unplugs the one before. False when there is no such model
    /// or no terminal.
    bool plug(const QString &serial);
    void unplug();

    bool isPlugged() const { return m_terminal != nullptr; }
    bool hasHost() const { return m_hasHost; }

    /// Of the grid plugged in last; "" before the first.
    const QString &serial() const { return m_serial; }

    /// "" when unplugged.
    QString link() const { return m_terminal ? m_terminal->link() : QString(); }

    /// The grid plugged in last; null before the first.
    const GridDevice *device() const { return m_device.get(); }

    void press(int column, int row) { _send(column, row, true); }
    void release(int column, int row) { _send(column, row, false); }
    void sendBytes(const QByteArray &bytes);

    qint64 received() const { return m_received; } ///< Bytes, so far.
    qint64 sent() const { return m_sent; }

Q_SIGNALS:
    void plugged();
    void unplugged();
    void hostChanged(bool hasHost);
    void ledsChanged();
    void buttonChanged(int column, int row, bool down);

private:
    void _send(int column, int row, bool down);
    void _receive();
    void _lookForHost();
    void _setHost(bool hasHost);
    void _log(const QByteArray &bytes);

    const QString m_folder;
    QElapsedTimer m_time;
    QFile m_log;
    QString m_serial;
    std::unique_ptr<GridDevice> m_device;
    std::unique_ptr<PseudoTerminal> m_terminal;
    std::unique_ptr<QSocketNotifier> m_notifier; ///< Enabled while there is a host.
    QTimer m_lookForHost;
    bool m_hasHost = false;
    qint64 m_received = 0;
    qint64 m_sent = 0;
};
