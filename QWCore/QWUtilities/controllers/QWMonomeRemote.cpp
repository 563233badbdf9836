#include "QWMonomeRemote.h"

#include "QWUtilities/controllers/grid/GridModel.h"
#include "QWUtilities/controllers/grid/GridProtocol.h"
#include "QWUtilities/controllers/grid/GridReader.h"

#include <QWBase/QWApplicationLog.h>
#include <QWPlatform/System.h>
#include <QWPlatform/devices/serial/SerialLines.h>
#include <QWPlatform/foundation/Clock.h>

#include <QCoreApplication>

#include <algorithm>
#include <array>

using namespace std::chrono_literals;

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

QWMonomeRemote &QWMonomeRemote::remote()
{
    return platform::System::current().shared<QWMonomeRemote>([] { return new QWMonomeRemote; });
}

QWMonomeRemote::QWMonomeRemote()
    : m_registry(platform::System::current().serialRegistry())
    , m_lines(platform::System::current().serialLines())
    , m_clock(platform::System::current().clock())
    , m_log(QWApplicationLog::sharedLog())
{
    serialServicesMatched(m_registry.addMatchingNotification(*this));
    if (const auto *application = QCoreApplication::instance())
        QObject::connect(application, &QCoreApplication::aboutToQuit, &m_termination, [this] { shutdown(); });
}

QWMonomeRemote::~QWMonomeRemote()
{
    m_registry.removeClient(*this);
    shutdown();
    _endReaders();
}

void QWMonomeRemote::setIntensity(float intensity)
{
    m_intensity = intensity;
    m_intensityChanges.note();
    m_intensityChanges.send(
        [this] { _write(qw::gridBrightnessMessage(_protocol(), qw::gridBrightnessLevel(m_intensity))); });
}

void QWMonomeRemote::setLEDStateAtPosition(bool on, QWGridPosition position)
{
    m_frame.setLED(on, _untransformPosition(position));
    m_frameChanges.note();
    _writeFrame();
}

bool QWMonomeRemote::LEDStateAtPosition(QWGridPosition position) const
{
    return m_frame.led(_untransformPosition(position));
}

void QWMonomeRemote::toggleLEDAtPosition(QWGridPosition position)
{
    setLEDStateAtPosition(!LEDStateAtPosition(position), position);
}

void QWMonomeRemote::setLEDFrameAtQuadrant(const quint8 *rows, unsigned quadrant)
{
    m_frame.setRows(rows, quadrant);
    m_frameChanges.note();
    _writeFrame();
}

void QWMonomeRemote::clearLEDs()
{
    const bool isSeries = _protocol() == qw::GridProtocol::Series;
    const unsigned before = m_frameChanges.count();
    if (isSeries)
        _write(qw::gridClearMessage());
    m_frame.clear();
    const bool isAlone = m_frameChanges.note() == before + 1; // else a frame may have come behind the message
    if (!isSeries || !isAlone)
        _writeFrame();
}

void QWMonomeRemote::addObserver(QWMonomeRemoteObserver &observer)
{
    m_observers.add(observer);
}

void QWMonomeRemote::removeObserver(QWMonomeRemoteObserver &observer)
{
    m_observers.remove(observer);
}

bool QWMonomeRemote::hasObserver(const QWMonomeRemoteObserver &observer) const
{
    return m_observers.has(observer);
}

void QWMonomeRemote::shutdown()
{
    if (!isConnected())
        return;
    _cancelReader();
    clearLEDs();
    m_lines.drain(m_fileID);
    m_lines.close(m_fileID.exchange(0));
    m_observers.release();
}

void QWMonomeRemote::serialServicesMatched(const std::vector<platform::SerialService> &services)
{
    for (const platform::SerialService &service : services) {
        if (!service.advice.isEmpty())
            m_log.warningMessage(QW_LOG_CONTEXT(logDomain), service.advice);
        if (!qw::isGridPath(service.dialInDevice.toStdString()))
            continue;
        m_removalNotification = m_registry.addInterestNotification(service, *this);
        remoteAdded(service.dialInDevice);
    }
}

// When two grids were connected, the first one's end releases the notification of the second and closes it. Intended:
// one grid at a time is supported.
void QWMonomeRemote::serialServiceMessage(const platform::SerialService &, quint32 messageType)
{
    if (messageType != serviceIsTerminated)
        return;
    m_registry.releaseNotification(std::exchange(m_removalNotification, 0));
    remoteRemoved();
}

void QWMonomeRemote::remoteAdded(const QString &path)
{
    m_clock.sleep(settling);
    const platform::SerialLines::Opening line = m_lines.open(path);
    if (line.descriptor == 0)
        return _logOpeningFailed(line.error, line.advice);
    m_fileID = line.descriptor;
    _recognize(path);
    clearLEDs();
    setIntensity(1.0f);
    _startReader();
    m_observers.each([this](QWMonomeRemoteObserver &observer) { observer.monomeRemoteConnected(*this); });
}

void QWMonomeRemote::remoteRemoved()
{
    _cancelReader();
    m_lines.close(m_fileID.exchange(0));
    m_observers.each([this](QWMonomeRemoteObserver &observer) { observer.monomeRemoteRemoved(*this); });
}

/// The body of the reader thread.
void QWMonomeRemote::readRemote(qw::GridReader &reader)
{
    _showStartUp(reader);
    std::array<std::uint8_t, readLength> buffer{};
    do {
        _read(buffer, m_lines.read(m_fileID, buffer));
        m_clock.sleep(pollInterval, reader.ending());
    } while (!reader.isCancelled());
}

void QWMonomeRemote::_logOpeningFailed(int error, const QString &advice)
{
    const QWApplicationLogContext context = QW_LOG_CONTEXT(logDomain);
    m_log.logContextFormatArguments(QWApplicationLog::Error, &context, "remoteAdded error: %d",
                                    {QString::number(error)});
    if (!advice.isEmpty())
        m_log.warningMessage(context, advice);
}

void QWMonomeRemote::_recognize(const QString &path)
{
    const std::string text = path.toStdString();
    if (const auto model = qw::gridModelOfPath(text)) {
        m_rows = model->rows;
        m_columns = model->columns;
        m_use40hProtocol = model->protocol == qw::GridProtocol::FortyH;
    }
    m_serialNumber = qw::gridSerialNumber(text);
}

/// The reader of a grid that is still connected goes on; it reads the new one's line as well.
void QWMonomeRemote::_startReader()
{
    const std::lock_guard guard(m_readersMutex);
    std::erase_if(m_formerReaders, [](const auto &reader) { return reader->hasFinished(); });
    if (m_readThread)
        m_formerReaders.push_back(std::move(m_readThread));
    m_readThread = std::make_unique<qw::GridReader>([this](qw::GridReader &reader) { readRemote(reader); });
}

/// Does not wait: the reader may be inside an observer that waits for this thread.
void QWMonomeRemote::_cancelReader()
{
    const std::lock_guard guard(m_readersMutex);
    if (!m_readThread)
        return;
    m_readThread->cancel();
    m_formerReaders.push_back(std::move(m_readThread));
}

/// An observer may wait for this thread: what was sent here is delivered until it returns.
void QWMonomeRemote::_endReaders()
{
    _cancelReader();
    std::vector<std::unique_ptr<qw::GridReader>> readers;
    {
        const std::lock_guard guard(m_readersMutex);
        readers.swap(m_formerReaders);
    }
    for (const auto &reader : readers)
        reader->end();
    for (const auto &reader : readers)
        while (!reader->waitForEnd(pollInterval))
            QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
}

/// A cancelled reader ends its show, on whatever grid is connected then.
void QWMonomeRemote::_showStartUp(const qw::GridReader &reader)
{
    setLEDFrameAtQuadrant(startUpPattern.data(), 0);
    m_clock.sleep(patternTime, reader.ending());
    setIntensity(1.0f);
    m_clock.sleep(fadeStep, reader.ending());
    for (int level = brightest - 1; level >= 1; --level) {
        setIntensity(static_cast<float>(level) / brightest);
        m_clock.sleep(fadeStep, reader.ending());
    }
    clearLEDs();
    setIntensity(1.0f);
}

/// The last byte of an odd count is paired with what an earlier read left behind it. Intended.
void QWMonomeRemote::_read(std::span<const std::uint8_t> buffer, std::ptrdiff_t count)
{
    for (std::ptrdiff_t offset = 0; offset < count; offset += 2) {
        const auto i = static_cast<std::size_t>(offset);
        _press(qw::decodeGridPress(_protocol(), buffer[i], buffer[i + 1]));
    }
}

void QWMonomeRemote::_press(const qw::GridPress &press)
{
    if (press.kind == qw::GridPress::None)
        return;
    const QWGridPosition position = _transformPosition({static_cast<float>(press.x), static_cast<float>(press.y)});
    const auto call = press.kind == qw::GridPress::Down ? &QWMonomeRemoteObserver::monomeRemoteButtonDownAtPosition
                                                        : &QWMonomeRemoteObserver::monomeRemoteButtonUpAtPosition;
    m_observers.each([&](QWMonomeRemoteObserver &observer) { (observer.*call)(*this, position); });
}

void QWMonomeRemote::_writeFrame()
{
    m_frameChanges.send([this] { _writeFrameOnce(); });
}

/// In one write: messages of other threads come before or behind the whole frame, and a call is what takes the time.
void QWMonomeRemote::_writeFrameOnce()
{
    std::array<std::uint8_t, qw::gridLongestFrame> bytes{};
    auto end = bytes.begin();
    const auto append = [&end](const qw::GridMessage &message) {
        end = std::copy_n(message.bytes.begin(), message.length, end);
    };
    if (_protocol() == qw::GridProtocol::FortyH)
        for (unsigned row = 0; row < 8; ++row)
            append(qw::gridRowMessage(row, m_frame.row(0, row)));
    else
        for (unsigned quadrant = 0; quadrant < qw::GridFrame::quadrants; ++quadrant)
            append(qw::gridQuadrantMessage(quadrant, m_frame.rows(quadrant)));
    m_lines.write(m_fileID, std::span(bytes.begin(), end));
}

/// Whether it arrives is not looked at.
void QWMonomeRemote::_write(const qw::GridMessage &message)
{
    m_lines.write(m_fileID, std::span(message.bytes).first(message.length));
}

qw::GridProtocol QWMonomeRemote::_protocol() const
{
    return m_use40hProtocol ? qw::GridProtocol::FortyH : qw::GridProtocol::Series;
}

qw::GridMapping QWMonomeRemote::_mapping() const
{
    return {.orientation = m_orientation, .origin = m_origin, .rows = m_rows, .columns = m_columns};
}

QWGridPosition QWMonomeRemote::_transformPosition(QWGridPosition position) const
{
    return _mapping().transformed(position);
}

QWGridPosition QWMonomeRemote::_untransformPosition(QWGridPosition position) const
{
    return _mapping().untransformed(position);
}
