#include "GridSimulator.h"

namespace
{
constexpr int lookInterval = 20; // milliseconds
}

GridSimulator::GridSimulator(QString folder, QObject *parent)
    : QObject(parent)
    , m_folder(std::move(folder))
{
    m_time.start();
    m_lookForHost.setInterval(lookInterval);
    connect(&m_lookForHost, &QTimer::timeout, this, &GridSimulator::_lookForHost);
}

GridSimulator::~GridSimulator()
{
    unplug();
}

bool GridSimulator::logTo(const QString &path)
{
    m_log.setFileName(path);
    return m_log.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
}

bool GridSimulator::plug(const QString &serial)
{
    unplug();
    const auto model = GridDevice::modelOfSerial(serial);
    auto terminal = std::make_unique<PseudoTerminal>(m_folder + "/tty.usbserial-" + serial);
    if (!model || !terminal->isOpen())
        return false;
    m_serial = serial;
    m_device = std::make_unique<GridDevice>(*model);
    m_terminal = std::move(terminal);
    m_notifier = std::make_unique<QSocketNotifier>(m_terminal->file(), QSocketNotifier::Read);
    m_notifier->setEnabled(false);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &GridSimulator::_receive);
    m_lookForHost.start();
    Q_EMIT plugged();
    return true;
}

void GridSimulator::unplug()
{
    if (!m_terminal)
        return;
    m_lookForHost.stop();
    m_notifier.reset();
    m_terminal.reset();
    _setHost(false);
    Q_EMIT unplugged();
}

/// Nothing arrives when nobody has the line open: a grid does not keep what it sent.
void GridSimulator::sendBytes(const QByteArray &bytes)
{
    if (m_terminal && m_terminal->hasPeer() && m_terminal->write(bytes))
        m_sent += bytes.size();
}

void GridSimulator::_send(int column, int row, bool down)
{
    if (!m_device)
        return;
    sendBytes(m_device->buttonMessage(column, row, down));
    Q_EMIT buttonChanged(column, row, down);
}

void GridSimulator::_receive()
{
    const QByteArray bytes = m_terminal->read();
    if (bytes.isEmpty()) {
        if (!m_terminal->hasPeer())
            _setHost(false);
        return;
    }
    m_received += bytes.size();
    _log(bytes);
    m_device->receive(bytes);
    Q_EMIT ledsChanged();
}

/// A line that nobody has open is always ready, so it is asked now and then instead.
void GridSimulator::_lookForHost()
{
    if (!m_hasHost && m_terminal->hasPeer())
        _setHost(true);
}

void GridSimulator::_setHost(bool hasHost)
{
    if (m_hasHost == hasHost)
        return;
    m_hasHost = hasHost;
    m_device->restart();
    if (m_notifier)
        m_notifier->setEnabled(hasHost);
    Q_EMIT hostChanged(hasHost);
}

void GridSimulator::_log(const QByteArray &bytes)
{
    if (m_log.isOpen())
        m_log.write(QByteArray::number(m_time.elapsed()) + ' ' + bytes.toHex(' ') + '\n');
}
