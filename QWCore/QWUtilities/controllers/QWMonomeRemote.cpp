#include "QWMonomeRemote.h"

#include "QWUtilities/controllers/grid/GridLights.h"
#include "QWUtilities/controllers/grid/GridLine.h"
#include "QWUtilities/controllers/grid/GridMapping.h"
#include "QWUtilities/controllers/grid/GridModel.h"
#include "QWUtilities/controllers/grid/GridObservers.h"
#include "QWUtilities/controllers/grid/GridProtocol.h"
#include "QWUtilities/controllers/grid/GridReader.h"
#include "QWUtilities/controllers/grid/GridReaders.h"

#include <QWBase/QWApplicationLog.h>
#include <QWPlatform/System.h>
#include <QWPlatform/devices/serial/SerialLines.h>
#include <QWPlatform/devices/serial/SerialRegistry.h>
#include <QWPlatform/foundation/Clock.h>
#include <QWPlatform/machine/SystemServices.h>

#include <QCoreApplication>

#include <array>
#include <atomic>
#include <span>
#include <utility>
#include <vector>

using namespace std::chrono_literals;
using platform::System;
using platform::SystemServices;

namespace
{
constexpr auto logDomain = "QWMonomeRemote";
constexpr auto settling = 100ms;
constexpr auto pollInterval = 1ms;
constexpr std::size_t readLength = 512;

constexpr qw::GridRows startUpPattern{0x00, 0x7E, 0x00, 0x7E, 0x00, 0x7E, 0x7E, 0x00};
constexpr auto patternTime = 750ms;
constexpr auto fadeStep = std::chrono::nanoseconds(1s) / 30;
constexpr int brightest = 15;
} // namespace

class Q_DECL_HIDDEN QWMonomeRemote::Private final : public platform::SerialRegistryClient
{
public:
    explicit Private(QWMonomeRemote &owner);

    /// Looks for grids from now on.
    void begin();

    /// From now on nothing is called, read or sent.
    void end();

    void shutdown();
    QWGridPosition _transformPosition(QWGridPosition position) const;
    QWGridPosition _untransformPosition(QWGridPosition position) const;

    qw::GridObservers m_observers;
    qw::GridLine m_line;
    std::atomic<quint8> m_orientation = 0;
    std::atomic<qint8> m_origin = 0;
    std::atomic<quint32> m_serialNumber = 0;
    std::atomic<quint32> m_rows = 0;
    std::atomic<quint32> m_columns = 0;
    qw::GridLights m_lights;

private:
    void serialServicesMatched(const std::vector<platform::SerialService> &services) override;
    void serialServiceMessage(const platform::SerialService &service, quint32 messageType) override;

    void remoteAdded(const QString &path);
    void remoteRemoved();
    void readRemote(qw::GridReader &reader);

    void _logOpeningFailed(int error, const QString &advice);
    void _recognize(const QString &path);
    void _showStartUp(const qw::GridReader &reader);
    void _read(std::span<const std::uint8_t> buffer, std::ptrdiff_t count);
    void _press(const qw::GridPress &press);
    qw::GridMapping _mapping() const;

    QWMonomeRemote &m_owner;
    platform::SerialRegistry &m_registry;
    platform::SerialLines &m_lines;
    platform::Clock &m_clock;
    QWApplicationLog &m_log;
    QObject m_termination; ///< Receiver of the application's last signal.

    platform::SerialRegistry::Handle m_removalNotification = 0; ///< Of the grid added last.
    qw::GridReaders m_readers;                                  ///< Last: they use all else.
};

QWMonomeRemote &QWMonomeRemote::remote()
{
    return System::current().shared<QWMonomeRemote>([] { return new QWMonomeRemote; });
}

QWMonomeRemote::QWMonomeRemote()
    : d(std::make_unique<Private>(*this))
{
    d->begin();
}

QWMonomeRemote::~QWMonomeRemote()
{
    d->end();
}

bool QWMonomeRemote::isConnected() const
{
    return d->m_line.isOpen();
}

quint32 QWMonomeRemote::serialNumber() const
{
    return d->m_serialNumber;
}

quint32 QWMonomeRemote::numberOfRows() const
{
    return d->m_rows;
}

quint32 QWMonomeRemote::numberOfColumns() const
{
    return d->m_columns;
}

quint32 QWMonomeRemote::numberOfButtons() const
{
    return numberOfRows() * numberOfColumns();
}

unsigned QWMonomeRemote::orientation() const
{
    return d->m_orientation;
}

void QWMonomeRemote::setOrientation(unsigned orientation)
{
    d->m_orientation = static_cast<quint8>(orientation);
}

qint8 QWMonomeRemote::origin() const
{
    return d->m_origin;
}

void QWMonomeRemote::setOrigin(qint8 origin)
{
    d->m_origin = origin;
}

float QWMonomeRemote::intensity() const
{
    return d->m_lights.intensity();
}

void QWMonomeRemote::setIntensity(float intensity)
{
    d->m_lights.setIntensity(intensity);
}

void QWMonomeRemote::setLEDStateAtPosition(bool on, QWGridPosition position)
{
    d->m_lights.setLED(on, d->_untransformPosition(position));
}

bool QWMonomeRemote::LEDStateAtPosition(QWGridPosition position) const
{
    return d->m_lights.led(d->_untransformPosition(position));
}

void QWMonomeRemote::toggleLEDAtPosition(QWGridPosition position)
{
    setLEDStateAtPosition(!LEDStateAtPosition(position), position);
}

void QWMonomeRemote::setLEDFrameAtQuadrant(const quint8 *rows, unsigned quadrant)
{
    d->m_lights.setRows(rows, quadrant);
}

void QWMonomeRemote::clearLEDs()
{
    d->m_lights.clear();
}

void QWMonomeRemote::addObserver(QWMonomeRemoteObserver &observer)
{
    d->m_observers.add(observer);
}

void QWMonomeRemote::removeObserver(QWMonomeRemoteObserver &observer)
{
    d->m_observers.remove(observer);
}

bool QWMonomeRemote::hasObserver(const QWMonomeRemoteObserver &observer) const
{
    return d->m_observers.has(observer);
}

void QWMonomeRemote::shutdown()
{
    d->shutdown();
}

QWMonomeRemote::Private::Private(QWMonomeRemote &owner)
    : m_line(*SystemServices::current().serialLines)
    , m_lights(m_line)
    , m_owner(owner)
    , m_registry(*SystemServices::current().serialRegistry)
    , m_lines(*SystemServices::current().serialLines)
    , m_clock(System::current().clock())
    , m_log(QWApplicationLog::sharedLog())
{
}

void QWMonomeRemote::Private::begin()
{
    serialServicesMatched(m_registry.addMatchingNotification(*this));
    if (const auto *application = QCoreApplication::instance())
        QObject::connect(application, &QCoreApplication::aboutToQuit, &m_termination, [this] { shutdown(); });
}

void QWMonomeRemote::Private::end()
{
    m_registry.removeClient(*this);
    shutdown();
    m_readers.end();
}

void QWMonomeRemote::Private::shutdown()
{
    if (!m_line.isOpen())
        return;
    m_readers.cancel();
    m_lights.clear();
    m_line.drain();
    m_line.close();
    m_observers.release();
}

void QWMonomeRemote::Private::serialServicesMatched(const std::vector<platform::SerialService> &services)
{
    for (const platform::SerialService &service : services) {
        if (!service.advice.isEmpty())
            m_log.warningMessage({logDomain, __FILE__, __LINE__, __func__, &m_owner}, service.advice);
        if (!qw::isGridPath(service.dialInDevice.toStdString()))
            continue;
        m_removalNotification = m_registry.addInterestNotification(service, *this);
        remoteAdded(service.dialInDevice);
    }
}

// When two grids were connected, the first one's end releases the notification of the second and closes it. Intended:
// one grid at a time is supported.
void QWMonomeRemote::Private::serialServiceMessage(const platform::SerialService &, quint32 messageType)
{
    if (messageType != serviceIsTerminated)
        return;
    m_registry.releaseNotification(std::exchange(m_removalNotification, 0));
    remoteRemoved();
}

void QWMonomeRemote::Private::remoteAdded(const QString &path)
{
    m_clock.sleep(settling);
    const platform::SerialLines::Opening line = m_lines.open(path);
    if (line.descriptor == 0)
        return _logOpeningFailed(line.error, line.advice);
    m_line.setDescriptor(line.descriptor);
    _recognize(path);
    m_lights.clear();
    m_lights.setIntensity(1.0f);
    m_readers.start([this](qw::GridReader &reader) { readRemote(reader); }); // beside one that still reads
    m_observers.each([this](QWMonomeRemoteObserver &observer) { observer.monomeRemoteConnected(m_owner); });
}

void QWMonomeRemote::Private::remoteRemoved()
{
    m_readers.cancel();
    m_line.close();
    m_observers.each([this](QWMonomeRemoteObserver &observer) { observer.monomeRemoteRemoved(m_owner); });
}

/// The body of the reader thread.
void QWMonomeRemote::Private::readRemote(qw::GridReader &reader)
{
    _showStartUp(reader);
    std::array<std::uint8_t, readLength> buffer{};
    do {
        _read(buffer, m_line.read(buffer));
        m_clock.sleep(pollInterval, reader.ending());
    } while (!reader.isCancelled());
}

void QWMonomeRemote::Private::_logOpeningFailed(int error, const QString &advice)
{
    const QWApplicationLogContext context{logDomain, __FILE__, __LINE__, __func__, &m_owner};
    m_log.logContextFormatArguments(QWApplicationLog::Error, &context, "remoteAdded error: %d",
                                    {QString::number(error)});
    if (!advice.isEmpty())
        m_log.warningMessage(context, advice);
}

void QWMonomeRemote::Private::_recognize(const QString &path)
{
    const std::string text = path.toStdString();
    if (const auto model = qw::gridModelOfPath(text)) {
        m_rows = model->rows;
        m_columns = model->columns;
        m_line.setProtocol(model->protocol);
    }
    m_serialNumber = qw::gridSerialNumber(text);
}

/// A cancelled reader ends its show, on whatever grid is connected then.
void QWMonomeRemote::Private::_showStartUp(const qw::GridReader &reader)
{
    m_lights.setRows(startUpPattern.data(), 0);
    m_clock.sleep(patternTime, reader.ending());
    m_lights.setIntensity(1.0f);
    m_clock.sleep(fadeStep, reader.ending());
    for (int level = brightest - 1; level >= 1; --level) {
        m_lights.setIntensity(static_cast<float>(level) / brightest);
        m_clock.sleep(fadeStep, reader.ending());
    }
    m_lights.clear();
    m_lights.setIntensity(1.0f);
}

/// The last byte of an odd count is paired with what an earlier read left behind it. Intended.
void QWMonomeRemote::Private::_read(std::span<const std::uint8_t> buffer, std::ptrdiff_t count)
{
    for (std::ptrdiff_t offset = 0; offset < count; offset += 2) {
        const auto i = static_cast<std::size_t>(offset);
        _press(qw::decodeGridPress(m_line.protocol(), buffer[i], buffer[i + 1]));
    }
}

void QWMonomeRemote::Private::_press(const qw::GridPress &press)
{
    if (press.kind == qw::GridPress::None)
        return;
    const QWGridPosition position = _transformPosition({static_cast<float>(press.x), static_cast<float>(press.y)});
    const auto call = press.kind == qw::GridPress::Down ? &QWMonomeRemoteObserver::monomeRemoteButtonDownAtPosition
                                                        : &QWMonomeRemoteObserver::monomeRemoteButtonUpAtPosition;
    m_observers.each([&](QWMonomeRemoteObserver &observer) { (observer.*call)(m_owner, position); });
}

qw::GridMapping QWMonomeRemote::Private::_mapping() const
{
    return {.orientation = m_orientation, .origin = m_origin, .rows = m_rows, .columns = m_columns};
}

QWGridPosition QWMonomeRemote::Private::_transformPosition(QWGridPosition position) const
{
    return _mapping().transformed(position);
}

QWGridPosition QWMonomeRemote::Private::_untransformPosition(QWGridPosition position) const
{
    return _mapping().untransformed(position);
}
