#pragma once

#include "QWMonomeRemoteObserver.h"
#include "QWUtilities/controllers/grid/GridChanges.h"
#include "QWUtilities/controllers/grid/GridFrame.h"
#include "QWUtilities/controllers/grid/GridMapping.h"
#include "QWUtilities/controllers/grid/GridObservers.h"

#include <QWPlatform/devices/serial/SerialRegistry.h>
#include <QWUtilities/qwutilities_export.h>

#include <QObject>

#include <atomic>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

class QWApplicationLog;

namespace platform
{
class Clock;
class SerialLines;
} // namespace platform

namespace qw
{
class GridReader;
struct GridMessage;
} // namespace qw

/// The monome grid on a serial line: buttons in, LEDs out. At most one is connected; it is found when it is plugged in.
/// One object per System, made by the host on the main thread. What is said of the grid may be asked, and LEDs may be
/// set, on any thread and also while no grid is connected.
///
/// Positions are the application's: those of the grid, turned by the orientation, then flipped if the origin is 1.
class QWUTILITIES_EXPORT QWMonomeRemote final : private platform::SerialRegistryClient
{
public:
    /// Looks for grids from the first call on; opening one that is there already takes 0.1 s.
    static QWMonomeRemote &remote();

    /// As shutdown(), then waits for the readers; delivers queued calls meanwhile, since an observer may wait for one.
    /// Not on a reader's thread.
    ~QWMonomeRemote() override;

    bool isConnected() const { return m_fileID != 0; }

    /// Of the grid connected last; 0 before the first.
    quint32 serialNumber() const { return m_serialNumber; }
    quint32 numberOfRows() const { return m_rows; }
    quint32 numberOfColumns() const { return m_columns; }
    quint32 numberOfButtons() const { return m_rows * m_columns; }

    /// Quarter turns, 0 to 3; beyond that positions are not turned. Eight bits are kept.
    unsigned orientation() const { return m_orientation; }
    void setOrientation(unsigned orientation) { m_orientation = static_cast<quint8>(orientation); }

    /// 1 flips the vertical axis; no other value does.
    qint8 origin() const { return m_origin; }
    void setOrigin(qint8 origin) { m_origin = origin; }

    /// Brightness of the LEDs, 0.0 to 1.0 in 16 steps; kept as it was given. Sent at once.
    float intensity() const { return m_intensity; }
    void setIntensity(float intensity);

    /// Columns 8 to 15 of the device cannot be reached this way: setLEDFrameAtQuadrant() lights them. Each change sends
    /// the whole frame.
    void setLEDStateAtPosition(bool on, QWGridPosition position);
    bool LEDStateAtPosition(QWGridPosition position) const;
    void toggleLEDAtPosition(QWGridPosition position);

    /// @p rows: 8 bytes, row 0 first, bit n = column n, of the device. Quadrants 0 and 1 lie above 2 and 3; the frame
    /// is sent, but not changed, for any other.
    void setLEDFrameAtQuadrant(const quint8 *rows, unsigned quadrant);

    /// All LEDs off.
    void clearLEDs();

    /// Not owned; called in order of addition. An observer that is there is not added again.
    void addObserver(QWMonomeRemoteObserver &observer);

    /// Waits for a call in progress on another thread, except from within a call of any observer; such a call must not
    /// wait for the thread that removes. An observer must be removed before it is destroyed, after a shutdown too.
    void removeObserver(QWMonomeRemoteObserver &observer);
    bool hasObserver(const QWMonomeRemoteObserver &observer) const;

    /// Clears and closes the grid; no observer is called any more, ever, and none can be added. A call that another
    /// thread is in goes on: removeObserver() waits for it. Nothing when no grid is connected. Comes by itself when the
    /// application quits.
    void shutdown();

private:
    QWMonomeRemote();

    void serialServicesMatched(const std::vector<platform::SerialService> &services) override;
    void serialServiceMessage(const platform::SerialService &service, quint32 messageType) override;

    void remoteAdded(const QString &path);
    void remoteRemoved();
    void readRemote(qw::GridReader &reader);

    void _logOpeningFailed(int error, const QString &advice);
    void _recognize(const QString &path);
    void _startReader();
    void _cancelReader();
    void _endReaders();
    void _showStartUp(const qw::GridReader &reader);
    void _read(std::span<const std::uint8_t> buffer, std::ptrdiff_t count);
    void _press(const qw::GridPress &press);
    void _writeFrame();
    void _writeFrameOnce();
    void _write(const qw::GridMessage &message);
    qw::GridProtocol _protocol() const;
    qw::GridMapping _mapping() const;
    QWGridPosition _transformPosition(QWGridPosition position) const;
    QWGridPosition _untransformPosition(QWGridPosition position) const;

    platform::SerialRegistry &m_registry;
    platform::SerialLines &m_lines;
    platform::Clock &m_clock;
    QWApplicationLog &m_log;
    QObject m_termination; ///< Receiver of the application's last signal.

    qw::GridObservers m_observers;
    std::atomic<int> m_fileID = 0; ///< Of the open line; 0: none is connected.
    std::atomic<bool> m_use40hProtocol = false;
    std::atomic<quint8> m_orientation = 0;
    std::atomic<qint8> m_origin = 0;
    std::atomic<quint32> m_serialNumber = 0;
    std::atomic<quint32> m_rows = 0;
    std::atomic<quint32> m_columns = 0;
    qw::GridFrame m_frame;
    qw::GridChanges m_frameChanges;
    std::atomic<float> m_intensity = 0;
    qw::GridChanges m_intensityChanges;

    platform::SerialRegistry::Handle m_removalNotification = 0; ///< Of the grid added last.
    std::mutex m_readersMutex;                                  ///< Guards both below.
    std::unique_ptr<qw::GridReader> m_readThread;
    std::vector<std::unique_ptr<qw::GridReader>> m_formerReaders; ///< Cancelled, or of a grid that another replaced.
};
